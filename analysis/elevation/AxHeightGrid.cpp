#include "analysis/elevation/AxHeightGrid.h"
#include "scene/base/AxLongitudes.h"
#include "scene/base/AxWgs84.h"

#include <AxAlgorthm/AxMath.h>

#include <osgEarth/ElevationQuery>
#include <osgEarth/GeoData>

#include <QPolygonF>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace {
/// Where nothing is known in the area's middle there may be something elsewhere.
constexpr int looksAside = 8;
/// Cells of what has no data, metres.
constexpr double usualCell = 30.0;
constexpr double leastCell = 0.01;
/// Cells along each side of a small area, between whose few heights is interpolated.
constexpr double leastAlong = 20.0;
/// Next to a pole a degree of longitude has no length.
constexpr double leastCosine = 1e-4;

double MetresOfDegree()
{
    return DegreeToRadians(AxWgs84::meanRadius);
}

QPolygonF ContinuousRing(const std::vector<QPointF>& places)
{
    QPolygonF ring;
    for (const QPointF& place : places) {
        if (!std::isfinite(place.x()) || !(std::abs(place.y()) <= 90.0))
            return {};
        ring += QPointF(ring.isEmpty() ? AxLongitudes::Normalized(place.x())
                                       : AxLongitudes::NearestTo(ring.back().x(), place.x()),
                        place.y());
    }
    return ring;
}

class Ground
{
public:
    explicit Ground(const osgEarth::Map* map) : query(map) {}

    /// Degrees a sample; 0 where nothing is known.
    double ResolutionAt(const QPointF& place)
    {
        double height = 0.0;
        double resolution = 0.0;
        return query.getElevation(PointOf(place), height, 0.0, &resolution) ? resolution : 0.0;
    }
    float HeightAt(const QPointF& place, double resolution)
    {
        double height = 0.0;
        return query.getElevation(PointOf(place), height, resolution)
                   ? static_cast<float>(height)
                   : std::numeric_limits<float>::quiet_NaN();
    }

private:
    osgEarth::GeoPoint PointOf(const QPointF& place) const
    {
        return {wgs84, AxLongitudes::Normalized(place.x()), place.y()};
    }

    osgEarth::ElevationQuery query;
    osg::ref_ptr<const osgEarth::SpatialReference> wgs84 = osgEarth::SpatialReference::get("wgs84");
};

/// The finest in the area, degrees; 0 where nothing is known. Nothing when it is called off.
std::optional<double> FinestIn(const QPolygonF& ring, Ground& ground, const std::function<bool(double)>& goOn)
{
    double finest = 0.0;
    bool isOff = false;
    const auto look = [&](const QPointF& place) {
        isOff = isOff || (goOn && !goOn(0.0));
        if (isOff)
            return;
        const double resolution = ground.ResolutionAt(place);
        if (resolution > 0.0 && (finest == 0.0 || resolution < finest))
            finest = resolution;
    };
    const QRectF box = ring.boundingRect();
    for (int row = 0; row < looksAside; ++row)
        for (int column = 0; column < looksAside; ++column) {
            const QPointF place(box.left() + box.width() * (column + 0.5) / looksAside,
                                box.top() + box.height() * (row + 0.5) / looksAside);
            if (ring.containsPoint(place, Qt::OddEvenFill))
                look(place);
        }
    for (const QPointF& corner : ring)
        look(corner);
    return isOff ? std::nullopt : std::make_optional(finest);
}

/// Where the ring crosses a parallel, from the west.
std::vector<double> CrossingsOf(const QPolygonF& ring, double latitude)
{
    std::vector<double> crossings;
    for (int i = 0; i < ring.size(); ++i) {
        const QPointF& from = ring[i];
        const QPointF& to = ring[(i + 1) % ring.size()];
        if ((from.y() <= latitude) != (to.y() <= latitude))
            crossings.push_back(from.x() + (to.x() - from.x()) * (latitude - from.y()) / (to.y() - from.y()));
    }
    std::sort(crossings.begin(), crossings.end());
    return crossings;
}

