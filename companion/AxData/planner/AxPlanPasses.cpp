#include <AxAlgorthm/AxConstants.h>
#include <AxAlgorthm/AxMath.h>
#include <AxData/planner/AxPassOrder.h>
#include <AxData/planner/AxPlanCheck.h>
#include <AxData/planner/AxPlanPasses.h>
#include <support/GeosContext.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {
/// A plane whose x axis runs along a heading.
class TurnedPlane
{
public:
    explicit TurnedPlane(double heading)
        : east(std::sin(DegreeToRadians(heading))), north(std::cos(DegreeToRadians(heading)))
    {
    }
    CAxPoint2D To(const CAxPoint2D& point) const
    {
        return {point.x() * east + point.y() * north, point.y() * east - point.x() * north};
    }
    CAxPoint2D From(const CAxPoint2D& point) const
    {
        return {point.x() * east - point.y() * north, point.x() * north + point.y() * east};
    }

private:
    double east;
    double north;
};

/// Shorter gaps between passes of one line cost more to turn at than to fly through.
double ShortestGap(const AxPlanRequest& request)
{
    return 2.0 * request.aircraft.leadIn + 4.0 * request.aircraft.turnRadius;
}

std::vector<AxPlanLine> RingsOf(const AxPlanRequest& request, const AxPlanPlane& plane)
{
    std::vector<AxPlanLine> rings{plane.ToPlane(request.outline)};
    for (const QList<QPointF>& hole : request.holes)
        rings.push_back(plane.ToPlane(hole));
    return rings;
}

AxPassLayout LayoutOf(const AxPlanRequest& request, std::vector<AxPlanLine> rings, double spacing,
                      double heading)
{
    const TurnedPlane turned(heading);
    for (AxPlanLine& ring : rings)
        for (CAxPoint2D& point : ring)
            point = turned.To(point);
    return AxLayPasses(rings, spacing, ShortestGap(request), request.passes);
}

/// The stretches of a pass. A gap that is shorter than the way between two photos is not worth stopping the
/// camera, which may not be ready again behind it.
std::vector<AxPlanLine> StretchesOf(const AxPass& pass, bool isEastward, const TurnedPlane& turned,
                                    double photoDistance)
{
    std::vector<AxPlanLine> stretches;
    double from = pass.from;
    const auto add = [&](double to) {
        stretches.push_back({turned.From({from, pass.y}), turned.From({to, pass.y})});
    };
    for (const auto& [begin, end] : pass.gaps)
        if (end - begin >= photoDistance) {
            add(begin);
            from = end;
        }
    add(pass.to);
    if (!isEastward) {
        std::reverse(stretches.begin(), stretches.end());
        for (AxPlanLine& stretch : stretches)
            std::reverse(stretch.begin(), stretch.end());
    }
    return stretches;
}

AxPassSet OverArea(const AxPlanRequest& request, const AxPlanPlane& plane, double spacing, double heading,
                   int entry)
{
    const TurnedPlane turned(heading);
    const AxPassLayout layout = LayoutOf(request, RingsOf(request, plane), spacing, heading);
    const double photoDistance =
        request.camera.LengthFrom(AxPlannedHeight(request)) * (1.0 - request.forwardOverlap);
    AxPassSet set;
    set.spacing = layout.spacing;
    for (const AxFlownPass& flown : AxOrderPasses(layout.passes, entry))
        set.passes.push_back(StretchesOf(layout.passes[flown.pass], flown.isEastward, turned, photoDistance));
    if (!layout.passes.empty())
        for (int i = 0; i < 4; ++i) {
            const AxFlownPass first = AxEntryPass(layout.passes, i);
            set.entries[static_cast<std::size_t>(i)] =
                StretchesOf(layout.passes[first.pass], first.isEastward, turned, photoDistance)
                    .front()
                    .front();
        }
    return set;
}

/// The line beside another one, to its left for a positive distance; empty where it vanishes in bends.
AxPlanLine Beside(const AxPlanLine& line, double distance)
{
    constexpr int quarterSteps = 8;
    constexpr double mitre = 2.0;
    const GeosContext geos;
    GEOSCoordSequence* sequence = GEOSCoordSeq_create_r(geos.handle(), static_cast<unsigned>(line.size()), 2);
    for (unsigned i = 0; i < line.size(); ++i)
        GEOSCoordSeq_setXY_r(geos.handle(), sequence, i, line[i].x(), line[i].y());
    const auto source = geos.own(GEOSGeom_createLineString_r(geos.handle(), sequence));
    const auto offset = geos.own(
        GEOSOffsetCurve_r(geos.handle(), source.get(), distance, quarterSteps, GEOSBUF_JOIN_ROUND, mitre));
    AxPlanLine beside;
    for (int part = 0; offset && part < GEOSGetNumGeometries_r(geos.handle(), offset.get()); ++part) {
        const GEOSGeometry* piece = GEOSGetGeometryN_r(geos.handle(), offset.get(), part);
        const GEOSCoordSequence* points = GEOSGeom_getCoordSeq_r(geos.handle(), piece);
        unsigned count = 0;
        if (!points || !GEOSCoordSeq_getSize_r(geos.handle(), points, &count))
            continue;
        for (unsigned i = 0; i < count; ++i) {
            double x = 0.0;
            double y = 0.0;
            GEOSCoordSeq_getXY_r(geos.handle(), points, i, &x, &y);
            beside.emplace_back(x, y);
        }
    }
    // GEOS turns the right side round in some versions.
    if (!beside.empty() && AxApart(beside.front(), line.front()) + AxApart(beside.back(), line.back()) >
                               AxApart(beside.front(), line.back()) + AxApart(beside.back(), line.front()))
        std::reverse(beside.begin(), beside.end());
    return beside;
}

