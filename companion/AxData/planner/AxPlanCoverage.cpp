#include <AxAlgorthm/AxMath.h>
#include <AxAlgorthm/AxPlaneGeometry.h>
#include <AxData/planner/AxPlanCoverage.h>
#include <AxData/planner/AxPlaneArea.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace {
constexpr double mostCells = 25e6;

class CellGrid
{
public:
    CellGrid(const AxPlanRequest& asked, const AxPlanPlane& around, const AxPlanLine& ring, double cell)
        : request(asked), plane(around)
    {
        std::vector<AxPlanLine> rings{ring};
        if (request.kind == AxPlanRequest::Kind::Area)
            for (const QList<QPointF>& hole : request.holes)
                rings.push_back(plane.ToPlane(hole));
        shape = AxPlaneArea(std::move(rings));
        for (const CAxPoint2D& point : ring) {
            west = std::min(west, point.x());
            east = std::max(east, point.x());
            south = std::min(south, point.y());
            north = std::max(north, point.y());
        }
        const double area = std::max(1.0, (east - west) * (north - south));
        result.cell = std::max(cell, std::sqrt(area / mostCells));
        result.columns = std::max(1, static_cast<int>(std::ceil((east - west) / result.cell)));
        result.rows = std::max(1, static_cast<int>(std::ceil((north - south) / result.cell)));
        const auto count = static_cast<std::size_t>(result.columns) * static_cast<std::size_t>(result.rows);
        result.photos.assign(count, 0);
        result.sample.assign(count, 0.0F);
        result.isInside.assign(count, false);
        result.isKnown.assign(count, false);
        ground.assign(count, std::numeric_limits<float>::quiet_NaN());
        for (const auto& [x, y] : {std::pair{0, 0}, {1, 0}, {1, 1}, {0, 1}})
            result.corners.push_back(plane.ToLngLat(
                {west + x * result.columns * result.cell, south + y * result.rows * result.cell}));
    }

    /// Which cells lie in the area, and how high; false when called off.
    bool LookAtGround(const std::atomic<bool>& isOff)
    {
        for (int row = 0; row < result.rows && !isOff; ++row) {
            const double y = Middle(0, row).y();
            const double width = result.columns * result.cell;
            for (const auto& [begin, end] : shape.Inside({west, y}, {west + width, y})) {
                const double from = west + begin * width;
                const double to = west + end * width;
                for (int column = ColumnAt(from); column <= ColumnAt(to); ++column)
                    if (const double x = Middle(column, row).x(); x >= from && x <= to)
                        LookAt(column, row);
            }
        }
        return !isOff;
    }

    void Count(const AxPlanPhoto& photo)
    {
        const AxPlanCamera& camera = request.camera;
        const CAxPoint2D at = plane.ToPlane(QPointF(photo.longitude, photo.latitude));
        const double ahead = 0.5 * camera.LengthFrom(1.0); // metres for each of height
        const double aside = 0.5 * camera.WidthFrom(1.0);
        const double reach = (photo.altitude - lowest) * std::hypot(ahead, aside);
        if (!(reach > 0.0))
            return;
        const double toEast = std::sin(DegreeToRadians(photo.heading));
        const double toNorth = std::cos(DegreeToRadians(photo.heading));
        for (int row = RowAt(at.y() - reach); row <= RowAt(at.y() + reach); ++row)
            for (int column = ColumnAt(at.x() - reach); column <= ColumnAt(at.x() + reach); ++column) {
                const std::size_t index = IndexOf(column, row);
                const double above = photo.altitude - static_cast<double>(ground[index]);
                const CAxPoint2D middle = Middle(column, row);
                const double x = middle.x() - at.x();
                const double y = middle.y() - at.y();
                // Not a number where the ground is not known: no comparison holds.
                if (!(std::abs(x * toEast + y * toNorth) <= ahead * above) ||
                    !(std::abs(x * toNorth - y * toEast) <= aside * above))
                    continue;
                const auto sample = static_cast<float>(camera.SampleFrom(above));
                float& best = result.sample[index];
                best = result.photos[index] == 0 ? sample : std::min(best, sample);
                if (result.photos[index] < std::numeric_limits<std::uint16_t>::max())
                    ++result.photos[index];
            }
    }

