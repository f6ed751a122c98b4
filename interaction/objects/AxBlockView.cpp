#include "interaction/objects/AxBlockView.h"
#include "scene/base/AxGlobePoint.h"

#include <algorithm>
#include <cmath>

namespace {
constexpr double borderShare = 0.05; // of the picture, on each side
constexpr double nearestMetres = 300.0;
constexpr double wholeGlobeMetres = 2.5e7;

// What a straight view down on a place has where: x to the east, y to the north, z up from there, metres.
struct ViewFrame
{
    explicit ViewFrame(const osg::Vec3d& middle, double altitude)
        : up(middle), origin(AxGlobe::WorldAt(middle, altitude))
    {
        const double lng = AxGlobe::LngLatOf(up).x() * AxGlobe::pi / 180.0;
        east.set(-std::sin(lng), std::cos(lng), 0.0);
        north = up ^ east;
    }
    osg::Vec3d At(const osg::Vec3d& world) const
    {
        const osg::Vec3d from = world - origin;
        return {from * east, from * north, from * up};
    }

    osg::Vec3d up;
    osg::Vec3d origin;
    osg::Vec3d east;
    osg::Vec3d north;
};

// From how far away a place is in the picture, and not behind the horizon.
double RangeFor(const ViewFrame& frame, const osg::Vec3d& world, const osg::Vec3d& normal,
                const osg::Vec2d& inside)
{
    const osg::Vec3d place = frame.At(world);
    const double inPicture =
        place.z() + std::max(std::abs(place.x()) / inside.x(), std::abs(place.y()) / inside.y());
    const double facing = frame.up * normal;
    constexpr double nearlyOpposite = 1e-3;
    const double overHorizon =
        facing > nearlyOpposite ? ((world - frame.origin) * normal) / facing : wholeGlobeMetres;
    return std::max(inPicture, overHorizon);
}

// The middle of the smallest box that holds them all, by its normal.
osg::Vec3d MiddleOf(const std::vector<osg::Vec3d>& normals, const std::vector<osg::Vec3d>& worlds)
{
    osg::Vec3d middle;
    for (const osg::Vec3d& normal : normals)
        middle += normal;
    if (middle.normalize() == 0.0)
        return normals.front();
    // What is near the middle of a curved ground moves it; the next round is nearer.
    constexpr int rounds = 4;
    for (int i = 0; i < rounds; ++i) {
        const ViewFrame frame(middle, 0.0);
        osg::Vec3d low = frame.At(worlds.front());
        osg::Vec3d high = low;
        for (const osg::Vec3d& world : worlds) {
            const osg::Vec3d place = frame.At(world);
            low.set(std::min(low.x(), place.x()), std::min(low.y(), place.y()), 0.0);
            high.set(std::max(high.x(), place.x()), std::max(high.y(), place.y()), 0.0);
        }
        middle += (frame.east * (low.x() + high.x()) + frame.north * (low.y() + high.y())) *
                  (0.5 / AxGlobe::semiMajorAxis);
        middle.normalize();
    }
    return middle;
}
} // namespace

osgEarth::Viewpoint AxViewpointOver(const std::vector<osg::Vec3d>& places, const osg::Vec2d& halfView,
                                    double margin)
{
    const bool isUsable = halfView.x() > 0.0 && halfView.y() > 0.0 && halfView.valid() &&
                          std::all_of(places.begin(), places.end(),
                                      [](const osg::Vec3d& place) { return std::isfinite(place.length2()); });
    if (places.empty() || !isUsable)
        return {};
    std::vector<osg::Vec3d> normals;
    std::vector<osg::Vec3d> worlds;
    double altitude = 0.0;
    for (const osg::Vec3d& place : places) {
        // By normals neither the date line nor a pole is special.
        normals.push_back(AxGlobe::NormalAt(place));
        worlds.push_back(AxGlobe::WorldAt(normals.back(), place.z()));
        altitude += place.z() / static_cast<double>(places.size());
    }
    const ViewFrame frame(MiddleOf(normals, worlds), altitude);
    const osg::Vec2d inside = halfView * (1.0 - 2.0 * borderShare);
    double range = nearestMetres;
    for (std::size_t i = 0; i < worlds.size(); ++i)
        range = std::max(range, RangeFor(frame, worlds[i], normals[i], inside));
    range *= 1.0 + (margin > 0.0 ? margin : 0.0);
    const osg::Vec3d place = AxGlobe::LngLatOf(frame.up);
    return osgEarth::Viewpoint("", place.x(), place.y(), altitude, 0.0, -90.0,
                               std::min(range, wholeGlobeMetres));
}
