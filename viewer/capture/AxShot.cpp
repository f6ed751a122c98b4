#include "viewer/capture/AxShot.h"
#include "scene/base/AxGlobePoint.h"
#include "viewer/capture/AxSideView.h"

#include <AxAlgorthm/AxPathMeasure.h>

#include <osg/Camera>

#include <algorithm>
#include <cmath>

namespace {
constexpr double radians = AxGlobe::pi / 180.0;
// High above all ground, so that screen sizes differ little with heights, and below where the graticule
// begins.
constexpr double eyeOverMap = 55000.0;
constexpr double nearest = 1.0;
constexpr double farthest = 1000000.0;

struct Frame
{
    osg::Vec3d east;
    osg::Vec3d north;
    osg::Vec3d up;
};

Frame FrameAt(const osg::Vec3d& lngLat)
{
    const double longitude = lngLat.x() * radians;
    const osg::Vec3d up = AxGlobe::NormalAt(lngLat);
    const osg::Vec3d east(-std::sin(longitude), std::cos(longitude), 0.0);
    return {east, up ^ east, up};
}

// Rounded directions would shake what is six million metres from the origin.
osg::Matrixd ViewFrom(const osg::Vec3d& eye, const osg::Vec3d& right, const osg::Vec3d& up)
{
    const osg::Vec3d back = right ^ up;
    const osg::Matrixd turn(right.x(), up.x(), back.x(), 0.0, right.y(), up.y(), back.y(), 0.0, right.z(),
                            up.z(), back.z(), 0.0, 0.0, 0.0, 0.0, 1.0);
    return osg::Matrixd::translate(-eye) * turn;
}
} // namespace

AxShot AxShots::AsSeen(const osg::Camera& camera, const QSize& size)
{
    AxShot shot{camera.getViewMatrix(), camera.getProjectionMatrix(), size, 1.0};
    const osg::Viewport* port = camera.getViewport();
    if (!port || size.isEmpty() || !(port->width() > 0.0) || !(port->height() > 0.0))
        return shot;
    const double wider = size.width() / static_cast<double>(size.height()) / (port->width() / port->height());
    shot.projection.postMultScale(
        osg::Vec3d(wider > 1.0 ? 1.0 / wider : 1.0, wider < 1.0 ? wider : 1.0, 1.0));
    return shot;
}

double AxShots::ScaleAsSeen(const osg::Camera& camera, const QSize& size)
{
    const osg::Viewport* port = camera.getViewport();
    if (!port || size.isEmpty() || !(port->width() > 0.0) || !(port->height() > 0.0))
        return 1.0;
    return std::min(size.width() / port->width(), size.height() / port->height());
}

AxShot AxShots::From(const AxShotPose& pose, double high, const QSize& size)
{
    const Frame at = FrameAt(pose.place);
    const double heading = pose.heading * radians;
    const double pitch = pose.pitch * radians;
    const osg::Vec3d ahead = at.east * std::sin(heading) + at.north * std::cos(heading);
    const osg::Vec3d right = at.east * std::cos(heading) - at.north * std::sin(heading);
    const osg::Vec3d up = at.up * std::cos(pitch) - ahead * std::sin(pitch);
    const double wide = size.isEmpty() ? 1.0 : size.width() / static_cast<double>(size.height());
    return {ViewFrom(AxGlobe::WorldOf(pose.place), right, up),
            osg::Matrixd::perspective(high, wide, nearest, farthest), size, 1.0};
}

AxShot AxShots::FromAbove(const AxShotGround& ground, const QSize& size)
{
    const Frame at = FrameAt(ground.middle);
    const osg::Vec3d eye = AxGlobe::WorldOf({ground.middle.x(), ground.middle.y(), eyeOverMap});
    return {ViewFrom(eye, at.east, at.north),
            osg::Matrixd::ortho(-0.5 * ground.width, 0.5 * ground.width, -0.5 * ground.height,
                                0.5 * ground.height, nearest, 2.0 * eyeOverMap),
            size, 1.0};
}

double AxShots::PixelAt(const osg::Camera& camera, const osg::Vec3d& world)
{
    const osg::Viewport* port = camera.getViewport();
    const osg::Matrixd& projection = camera.getProjectionMatrix();
    const double depth = -(world * camera.getViewMatrix()).z();
    const double height = port ? port->height() : 0.0;
    return 2.0 * (projection(3, 3) == 0.0 ? depth : 1.0) / (projection(1, 1) * height);
}

std::vector<QRect> AxShots::Parts(const QSize& picture, const QSize& largest)
{
    std::vector<QRect> parts;
    for (int y = 0; !largest.isEmpty() && y < picture.height(); y += largest.height())
        for (int x = 0; x < picture.width(); x += largest.width())
            parts.emplace_back(QPoint(x, y), largest.boundedTo({picture.width() - x, picture.height() - y}));
    return parts;
}

osg::Matrixd AxShots::ProjectionOf(const AxShot& shot, const QRect& part)
{
    const double x = 2.0 / shot.size.width();
    const double y = 2.0 / shot.size.height();
    const double below = shot.size.height() - part.y() - part.height();
    return AxPartOfProjection(shot.projection,
                              {part.x() * x - 1.0, below * y - 1.0, part.width() * x, part.height() * y});
}

std::vector<AxShotPose> AxShots::Along(const std::vector<osg::Vec3d>& route, double step, double pitch,
                                       std::size_t most)
{
    const auto isPlace = [](const osg::Vec3d& place) { return place.valid() && std::abs(place.y()) <= 90.0; };
    if (route.size() < 2 || !(step > 0.0) || most < 2 || !std::all_of(route.begin(), route.end(), isPlace))
        return {};
    std::vector<CAxVector3D> places;
    places.reserve(route.size());
    for (const osg::Vec3d& place : route)
        places.emplace_back(place.x(), place.y(), place.z());
    const AxPathFigures figures = AxMeasurePath(places);
    // One that climbs has no bearing, nor has one that is shorter than a hundredth of a millimetre.
    const auto leads = [](const AxPathLeg& leg) { return std::isfinite(leg.bearing); };
    const double whole = figures.total.length;
    if (!(whole > 0.0) || std::none_of(figures.legs.begin(), figures.legs.end(), leads))
        return {};
    const double count = std::min(std::ceil(whole / step - 1e-9), static_cast<double>(most - 1));
    const auto gaps = static_cast<std::size_t>(std::max(1.0, count));
    std::vector<AxShotPose> poses;
    std::size_t leg = 0;
    double before = 0.0; // the length of the legs before
    for (std::size_t i = 0; i <= gaps; ++i) {
        const double at = whole * static_cast<double>(i) / static_cast<double>(gaps);
        while (leg + 1 < figures.legs.size() &&
               (at > before + figures.legs[leg].length || !leads(figures.legs[leg])))
            before += figures.legs[leg++].length;
        // At the end there may be legs that lead nowhere.
        while (leg > 0 && !leads(figures.legs[leg]))
            before -= figures.legs[--leg].length;
        const osg::Vec3d& from = route[leg];
        osg::Vec3d to = route[leg + 1];
        to.x() = from.x() + std::remainder(to.x() - from.x(), 360.0);
        const double share = std::clamp((at - before) / figures.legs[leg].length, 0.0, 1.0);
        AxShotPose pose;
        pose.place = from + (to - from) * share;
        pose.heading = figures.legs[leg].bearing;
        pose.pitch = pitch;
        poses.push_back(pose);
    }
    return poses;
}
