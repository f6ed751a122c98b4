#include "mission/aircraft/AxFootprintRays.h"

#include <AxAlgorthm/AxConstants.h>
#include <AxAlgorthm/AxCoordinate.h>
#include <AxAlgorthm/AxFootprint.h>

#include <algorithm>
#include <cmath>

namespace {
// Of the video picture.
constexpr int pictureWidth = 1920;
constexpr int pictureHeight = 1080;
constexpr int piecesOfSide = 8;
// Along a ray: coarse steps, and then halves of one.
constexpr int mostSteps = 64;
constexpr double shortestStep = 5.0; // metres over ground
constexpr int halvings = 10;

/// Where the camera is, in the plane of its UTM zone.
struct Standpoint
{
    AxUtmPlane plane;
    CAxPoint2D place;
    double north; // of true north, degrees clockwise from the grid's

    static std::optional<Standpoint> At(const CAxVector3D& camera)
    {
        constexpr double littleNorth = 1e-4; // degrees
        const std::optional<AxUtmPlane> plane = AxUtmPlane::At(camera.y(), camera.x());
        std::vector<CAxPoint2D> places{{camera.x(), camera.y()}, {camera.x(), camera.y() + littleNorth}};
        if (!plane || !plane->FromLngLat(places, places))
            return std::nullopt;
        const double turned = std::atan2(places[1].x() - places[0].x(), places[1].y() - places[0].y());
        return Standpoint{*plane, places[0], turned * 180.0 / PI};
    }

    /// At an offset in metres, east and north of the grid.
    std::optional<CAxPoint2D> LngLat(const QPointF& offset) const
    {
        std::vector<CAxPoint2D> places{{place.x() + offset.x(), place.y() + offset.y()}};
        if (!plane.ToLngLat(places, places))
            return std::nullopt;
        return places[0];
    }
};

/// The ray through an offset on the plane below the camera; the place where it meets the relief, or nothing
/// where that is not known.
std::optional<CAxVector3D> OnRelief(const Standpoint& stand, const AxVideoSight& sight, const QPointF& offset,
                                    const AxGroundHeights& heights)
{
    const double level = std::hypot(offset.x(), offset.y());
    // In lengths of the ray down to the plane; straight down, as deep as the sea.
    constexpr double straightDown = 1.0;
    const double farthest = level > straightDown ? MaxFootprintDistance / level : 1.0;
    std::optional<CAxVector3D> ground;
    // How far the ray is above the ground there.
    const auto above = [&](double along) -> std::optional<double> {
        const std::optional<CAxPoint2D> there = stand.LngLat(offset * along);
        const std::optional<double> height = there ? heights(there->x(), there->y()) : std::nullopt;
        if (!height)
            return std::nullopt;
        ground = CAxVector3D(there->x(), there->y(), *height);
        return sight.camera.z() - along * sight.height - *height;
    };
    if (level <= straightDown)
        return above(1.0) ? ground : std::nullopt;
    const double step = std::max(shortestStep / level, farthest / (mostSteps * mostSteps));
    double before = 0.0;
    for (double along = step; before < farthest; along += std::max(step, 0.06 * along)) {
        along = std::min(along, farthest);
        const std::optional<double> clear = above(along);
        if (!clear)
            return std::nullopt;
        if (*clear > 0.0) {
            before = along;
            continue;
        }
        double clearAt = before, metAt = along;
        for (int i = 0; i < halvings; ++i) {
            const double middle = 0.5 * (clearAt + metAt);
            const std::optional<double> there = above(middle);
            if (!there)
                return std::nullopt;
            (*there > 0.0 ? clearAt : metAt) = middle;
        }
        above(metAt);
        return ground;
    }
    return ground;
}
} // namespace

AxVideoOutline AxVideoOutlineOf(const AxVideoSight& sight, const AxGroundHeights& heights)
{
    AxVideoOutline outline;
    const std::optional<Standpoint> stand = Standpoint::At(sight.camera);
    if (!stand || !std::isfinite(sight.camera.z()))
        return outline;
    const QList<QPointF> corners =
        CalcFootprintMapCoordinate(sight.height, pictureWidth, pictureHeight, sight.scale,
                                   sight.heading + stand->north, sight.cameraAngle);
    if (corners.size() != 4)
        return outline;
    QList<QPointF> offsets;
    for (int i = 0; i < 4; ++i)
        for (int piece = 0; piece < piecesOfSide; ++piece)
            offsets += corners[i] + (corners[(i + 1) % 4] - corners[i]) * piece / piecesOfSide;

    outline.meetsRelief = static_cast<bool>(heights);
    for (int i = 0; outline.meetsRelief && i < offsets.size(); ++i) {
        const std::optional<CAxVector3D> met = OnRelief(*stand, sight, offsets[i], heights);
        outline.meetsRelief = met.has_value();
        if (met)
            outline.points.push_back(*met);
    }
    if (!outline.meetsRelief) {
        outline.points.clear();
        for (const QPointF& offset : offsets) {
            const std::optional<CAxPoint2D> there = stand->LngLat(offset);
            if (!there)
                return AxVideoOutline();
            outline.points.emplace_back(there->x(), there->y(), sight.camera.z() - sight.height);
        }
    }
    for (std::size_t i = 0; i < 4; ++i)
        outline.corners.push_back(outline.points[i * piecesOfSide]);
    std::vector<CAxPoint2D> ends;
    for (std::size_t i : {2u, 3u})
        ends.emplace_back(outline.corners[i].x(), outline.corners[i].y());
    if (stand->plane.FromLngLat(ends, ends))
        outline.width = CAxVector3D(ends[0].x(), ends[0].y(), 0.0)
                            .distanceToPoint(CAxVector3D(ends[1].x(), ends[1].y(), 0.0));
    return outline;
}
