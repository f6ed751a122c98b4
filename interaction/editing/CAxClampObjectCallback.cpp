#include "interaction/editing/CAxClampObjectCallback.h"
#include "interaction/editing/CAxDragger.h"

#include <osg/UserDataContainer>
#include <osg/ValueObject>
#include <osgEarth/SpatialReference>
#include <osgUtil/IntersectionVisitor>
#include <osgUtil/LineSegmentIntersector>

#include <cmath>
#include <optional>

namespace {
// Half of the segment that looks for the ground, metres.
constexpr double reach = 10000.0;

bool IsSet(const CAxDragger& dragger, const char* name)
{
    bool value = false;
    return dragger.getUserValue(name, value) && value;
}

// Longitude and latitude in radians.
osg::Vec3d OnEllipsoid(const osg::EllipsoidModel& ellipsoid, double longitude, double latitude,
                       osg::Vec3d& up)
{
    const double a = ellipsoid.getRadiusEquator();
    const double b = ellipsoid.getRadiusPolar();
    const double e2 = 1.0 - b * b / (a * a);
    const double sine = std::sin(latitude);
    const double cosine = std::cos(latitude);
    const double primeVertical = a / std::sqrt(1.0 - e2 * sine * sine);
    up.set(cosine * std::cos(longitude), cosine * std::sin(longitude), sine);
    return {primeVertical * up.x(), primeVertical * up.y(), primeVertical * (1.0 - e2) * up.z()};
}

std::optional<osg::Vec3d> OnTile(osg::Node& tile, const osgEarth::GeoPoint& place,
                                 const osgEarth::Terrain* terrain)
{
    const osgEarth::SpatialReference& srs = *place.getSRS();
    // A tile of the terrain knows its heights, which its triangles only
    // approach, and which take a thousandth of the time of testing these.
    double height = 0.0;
    if (terrain && terrain->getHeight(&tile, &srs, place.x(), place.y(), &height))
        return std::abs(height) > reach ? std::nullopt
                                        : std::make_optional<osg::Vec3d>(place.x(), place.y(), height);
    osg::Vec3d up;
    const osg::Vec3d foot =
        OnEllipsoid(*srs.getGeographicSRS()->getEllipsoid(), osg::DegreesToRadians(place.x()),
                    osg::DegreesToRadians(place.y()), up);
    osg::ref_ptr<osgUtil::LineSegmentIntersector> segment =
        new osgUtil::LineSegmentIntersector(foot + up * reach, foot - up * reach);
    osgUtil::IntersectionVisitor visitor(segment);
    tile.accept(visitor);
    osgEarth::GeoPoint hit;
    if (!segment->containsIntersections() ||
        !hit.fromWorld(&srs, segment->getFirstIntersection().getWorldIntersectPoint()))
        return std::nullopt;
    return hit.vec3d();
}
} // namespace

CAxClampObjectCallback::CAxClampObjectCallback(CAxDragger* target, int vertex, int minimumLod)
    : dragger(target), index(vertex), minLod(minimumLod)
{
}

void CAxClampObjectCallback::onTileAdded(const osgEarth::TileKey& key, osg::Node* tile,
                                         osgEarth::TerrainCallbackContext& context)
{
    if (!dragger || !tile)
        return;
    if (dragger->getNodeMask() == 0) {
        lastLod = -1;
        return;
    }
    // Most handles carry no values at all; looking for each by its name takes time.
    if (const osg::UserDataContainer* values = dragger->getUserDataContainer();
        values && values->getNumUserObjects() > 0) {
        if (IsSet(*dragger, "IntersectModel") || IsSet(*dragger, "MoveAdapter"))
            return;
        if (IsSet(*dragger, "ResetClampAlt")) {
            dragger->setUserValue("ResetClampAlt", false);
            lastLod = -1;
            return;
        }
        if (IsSet(*dragger, "Hover"))
            return;
    }
    const int lod = static_cast<int>(key.getLevelOfDetail());
    const osgEarth::GeoPoint& place = dragger->getPosition();
    if (lod <= minLod || lod <= lastLod || !place.isValid() || !key.getExtent().contains(place)) {
        lastPosition = osg::Vec3d();
        return;
    }
    const auto ground = OnTile(*tile, place, context.getTerrain());
    if (!ground)
        return;
    const osg::ref_ptr<CAxClampObjectCallback> self(this);
    osgEarth::GeoPoint clamped = place;
    clamped.altitudeMode() = osgEarth::ALTMODE_ABSOLUTE;
    clamped.z() = ground->z();
    dragger->setPosition(clamped, false);
    lastPosition = *ground;
    lastLod = lod;
    emit signalPositionChanged(place.x(), place.y(), ground->z(), index);
}
