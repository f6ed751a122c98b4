#include <AxAlgorthm/AxConstants.h>
#include <AxAlgorthm/AxPlaneGeometry.h>
#include <AxData/planner/AxPhotoSight.h>
#include <AxData/planner/AxPlanCoverage.h>
#include <AxData/planner/AxPlaneArea.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace {
constexpr double mostCells = 25e6;
/// Of the box around all that photos show; by so many an area is known to half a percent.
constexpr double cellsForArea = 60000.0;

AxPlaneArea AreaOf(const AxPlanRequest& request, const AxPlanPlane& plane, const AxPlanLine& ring)
{
    std::vector<AxPlanLine> rings{ring};
    if (request.kind == AxPlanRequest::Kind::Area)
        for (const QList<QPointF>& hole : request.holes)
            rings.push_back(plane.ToPlane(hole));
    return AxPlaneArea(std::move(rings));
}

/// A box that grows by what it is to hold.
struct Box
{
    CAxPoint2D low{std::numeric_limits<double>::max(), std::numeric_limits<double>::max()};
    CAxPoint2D high{std::numeric_limits<double>::lowest(), std::numeric_limits<double>::lowest()};

    void Hold(const CAxPoint2D& point)
    {
        low = {std::min(low.x(), point.x()), std::min(low.y(), point.y())};
        high = {std::max(high.x(), point.x()), std::max(high.y(), point.y())};
    }
    double Width() const { return high.x() - low.x(); }
    double Height() const { return high.y() - low.y(); }
};

class CellGrid
{
public:
    CellGrid(const AxPlanRequest& asked, const AxPlanPlane& around, const AxPlaneArea& area, const Box& box,
             double cell)
        : request(asked), plane(around), shape(area), west(box.low.x()), south(box.low.y())
    {
        result.cell = cell;
        result.columns = std::max(1, static_cast<int>(std::ceil(box.Width() / cell)));
        result.rows = std::max(1, static_cast<int>(std::ceil(box.Height() / cell)));
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
                    if (const double x = Middle(column, row).x(); x >= from && x <= to) {
                        result.isInside[IndexOf(column, row)] = true;
                        ++result.cells;
                        result.unknown += LookAt(column, row) ? 0 : 1;
                    }
            }
        }
        return !isOff;
    }

    /// The same beside the area.
    bool LookAround(const std::atomic<bool>& isOff)
    {
        for (int row = 0; row < result.rows && !isOff; ++row)
            for (int column = 0; column < result.columns; ++column)
                if (!result.isInside[IndexOf(column, row)])
                    LookAt(column, row);
        return !isOff;
    }

    /// False when called off.
    bool Count(const std::vector<AxPhotoSight>& sights, const std::atomic<bool>& isOff)
    {
        for (const AxPhotoSight& sight : sights) {
            if (isOff)
                return false;
            if (const auto reach = sight.Reach(lowest, highest))
                CountIn(sight, *reach);
        }
        return true;
    }

    /// Metres above the ellipsoid of what is known.
    double Lowest() const { return lowest; }

    AxCoveredArea Covered() const
    {
        AxCoveredArea covered;
        const double size = result.cell * result.cell;
        for (std::size_t i = 0; i < result.photos.size(); ++i) {
            if (result.photos[i] > 0)
                (result.isInside[i] ? covered.inside : covered.beside) += size;
            covered.isKnown = covered.isKnown && (result.isKnown[i] || !result.isInside[i]);
        }
        return covered;
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
    bool LookAt(int column, int row)
    {
        const std::size_t index = IndexOf(column, row);
        std::optional<double> height = request.meanGround;
        if (request.ground) {
            const QPointF place = plane.ToLngLat(Middle(column, row));
            height = request.ground(place.x(), place.y());
        }
        if (!height || !std::isfinite(*height))
            return false;
        result.isKnown[index] = true;
        ground[index] = static_cast<float>(*height);
        lowest = std::min(lowest, *height);
        highest = std::max(highest, *height);
        return true;
    }

    void CountIn(const AxPhotoSight& sight, const AxSightReach& reach)
    {
        for (int row = RowAt(reach.low.y()); row <= RowAt(reach.high.y()); ++row) {
            const auto [from, to] = reach.Across(Middle(0, row).y());
            const int last = ColumnAt(to);
            for (int column = ColumnAt(from); column <= last; ++column) {
                const std::size_t index = IndexOf(column, row);
                const auto sample = static_cast<float>(
                    sight.SampleAt(Middle(column, row), static_cast<double>(ground[index])));
                if (!(sample > 0.0F))
                    continue;
                float& best = result.sample[index];
                best = result.photos[index] == 0 ? sample : std::min(best, sample);
                if (result.photos[index] < std::numeric_limits<std::uint16_t>::max())
                    ++result.photos[index];
            }
        }
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
    const AxPlanPlane& plane;
    const AxPlaneArea& shape;
    double west;
    double south;
    double lowest = std::numeric_limits<double>::max();
    double highest = std::numeric_limits<double>::lowest();
    std::vector<float> ground; // metres; not a number where nobody looked and where it is not known
    AxPlanCoverage result;
};

/// The ground below the route, here and there: its lowest.
double LowestBelow(const AxPlanRequest& request, const AxPlanResult& plan)
{
    constexpr std::size_t places = 200;
    if (!request.ground)
        return request.meanGround;
    double lowest = std::numeric_limits<double>::max();
    for (std::size_t i = 0; i < plan.photos.size(); i += 1 + plan.photos.size() / places) {
        const auto height = request.ground(plan.photos[i].longitude, plan.photos[i].latitude);
        if (height && std::isfinite(*height))
            lowest = std::min(lowest, *height);
    }
    return lowest;
}
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
    case AxPlanRequest::Kind::Orbit: {
        constexpr int corners = 72;
        const CAxPoint2D centre = ring.front();
        ring.clear();
        for (int i = 0; i < corners; ++i)
            ring.emplace_back(centre.x() + request.radius * std::sin(2.0 * PI * i / corners),
                              centre.y() + request.radius * std::cos(2.0 * PI * i / corners));
        return ring;
    }
    }
    return {};
}

