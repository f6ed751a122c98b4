#include "camera/CameraMoves.h"

#include <algorithm>
#include <cmath>

namespace osgEarth::Util {
namespace {
/// 1 where the heading is held to north, 0 close to a pole, where north spins.
double northHold(double latitude)
{
    const double kHoldBelow = osg::DegreesToRadians(60.0);
    const double kFreeAbove = osg::DegreesToRadians(80.0);
    const double t = std::clamp((std::abs(latitude) - kHoldBelow) / (kFreeAbove - kHoldBelow), 0.0, 1.0);
    return 1.0 - t * t * (3.0 - 2.0 * t);
}

bool meetsSphere(const Ray& ray, double radius)
{
    const double middle = -(ray.origin * ray.direction);
    return middle > 0.0 && ray.origin * ray.origin - middle * middle < radius * radius;
}

/// Distance along the ray to the sphere round the origin, or to the limb when it passes by.
double reachOnSphere(const Ray& ray, double radius)
{
    const double middle = -(ray.origin * ray.direction);
    const double half2 = radius * radius - (ray.origin * ray.origin - middle * middle);
    return half2 > 0.0 ? middle - std::sqrt(half2) : middle;
}
} // namespace

void carry(const osg::EllipsoidModel& ellipsoid, const osg::Quat& turn, HeadingRule rule, CameraPose& pose)
{
    const Geodetic from = toGeodetic(ellipsoid, pose.center);
    Geodetic to = toGeodetic(ellipsoid, turn * pose.center);
    to.height = from.height;

    double heading = 0.0;
    double pitch = 0.0;
    anglesOf(pose.rotation, heading, pitch);
    const osg::Quat frame = frameAt(to.latitude, to.longitude);
    double turned = 0.0;
    double ignored = 0.0;
    anglesOf(pose.rotation * pose.frame * turn * frame.inverse(), turned, ignored);
    const double free = rule == HeadingRule::TurnFreely
                            ? 1.0
                            : 1.0 - std::min(northHold(from.latitude), northHold(to.latitude));

    pose.center = toWorld(ellipsoid, to);
    pose.frame = frame;
    pose.rotation = rotationOf(heading + free * wrapAngle(turned - heading), pitch);
}

void slide(const osg::EllipsoidModel& ellipsoid, double right, double forward, HeadingRule rule,
           CameraPose& pose)
{
    const double metres = std::hypot(right, forward);
    if (!(metres > 0.0) || !std::isfinite(metres))
        return;
    double heading = 0.0;
    double pitch = 0.0;
    anglesOf(pose.rotation, heading, pitch);
    const double course = heading + std::atan2(right, forward);
    const osg::Vec3d along = pose.frame * osg::Vec3d(std::sin(course), std::cos(course), 0.0);
    osg::Vec3d axis = pose.center ^ along;
    if (axis.normalize() == 0.0)
        return;
    // A quarter of the globe is as far as one step can sensibly go.
    carry(ellipsoid, osg::Quat(std::min(metres / pose.center.length(), osg::PI_2), axis), rule, pose);
}

bool bringUnder(const osg::EllipsoidModel& ellipsoid, const HeldPoint& held, HeadingRule rule,
                CameraPose& pose)
{
    const double radius = held.point.length();
    if (!(radius > 1.0) || !isFinite(held.point))
        return false;
    // Each round turns the globe by what is still missing. Holding the heading
    // and the height above the ellipsoid leaves a rest that shrinks from round
    // to round; where it does not, close to a pole seen from afar, the heading
    // is let go.
    constexpr int kRounds = 16;
    double lastMiss = 1e300;
    for (int i = 0; i < kRounds; ++i) {
        const Ray ray = transformed(held.sight, cameraMatrix(pose));
        const double away = (held.point - ray.origin).length();
        const bool outside = ray.origin.length() > radius;
        const double reach = outside ? std::min(reachOnSphere(ray, radius), held.farthest) : away;
        osg::Vec3d target = ray.origin + ray.direction * std::max(reach, 0.0);
        if (target.normalize() == 0.0)
            return false;
        osg::Quat turn;
        turn.makeRotate(target, held.point / radius);
        const double miss = (target - held.point / radius).length();
        if (miss * radius < 1e-6 * away)
            break;
        if (i > 2 && miss > 0.7 * lastMiss)
            rule = HeadingRule::TurnFreely;
        lastMiss = miss;
        carry(ellipsoid, turn, rule, pose);
    }
    return true;
}

void holdBelowHorizon(const osg::EllipsoidModel& ellipsoid, const HeldPoint& held, HeadingRule rule,
                      CameraPose& pose)
{
    const Ray ray = transformed(held.sight, cameraMatrix(pose));
    if (ray.origin.length() > held.point.length() && meetsSphere(ray, held.point.length()))
        bringUnder(ellipsoid, held, rule, pose);
}

void turnTo(const osg::EllipsoidModel& ellipsoid, const HeldPoint& held, const PitchLimits& limits,
            CameraPose& pose)
{
    // A turn that leaves no roll misses by a little, the next one by less.
    constexpr int kTurns = 4;
    constexpr double kFar = 0.1; // radians; a point that is that far off could not be held, near the horizon
    const Ray sight = transformed(held.sight, cameraMatrix(pose));
    osg::Vec3d there = held.point - sight.origin;
    if (!(there.normalize() > 0.0) || (there - sight.direction).length() > kFar)
        return;
    CameraPose turned = pose;
    for (int i = 0; i < kTurns; ++i) {
        const osg::Vec3d eye = eyeOf(turned);
        osg::Quat turn;
        turn.makeRotate(transformed(held.sight, cameraMatrix(turned)).direction, held.point - eye);
        double heading = 0.0;
        double pitch = 0.0;
        anglesOf(turned.rotation * turned.frame * turn * turned.frame.inverse(), heading, pitch);
        const osg::Quat world = rotationOf(heading, pitch) * turned.frame;
        turned.center = eye - world * osg::Vec3d(0.0, 0.0, turned.distance);
        turned.frame = frameAt(ellipsoid, turned.center);
        turned.rotation = world * turned.frame.inverse();
    }
    if (isFinite(turned.center) && !limitPitch(limits, turned))
        pose = turned;
}

void zoomBy(const osg::EllipsoidModel& ellipsoid, double factor, double nearest, double farthest,
            HeadingRule rule, const std::optional<HeldPoint>& held, CameraPose& pose)
{
    if (!(factor > 0.0) || !std::isfinite(factor))
        return;
    const auto scaled = [&](double distance) {
        return std::clamp(distance * factor, std::min(nearest, distance), std::max(farthest, distance));
    };
    if (!held) {
        pose.distance = std::clamp(pose.distance * factor, nearest, farthest);
        return;
    }
    const osg::Vec3d eye = eyeOf(pose);
    const osg::Quat world = pose.rotation * pose.frame;
    const double away = (held->point - eye).length();
    if (!(away > 0.0))
        return;
    factor = scaled(away) / away;
    factor = scaled(pose.distance) / pose.distance;
    const Ray middle{eye, world * osg::Vec3d(0, 0, -1)};
    const double level = reachOnSphere(middle, held->point.length());
    if (meetsSphere(middle, held->point.length()) && level > 0.0 &&
        level < 4.0 * std::max(pose.distance, away)) {
        // Measured to the level of the point under the cursor, the distance
        // shrinks to nothing there and not before or behind it.
        pose.center = eye + middle.direction * level;
        pose.distance = level * factor;
        pose.frame = frameAt(ellipsoid, pose.center);
        pose.rotation = world * pose.frame.inverse();
        holdBelowHorizon(ellipsoid, *held, rule, pose);
        return;
    }
    // The point is as high as the eye, or higher: straight towards it.
    pose.center = held->point + (pose.center - held->point) * factor;
    pose.distance *= factor;
    pose.frame = frameAt(ellipsoid, pose.center);
    pose.rotation = world * pose.frame.inverse();
}
} // namespace osgEarth::Util
