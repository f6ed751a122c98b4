#include "globe/Geodetic.h"
#include "view/ClipPlanes.h"

#include <osg/Camera>
#include <osgEarth/MapNode>
#include <osgEarth/SpatialReference>
#include <osgEarthUtil/AutoClipPlaneHandler>
#include <osgUtil/CullVisitor>

namespace osgEarth::Util {
namespace {
/// Applies the planes to one projection of one cull traversal; all others keep their usual treatment.
class PlaneChooser : public osg::CullSettings::ClampProjectionMatrixCallback
{
public:
    PlaneChooser(const osgUtil::CullVisitor& visitor, const ClipSituation& situation, bool stopAtHorizon)
        : _visitor(visitor), _projection(*visitor.getProjectionMatrix()), _situation(situation),
          _stopAtHorizon(stopAtHorizon)
    {
    }

    bool clampProjectionMatrixImplementation(osg::Matrixf& projection, double& zNear,
                                             double& zFar) const override
    {
        osg::Matrixd exact(projection);
        const bool changed = clampProjectionMatrixImplementation(exact, zNear, zFar);
        projection = exact;
        return changed;
    }

    bool clampProjectionMatrixImplementation(osg::Matrixd& projection, double& zNear,
                                             double& zFar) const override
    {
        // Cameras inside the scene inherit this callback; a head-up display has no horizon.
        if (projection != _projection)
            return _visitor.clampProjectionMatrixImplementation(projection, zNear, zFar);
        ClipSituation situation = _situation;
        situation.nearestDrawn = zNear;
        situation.farthestDrawn = zFar;
        const ClipPlanes planes = chooseClipPlanes(situation, _stopAtHorizon);
        zNear = planes.zNear;
        zFar = planes.zFar;
        const double depth = zFar - zNear;
        const bool perspective = projection(2, 3) != 0.0;
        projection(2, 2) = perspective ? -(zFar + zNear) / depth : -2.0 / depth;
        projection(3, 2) = perspective ? -2.0 * zFar * zNear / depth : -(zFar + zNear) / depth;
        return true;
    }

private:
    const osgUtil::CullVisitor& _visitor;
    const osg::Matrixd _projection;
    const ClipSituation _situation;
    const bool _stopAtHorizon;
};
} // namespace

AutoClipPlaneCullCallback::AutoClipPlaneCullCallback(MapNode* mapNode) : _mapNode(mapNode) {}

AutoClipPlaneCullCallback::~AutoClipPlaneCullCallback() = default;

void AutoClipPlaneCullCallback::operator()(osg::Node* node, osg::NodeVisitor* nv)
{
    auto* cull = nv->asCullVisitor();
    if (!cull || !node->asCamera()) {
        traverse(node, nv);
        return;
    }

    const osg::Vec3d eye = osg::Matrixd::inverse(*cull->getModelViewMatrix()).getTrans();
    osg::ref_ptr<MapNode> mapNode;
    osg::ref_ptr<const osg::EllipsoidModel> ellipsoid = new osg::EllipsoidModel;
    const SpatialReference* srs = nullptr;
    if (_mapNode.lock(mapNode) && (srs = mapNode->getMapSRS()))
        ellipsoid = srs->getEllipsoid();
    const Geodetic place = toGeodetic(*ellipsoid, eye);

    ClipSituation situation;
    situation.earthRadius = ellipsoid->getRadiusEquator();
    situation.heightAboveEllipsoid = place.height;
    situation.heightAboveGround = place.height;
    double ground = 0.0;
    if (srs && mapNode->getTerrain() &&
        mapNode->getTerrain()->getHeight(srs->getGeographicSRS(), osg::RadiansToDegrees(place.longitude),
                                         osg::RadiansToDegrees(place.latitude), nullptr, &ground))
        situation.heightAboveGround = place.height - ground;

    // The visitor asks the callback when it leaves this camera's projection,
    // which is after this function returns; the next frame replaces it.
    cull->setClampProjectionMatrixCallback(new PlaneChooser(*cull, situation, _clampFar));
    traverse(node, nv);
}
} // namespace osgEarth::Util