AxPlanCoverage AxCoverageOf(const AxPlanRequest& request, const AxPlanResult& plan, double cell,
                            const std::atomic<bool>& isOff)
{
    if (!plan.IsPlanned() || !(cell > 0.0))
        return {};
    const AxPlanPlane plane(request.outline);
    const AxPlanLine ring = AxCoverageRing(request, plane);
    if (ring.empty())
        return {};
    Box box;
    std::for_each(ring.begin(), ring.end(), [&box](const CAxPoint2D& point) { box.Hold(point); });
    const AxPlaneArea area = AreaOf(request, plane, ring);
    const double size = std::max(1.0, box.Width() * box.Height());
    CellGrid grid(request, plane, area, box, std::max(cell, std::sqrt(size / mostCells)));
    if (!grid.LookAtGround(isOff) || !grid.Count(AxSightsOf(request, plan, plane), isOff))
        return {};
    return grid.Finished();
}

std::optional<AxCoveredArea> AxCoveredAreaOf(const AxPlanRequest& request, const AxPlanResult& plan,
                                             const std::atomic<bool>& isOff)
{
    if (!plan.IsPlanned())
        return std::nullopt;
    const AxPlanPlane plane(request.outline);
    const AxPlanLine ring = AxCoverageRing(request, plane);
    const AxPlaneArea area = AreaOf(request, plane, ring);
    const std::vector<AxPhotoSight> sights = AxSightsOf(request, plan, plane);
    // What the photos show reaches farther where the ground lies lower, which is known when they were looked
    // at.
    double lowest = LowestBelow(request, plan);
    for (int attempt = 0;; ++attempt) {
        Box box;
        std::for_each(ring.begin(), ring.end(), [&box](const CAxPoint2D& point) { box.Hold(point); });
        for (const AxPhotoSight& sight : sights)
            if (const auto reach = sight.Reach(lowest, lowest)) {
                box.Hold(reach->low);
                box.Hold(reach->high);
            }
        if (!(box.Width() > 0.0) || !(box.Height() > 0.0))
            return AxCoveredArea{0.0, 0.0, false};
        CellGrid grid(request, plane, area, box, std::sqrt(box.Width() * box.Height() / cellsForArea));
        if (!grid.LookAtGround(isOff) || !grid.LookAround(isOff))
            return std::nullopt;
        constexpr int mostAttempts = 3;
        if (grid.Lowest() < lowest - 1.0 && attempt + 1 < mostAttempts) {
            lowest = grid.Lowest();
            continue;
        }
        if (!grid.Count(sights, isOff))
            return std::nullopt;
        return grid.Covered();
    }
}