AxPassSet AlongStrip(const AxPlanRequest& request, const AxPlanPlane& plane, double spacing, int entry)
{
    AxPlanLine centre;
    for (const CAxPoint2D& point : plane.ToPlane(request.outline))
        if (centre.empty() || AxApart(centre.back(), point) > 0.0)
            centre.push_back(point);
    AxPassSet set;
    if (centre.size() < 2)
        return set;
    const double width = request.leftWidth + request.rightWidth;
    const int lines = request.passes > 0 ? request.passes
                                         : std::max(1, static_cast<int>(std::ceil(width / spacing - 1e-9)));
    set.spacing = width / lines;
    std::vector<AxPlanLine> fromLeft;
    for (int i = 0; i < lines; ++i) {
        const double left = request.leftWidth - (i + 0.5) * set.spacing;
        AxPlanLine line = std::abs(left) < 1e-6 ? centre : Beside(centre, left);
        if (line.size() >= 2)
            fromLeft.push_back(std::move(line));
    }
    if (fromLeft.empty())
        return set;
    set.entries = {fromLeft.front().front(), fromLeft.front().back(), fromLeft.back().front(),
                   fromLeft.back().back()};
    if (entry >= 2)
        std::reverse(fromLeft.begin(), fromLeft.end());
    bool isForwards = entry % 2 == 0;
    for (AxPlanLine& line : fromLeft) {
        if (!isForwards)
            std::reverse(line.begin(), line.end());
        isForwards = !isForwards;
        set.passes.push_back({std::move(line)});
    }
    return set;
}

AxPassSet AroundPoint(const AxPlanRequest& request, const AxPlanPlane& plane, int entry)
{
    constexpr int steps = 36;
    const CAxPoint2D centre = plane.ToPlane(request.outline.first());
    const auto at = [&](double quarters) {
        const double bearing = 0.5 * PI * quarters;
        return CAxPoint2D(centre.x() + request.radius * std::sin(bearing),
                          centre.y() + request.radius * std::cos(bearing));
    };
    AxPassSet set;
    for (int i = 0; i < 4; ++i)
        set.entries[static_cast<std::size_t>(i)] = at(i);
    AxPlanLine circle;
    for (int i = 0; i <= steps; ++i)
        circle.push_back(at(entry + 4.0 * i / steps));
    set.passes.push_back({std::move(circle)});
    return set;
}
} // namespace

AxPassSet AxPassesOf(const AxPlanRequest& request, const AxPlanPlane& plane, double spacing, double heading,
                     int entry)
{
    switch (request.kind) {
    case AxPlanRequest::Kind::Strip:
        return AlongStrip(request, plane, spacing, entry);
    case AxPlanRequest::Kind::Orbit:
        return AroundPoint(request, plane, entry);
    default:
        return OverArea(request, plane, spacing, heading, entry);
    }
}

double AxBestHeading(const AxPlanRequest& request, const AxPlanPlane& plane, double spacing)
{
    constexpr int step = 3;
    constexpr std::size_t mostSides = 60;
    const std::vector<AxPlanLine> rings = RingsOf(request, plane);
    std::vector<double> headings;
    for (int heading = 0; heading < 180; heading += step)
        headings.push_back(heading);
    // The best one is often along a side; the longest are tried.
    std::vector<std::pair<double, double>> sides;
    for (std::size_t i = 0; i < rings.front().size(); ++i) {
        const CAxPoint2D& a = rings.front()[i];
        const CAxPoint2D& b = rings.front()[(i + 1) % rings.front().size()];
        const double heading = RadiansToDegree(std::atan2(b.x() - a.x(), b.y() - a.y()));
        sides.emplace_back(-AxApart(a, b), std::fmod(heading + 360.0, 180.0));
    }
    std::sort(sides.begin(), sides.end());
    for (std::size_t i = 0; i < std::min(mostSides, sides.size()); ++i)
        headings.push_back(sides[i].second);

    const AxPlanAircraft& aircraft = request.aircraft;
    double best = 0.0;
    double least = std::numeric_limits<double>::max();
    for (const double heading : headings) {
        const AxPassLayout layout = LayoutOf(request, rings, spacing, heading);
        const double turn = 2.0 * aircraft.leadIn + std::max(layout.spacing, PI * aircraft.turnRadius);
        double length = turn * static_cast<double>(layout.passes.size());
        for (const AxPass& pass : layout.passes)
            length += pass.to - pass.from;
        if (!layout.passes.empty() && length < least) {
            least = length;
            best = heading;
        }
    }
    return best;
}
