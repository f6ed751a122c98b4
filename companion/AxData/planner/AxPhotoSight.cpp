#include <AxAlgorthm/AxFootprint.h>
#include <AxAlgorthm/AxMath.h>
#include <AxData/planner/AxPhotoSight.h>

#include <algorithm>
#include <cmath>

AxPhotoSight::AxPhotoSight(const AxPlanCamera& camera, const CAxPoint2D& at, double altitude, double bearing,
                           double tilt)
    : m_at(at), m_altitude(altitude), m_east(std::sin(DegreeToRadians(bearing))),
      m_north(std::cos(DegreeToRadians(bearing))), m_sin(std::sin(DegreeToRadians(tilt))),
      m_cos(std::cos(DegreeToRadians(tilt))), m_halfWidth(0.5 * camera.WidthFrom(1.0)),
      m_halfHeight(0.5 * camera.LengthFrom(1.0)), m_sample(camera.SampleFrom(1.0)),
      m_farthest(MaxFootprintDistance)
{
}

std::pair<double, double> AxSightReach::Across(double y) const
{
    if (isCut)
        return {low.x(), high.x()};
    double west = high.x();
    double east = low.x();
    const auto cross = [&](const CAxPoint2D& a, const CAxPoint2D& b) {
        if ((a.y() < y) == (b.y() < y))
            return;
        const double x = a.x() + (b.x() - a.x()) * (y - a.y()) / (b.y() - a.y());
        west = std::min(west, x);
        east = std::max(east, x);
    };
    for (std::size_t i = 0; i < 4; ++i) {
        cross(corners[i], corners[(i + 1) % 4]);
        cross(corners[i + 4], corners[(i + 1) % 4 + 4]);
        cross(corners[i], corners[i + 4]);
    }
    return {west, east};
}

std::optional<AxSightReach> AxPhotoSight::Reach(double lowest, double highest) const
{
    if (!(m_altitude > lowest))
        return std::nullopt;
    AxSightReach reach;
    std::size_t corner = 0;
    for (const double above : {m_altitude - lowest, std::max(0.0, m_altitude - highest)})
        for (const auto& [right, top] : {std::pair{-1, -1}, {1, -1}, {1, 1}, {-1, 1}}) {
            const double side = right * m_halfWidth;
            const double ahead = m_sin + top * m_halfHeight * m_cos;
            const double down = m_cos - top * m_halfHeight * m_sin;
            reach.isCut = reach.isCut || !(down > 0.0) || above / down * std::hypot(ahead, side) > m_farthest;
            const double depth = above / down;
            reach.corners[corner++] = {m_at.x() + depth * (ahead * m_east + side * m_north),
                                       m_at.y() + depth * (ahead * m_north - side * m_east)};
        }
    if (reach.isCut) {
        // Beyond its farthest rays the picture ends at an arc.
        reach.low = {m_at.x() - m_farthest, m_at.y() - m_farthest};
        reach.high = {m_at.x() + m_farthest, m_at.y() + m_farthest};
        return reach;
    }
    reach.low = reach.high = reach.corners.front();
    for (const CAxPoint2D& point : reach.corners) {
        reach.low = {std::min(reach.low.x(), point.x()), std::min(reach.low.y(), point.y())};
        reach.high = {std::max(reach.high.x(), point.x()), std::max(reach.high.y(), point.y())};
    }
    return reach;
}

std::vector<AxPhotoSight> AxSightsOf(const AxPlanRequest& request, const AxPlanResult& plan,
                                     const AxPlanPlane& plane)
{
    const std::vector<AxPlanView>& views = request.camera.views;
    const CAxPoint2D centre = plane.ToPlane(request.outline.first());
    std::optional<double> ground;
    if (request.kind == AxPlanRequest::Kind::Orbit && request.ground)
        ground = request.ground(request.outline.first().x(), request.outline.first().y());
    const double target = ground && std::isfinite(*ground) ? *ground : request.meanGround;
    std::vector<AxPhotoSight> sights;
    std::size_t next = 0; // of a lens that swings
    for (const AxPlanPhoto& photo : plan.photos) {
        const CAxPoint2D at = plane.ToPlane(QPointF(photo.longitude, photo.latitude));
        const auto look = [&](double bearing, double tilt) {
            sights.emplace_back(request.camera, at, photo.altitude, bearing, tilt);
        };
        if (request.kind == AxPlanRequest::Kind::Orbit)
            look(RadiansToDegree(std::atan2(centre.x() - at.x(), centre.y() - at.y())),
                 RadiansToDegree(std::atan2(AxApart(at, centre), photo.altitude - target)));
        else if (views.empty())
            look(photo.heading, 0.0);
        else if (request.camera.isSwinging)
            look(photo.heading + views[next].turn, views[next].tilt);
        else
            for (const AxPlanView& view : views)
                look(photo.heading + view.turn, view.tilt);
        next = views.empty() ? 0 : (next + 1) % views.size();
    }
    return sights;
}