    AxPlanCoverage Finished()
    {
        result.leastPhotos = std::numeric_limits<int>::max();
        for (int row = 0; row < result.rows; ++row)
            for (int column = 0; column < result.columns; ++column) {
                const std::size_t index = IndexOf(column, row);
                if (!result.isKnown[index])
                    continue;
                if (result.photos[index] < result.leastPhotos) {
                    result.leastPhotos = result.photos[index];
                    result.leastPhotosAt = plane.ToLngLat(Middle(column, row));
                }
                const auto sample = static_cast<double>(result.sample[index]);
                if (sample > result.coarsestSample) {
                    result.coarsestSample = sample;
                    result.coarsestSampleAt = plane.ToLngLat(Middle(column, row));
                }
                if (sample > 0.0 && (result.finestSample == 0.0 || sample < result.finestSample))
                    result.finestSample = sample;
            }
        if (result.leastPhotos == std::numeric_limits<int>::max())
            result.leastPhotos = 0;
        return std::move(result);
    }

private:
    void LookAt(int column, int row)
    {
        const std::size_t index = IndexOf(column, row);
        result.isInside[index] = true;
        ++result.cells;
        std::optional<double> height = request.meanGround;
        if (request.ground) {
            const QPointF place = plane.ToLngLat(Middle(column, row));
            height = request.ground(place.x(), place.y());
        }
        if (!height || !std::isfinite(*height)) {
            ++result.unknown;
            return;
        }
        result.isKnown[index] = true;
        ground[index] = static_cast<float>(*height);
        lowest = std::min(lowest, *height);
    }

    CAxPoint2D Middle(int column, int row) const
    {
        return {west + (column + 0.5) * result.cell, south + (row + 0.5) * result.cell};
    }
    int ColumnAt(double x) const
    {
        return static_cast<int>(std::clamp((x - west) / result.cell, 0.0, result.columns - 1.0));
    }
    int RowAt(double y) const
    {
        return static_cast<int>(std::clamp((y - south) / result.cell, 0.0, result.rows - 1.0));
    }
    std::size_t IndexOf(int column, int row) const
    {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(result.columns) +
               static_cast<std::size_t>(column);
    }

    const AxPlanRequest& request;
    AxPlanPlane plane;
    AxPlaneArea shape;
    double west = std::numeric_limits<double>::max();
    double east = std::numeric_limits<double>::lowest();
    double south = std::numeric_limits<double>::max();
    double north = std::numeric_limits<double>::lowest();
    double lowest = std::numeric_limits<double>::max();
    std::vector<float> ground; // metres; not a number outside the area and where it is not known
    AxPlanCoverage result;
};
} // namespace

AxPlanLine AxCoverageRing(const AxPlanRequest& request, const AxPlanPlane& plane)
{
    AxPlanLine ring = plane.ToPlane(request.outline);
    switch (request.kind) {
    case AxPlanRequest::Kind::Area:
        return ring;
    case AxPlanRequest::Kind::Strip: {
        QList<int> indices;
        CreateStripPolygon(ring, request.leftWidth, request.rightWidth, ring, indices);
        return ring;
    }
    case AxPlanRequest::Kind::Orbit:
        break;
    }
    return {};
}

AxPlanCoverage AxCoverageOf(const AxPlanRequest& request, const AxPlanResult& plan, double cell,
                            const std::atomic<bool>& isOff)
{
    const AxPlanPlane plane(request.outline);
    const AxPlanLine ring = AxCoverageRing(request, plane);
    if (!plan.IsPlanned() || ring.empty() || !(cell > 0.0))
        return {};
    CellGrid grid(request, plane, ring, cell);
    if (!grid.LookAtGround(isOff))
        return {};
    for (const AxPlanPhoto& photo : plan.photos) {
        if (isOff)
            return {};
        grid.Count(photo);
    }
    return grid.Finished();
}
