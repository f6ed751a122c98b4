#include "camera/CameraPose.h"

#include <algorithm>
#include <cmath>

namespace osgEarth::Util {
osg::Quat rotationOf(double heading, double pitch)
{
    return osg::Quat(pitch + osg::PI_2, osg::Vec3d(1, 0, 0)) * osg::Quat(-heading, osg::Vec3d(0, 0, 1));
}

void anglesOf(const osg::Quat& rotation, double& heading, double& pitch)
{
    const osg::Vec3d look = rotation * osg::Vec3d(0, 0, -1);
    const osg::Vec3d up = rotation * osg::Vec3d(0, 1, 0);
    const double level = std::hypot(look.x(), look.y());
    pitch = std::atan2(look.z(), level);
    // The look direction fades out where the up direction takes over, so the
    // weighted sum is one unit long whatever the pitch.
    heading = std::atan2(look.x() * level - up.x() * look.z(), look.y() * level - up.y() * look.z());
}

CameraPose makePose(const osg::EllipsoidModel& ellipsoid, const osg::Vec3d& center, double heading,
                    double pitch, double distance)
{
    return {center, frameAt(ellipsoid, center), rotationOf(heading, pitch), distance};
}

osg::Matrixd cameraMatrix(const CameraPose& pose)
{
    return osg::Matrixd::translate(0.0, 0.0, pose.distance) * osg::Matrixd::rotate(pose.rotation) *
           osg::Matrixd::rotate(pose.frame) * osg::Matrixd::translate(pose.center);
}

osg::Matrixd viewMatrix(const CameraPose& pose)
{
    return osg::Matrixd::translate(-pose.center) * osg::Matrixd::rotate(pose.frame.inverse()) *
           osg::Matrixd::rotate(pose.rotation.inverse()) * osg::Matrixd::translate(0.0, 0.0, -pose.distance);
}

osg::Vec3d eyeOf(const CameraPose& pose)
{
    return pose.center + pose.frame * (pose.rotation * osg::Vec3d(0.0, 0.0, pose.distance));
}

CameraPose lookAt(const osg::EllipsoidModel& ellipsoid, const osg::Vec3d& eye, const osg::Vec3d& target,
                  double heading)
{
    CameraPose pose;
    pose.center = target;
    pose.frame = frameAt(ellipsoid, target);
    pose.distance = (target - eye).length();
    const osg::Vec3d look = pose.frame.inverse() * (target - eye);
    const double level = std::hypot(look.x(), look.y());
    if (level > 1e-7 * pose.distance)
        heading = std::atan2(look.x(), look.y());
    pose.rotation = rotationOf(heading, pose.distance > 0.0 ? std::atan2(look.z(), level) : -osg::PI_2);
    return pose;
}

Ray cursorRay(const osg::Matrixd& projection, double x, double y)
{
    const bool perspective = projection(2, 3) != 0.0;
    if (!perspective) {
        return {{(x - projection(3, 0)) / projection(0, 0), (y - projection(3, 1)) / projection(1, 1), 0.0},
                {0.0, 0.0, -1.0}};
    }
    osg::Vec3d direction((x + projection(2, 0)) / projection(0, 0), (y + projection(2, 1)) / projection(1, 1),
                         -1.0);
    direction.normalize();
    return {{0.0, 0.0, 0.0}, direction};
}

Ray transformed(const Ray& ray, const osg::Matrixd& matrix)
{
    osg::Vec3d direction = osg::Matrixd::transform3x3(ray.direction, matrix);
    direction.normalize();
    return {ray.origin * matrix, direction};
}

namespace {
/// The stretch of the ray between the highest and the lowest ground there can be, seen from outside.
struct Stretch
{
    double from;
    double to;
};

std::optional<Stretch> insideShell(const osg::EllipsoidModel& ellipsoid, const Ray& ray, double height)
{
    const double a = ellipsoid.getRadiusEquator() + height;
    const double k = a / (ellipsoid.getRadiusPolar() + height);
    const osg::Vec3d o(ray.origin.x(), ray.origin.y(), ray.origin.z() * k);
    const osg::Vec3d d(ray.direction.x(), ray.direction.y(), ray.direction.z() * k);
    const double dd = d * d;
    const double middle = -(o * d) / dd;
    const osg::Vec3d nearest = o + d * middle;
    const double half2 = (a * a - nearest * nearest) / dd;
    if (half2 < 0.0 || middle + std::sqrt(half2) < 0.0)
        return std::nullopt;
    return Stretch{std::max(0.0, middle - std::sqrt(half2)), middle + std::sqrt(half2)};
}

constexpr double kHighestGround = 9000.0; // above every summit
constexpr double kDeepestGround = -500.0; // below every dry shore
} // namespace

std::optional<double> groundAlong(const osg::EllipsoidModel& ellipsoid, const Ray& ray,
                                  const GroundHeight& ground)
{
    const auto shell = insideShell(ellipsoid, ray, kHighestGround);
    if (!shell)
        return std::nullopt;
    double end = shell->to;
    if (const auto core = insideShell(ellipsoid, ray, kDeepestGround))
        end = core->from > 0.0 ? core->from : core->to;

    const auto above = [&](double t) {
        const Geodetic place = toGeodetic(ellipsoid, ray.origin + ray.direction * t);
        return place.height - ground(place.latitude, place.longitude);
    };
    double before = shell->from;
    if (above(before) < 0.0)
        return std::nullopt; // starts under ground
    // Steps grow with the distance: near relief is found in detail, far relief as far as it can be seen.
    constexpr int kSteps = 48;
    for (int i = 1; i <= kSteps; ++i) {
        const double f = static_cast<double>(i) / kSteps;
        double after = shell->from + (end - shell->from) * f * f;
        if (above(after) > 0.0) {
            before = after;
            continue;
        }
        while (after - before > 1e-3 + 1e-9 * after) {
            const double half = 0.5 * (before + after);
            (above(half) > 0.0 ? before : after) = half;
        }
        return 0.5 * (before + after);
    }
    return std::nullopt;
}

bool recenter(const osg::EllipsoidModel& ellipsoid, const GroundPick& pick, CameraPose& pose)
{
    const osg::Quat world = pose.rotation * pose.frame;
    const Ray sight{eyeOf(pose), world * osg::Vec3d(0, 0, -1)};
    const auto distance = pick(sight);
    if (!distance || *distance < 1e-3)
        return false;
    pose.center = sight.origin + sight.direction * *distance;
    pose.distance = *distance;
    pose.frame = frameAt(ellipsoid, pose.center);
    pose.rotation = world * pose.frame.inverse();
    return true;
}

bool limitPitch(const PitchLimits& limits, CameraPose& pose)
{
    constexpr double kRounding = 1e-10;
    double heading = 0.0;
    double pitch = 0.0;
    anglesOf(pose.rotation, heading, pitch);
    if (pitch >= limits.lowest - kRounding && pitch <= limits.highest + kRounding)
        return false;
    pose.rotation = rotationOf(heading, std::clamp(pitch, limits.lowest, limits.highest));
    return true;
}

bool keepAboveGround(const osg::EllipsoidModel& ellipsoid, const GroundHeight& ground, double clearance,
                     const PitchLimits& limits, SunkenCentre sunken, CameraPose& pose)
{
    constexpr double kRounding = 1e-6;
    constexpr double kMargin = 1e-4; // so that the same check finds nothing to do the next time
    const auto missing = [&](const Geodetic& place, double above) {
        return ground(place.latitude, place.longitude) + above - place.height;
    };
    const auto raise = [&](Geodetic place, double metres) {
        place.height += metres;
        return toWorld(ellipsoid, place);
    };
    // Each round mends what the one before it broke: a camera that is turned
    // back to its steepest or flattest pitch stands over other ground.
    constexpr int kRounds = 8;
    for (int round = 0; round < kRounds; ++round) {
        const Geodetic eye = toGeodetic(ellipsoid, eyeOf(pose));
        const double lift = missing(eye, clearance);
        if (lift <= kRounding)
            return round > 0;
        if (round == 0) {
            const Geodetic center = toGeodetic(ellipsoid, pose.center);
            const double depth = missing(center, 0.0);
            const bool rises = sunken == SunkenCentre::Rises || lift > 0.5 * depth;
            if (depth > kRounding && rises) {
                pose.center = raise(center, depth);
                continue;
            }
        }
        double heading = 0.0;
        double pitch = 0.0;
        anglesOf(pose.rotation, heading, pitch);
        const osg::Vec3d raised = raise(eye, lift + kMargin);
        pose = lookAt(ellipsoid, raised, pose.center, heading);
        anglesOf(pose.rotation, heading, pitch);
        if (pitch < limits.lowest) {
            // It cannot look down at its centre as steeply as that: it looks past it.
            pose.rotation = rotationOf(heading, limits.lowest);
            pose.center += raised - eyeOf(pose);
        } else
            limitPitch(limits, pose);
    }
    // No way to keep the centre in the middle: straight up.
    const Geodetic eye = toGeodetic(ellipsoid, eyeOf(pose));
    const double lift = missing(eye, clearance);
    if (lift > kRounding)
        pose.center += raise(eye, lift + kMargin) - toWorld(ellipsoid, eye);
    return true;
}
} // namespace osgEarth::Util
