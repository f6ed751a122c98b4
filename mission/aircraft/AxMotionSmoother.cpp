#include "mission/aircraft/AxMotionSmoother.h"
#include "scene/base/AxGlobePoint.h"
#include "scene/base/AxLongitudes.h"

#include <algorithm>
#include <cmath>

namespace {
// Seconds. Between messages that are farther apart nothing is made up.
constexpr double longestInterval = 1.5;
// A message that comes a little late finds the model still on its way.
constexpr double lateness = 1.15;
// How fast the interval follows that of the messages.
constexpr double newShare = 0.3;
constexpr double farthestGlide = 500.0; // metres

double ShorterWay(double from, double to)
{
    return std::remainder(to - from, 2.0 * AxGlobe::pi);
}
} // namespace

bool AxMotionPace::Told(double now)
{
    const double since = toldAt ? now - *toldAt : longestInterval + 1.0;
    toldAt = now;
    jumps = !(since >= 0.0 && since <= longestInterval);
    if (jumps)
        interval = 0.0;
    else
        interval = interval > 0.0 ? interval + newShare * (since - interval) : since;
    return !jumps;
}

double AxMotionPace::Left(double now) const
{
    const double whole = lateness * interval;
    if (jumps || !toldAt || !(whole > 0.0))
        return 0.0;
    return std::clamp(1.0 - (now - *toldAt) / whole, 0.0, 1.0);
}

void AxMotionSmoother::TellPlace(const osg::Vec3d& newest, double now)
{
    const std::optional<osg::Vec3d> drawn = PlaceAt(now);
    const bool goes = placePace.Told(now);
    place = newest;
    placeBefore =
        goes && drawn && (AxGlobe::WorldOf(*drawn) - AxGlobe::WorldOf(newest)).length() <= farthestGlide
            ? *drawn
            : newest;
    placeBefore.x() = AxLongitudes::NearestTo(newest.x(), placeBefore.x());
}

void AxMotionSmoother::TellAttitude(const std::array<double, 3>& newest, double now)
{
    const auto drawn = AttitudeAt(now);
    const bool goes = attitudePace.Told(now);
    attitude = newest;
    attitudeBefore = goes && drawn ? *drawn : newest;
}

void AxMotionSmoother::Jump()
{
    if (place)
        placeBefore = *place;
    if (attitude)
        attitudeBefore = *attitude;
}

void AxMotionSmoother::Lift(double metres)
{
    if (place)
        place->z() += metres;
    placeBefore.z() += metres;
}

std::optional<osg::Vec3d> AxMotionSmoother::PlaceAt(double now) const
{
    if (!place)
        return std::nullopt;
    return *place + (placeBefore - *place) * placePace.Left(now);
}

std::optional<std::array<double, 3>> AxMotionSmoother::AttitudeAt(double now) const
{
    if (!attitude)
        return std::nullopt;
    const double left = attitudePace.Left(now);
    std::array<double, 3> angles = *attitude;
    for (std::size_t i = 0; i < angles.size(); ++i)
        angles[i] += left * ShorterWay((*attitude)[i], attitudeBefore[i]);
    return angles;
}

bool AxMotionSmoother::IsSettled(double now) const
{
    return placePace.Left(now) <= 0.0 && attitudePace.Left(now) <= 0.0;
}