/// Where the grid lies; false for no area.
bool LayOut(AxHeightGrid& grid, const QPolygonF& ring, const AxHeightsQuestion& question)
{
    const QRectF box = ring.boundingRect();
    const double metresNorth = MetresOfDegree();
    const double metresEast =
        metresNorth * std::max(leastCosine, std::cos(DegreeToRadians(box.center().y())));
    const double width = box.width() * metresEast;
    const double height = box.height() * metresNorth;
    if (!(width > 0.0) || !(height > 0.0))
        return false;
    const double data =
        std::min(grid.cellOfData > 0.0 ? grid.cellOfData : usualCell, std::sqrt(width * height) / leastAlong);
    grid.cell = std::max(leastCell, question.cell > 0.0 ? question.cell : data);
    const double most = static_cast<double>(std::max<std::size_t>(1, question.mostCells));
    // A sliver of a cell, as rounding leaves it, is none.
    constexpr double sliver = 1e-6;
    const auto cellsAlong = [&](double metres) {
        return std::max(1.0, std::ceil(metres / grid.cell - sliver));
    };
    if (cellsAlong(width) * cellsAlong(height) > most)
        grid.cell = std::max(grid.cell, std::sqrt(width * height / most));
    // Where the box is a sliver, rounding up makes more of them.
    constexpr double wider = 1.01;
    while (cellsAlong(width) * cellsAlong(height) > most)
        grid.cell *= wider;
    grid.columns = static_cast<int>(cellsAlong(width));
    grid.rows = static_cast<int>(cellsAlong(height));
    grid.stepLng = grid.cell / metresEast;
    grid.stepLat = grid.cell / metresNorth;
    // The box lies in the middle of the cells.
    grid.west = box.center().x() - 0.5 * grid.columns * grid.stepLng;
    grid.south = box.center().y() - 0.5 * grid.rows * grid.stepLat;
    return true;
}

/// Adds heights up.
class Sum
{
public:
    explicit Sum(AxHeightGrid& summed) : grid(summed) {}
    void Take(int column, int row, float height)
    {
        ++grid.inside;
        if (std::isnan(height))
            return;
        const QPointF place = grid.PlaceOf(column, row);
        if (grid.known == 0 || height < grid.lowest) {
            grid.lowest = static_cast<double>(height);
            grid.lowestPlace = place;
        }
        if (grid.known == 0 || height > grid.highest) {
            grid.highest = static_cast<double>(height);
            grid.highestPlace = place;
        }
        // Cells are narrower towards the poles.
        const double weight = std::max(leastCosine, std::cos(DegreeToRadians(place.y())));
        sum += weight * static_cast<double>(height);
        weights += weight;
        ++grid.known;
    }
    void Settle() const
    {
        if (grid.known > 0)
            grid.mean = sum / weights;
    }

private:
    AxHeightGrid& grid;
    double sum = 0.0;
    double weights = 0.0;
};
} // namespace

QPointF AxHeightGrid::PlaceOf(int column, int row) const
{
    return {AxLongitudes::Normalized(west + (column + 0.5) * stepLng), south + (row + 0.5) * stepLat};
}

AxHeightGrid AxHeightGridOf(const AxHeightsQuestion& question, const osgEarth::Map* map,
                            const std::function<bool(double)>& goOn)
{
    const QPolygonF ring = ContinuousRing(question.ring);
    if (!map || ring.size() < 3)
        return {};
    Ground ground(map);
    AxHeightGrid grid;
    // Looking for it reads the finest heights here and there, which a caller may have nothing of.
    const bool isCellGiven = question.cell > 0.0;
    if (!isCellGiven) {
        const std::optional<double> finest = FinestIn(ring, ground, goOn);
        if (!finest)
            return {};
        grid.cellOfData = *finest * MetresOfDegree();
    }
    if (!LayOut(grid, ring, question))
        return {};
    // Means of the data are read where its own samples would be passed over.
    constexpr double coarser = 1.5;
    const double resolution = isCellGiven || grid.cell > coarser * grid.cellOfData ? grid.stepLat : 0.0;
    grid.heights.assign(static_cast<std::size_t>(grid.columns) * static_cast<std::size_t>(grid.rows),
                        std::numeric_limits<float>::quiet_NaN());
    Sum sum(grid);
    const auto read = [&](int column, int row) {
        const float height = ground.HeightAt(grid.PlaceOf(column, row), resolution);
        grid.heights[static_cast<std::size_t>(row) * static_cast<std::size_t>(grid.columns) +
                     static_cast<std::size_t>(column)] = height;
        sum.Take(column, row, height);
    };
    for (int row = 0; row < grid.rows; ++row) {
        if (goOn && !goOn(static_cast<double>(row) / grid.rows))
            return {};
        const std::vector<double> crossings = CrossingsOf(ring, grid.south + (row + 0.5) * grid.stepLat);
        for (std::size_t i = 0; i + 1 < crossings.size(); i += 2) {
            const auto columnAt = [&](double longitude) {
                const double column = std::ceil((longitude - grid.west) / grid.stepLng - 0.5);
                return static_cast<int>(std::clamp(column, 0.0, static_cast<double>(grid.columns)));
            };
            for (int column = columnAt(crossings[i]); column < columnAt(crossings[i + 1]); ++column)
                read(column, row);
        }
    }
    if (grid.inside == 0) {
        const QPointF corner = ring.first();
        read(std::clamp(static_cast<int>((corner.x() - grid.west) / grid.stepLng), 0, grid.columns - 1),
             std::clamp(static_cast<int>((corner.y() - grid.south) / grid.stepLat), 0, grid.rows - 1));
    }
    sum.Settle();
    return grid;
}
