#include "interaction/models/AxModelPick.h"

#include <osg/Group>
#include <osg/PagedLOD>
#include <osgEarth/GeoData>
#include <osgEarth/SpatialReference>

#include <algorithm>
#include <iterator>
#include <vector>

namespace {
// Higher than any ground, with a model on it, rises above the ellipsoid.
constexpr double aboveEverything = 10000.0;

// Depth in which a group of the scene's own may stand: below the root, or
// below one of the groups that stand there.
constexpr int namedGroupDepth = 2;

osg::Group* FindGroup(osg::Group& from, const char* name, int depth)
{
    for (unsigned i = 0; i < from.getNumChildren(); ++i) {
        osg::Group* child = from.getChild(i)->asGroup();
        if (!child)
            continue;
        if (child->getName() == name)
            return child;
    }
    if (depth <= 1)
        return nullptr;
    for (unsigned i = 0; i < from.getNumChildren(); ++i) {
        osg::Group* child = from.getChild(i)->asGroup();
        osg::Group* found = child ? FindGroup(*child, name, depth - 1) : nullptr;
        if (found)
            return found;
    }
    return nullptr;
}

bool IsOfLayer(const AxSceneHit& hit)
{
    return std::any_of(hit.path.begin(), hit.path.end(),
                       [](const osg::Node* node) { return node->getName() == "ModelLayer"; });
}

// A paged part counts before it is there.
bool ShowsSomething(const osg::Node& node)
{
    if (node.getNodeMask() == 0)
        return false;
    if (node.asDrawable() || dynamic_cast<const osg::PagedLOD*>(&node))
        return true;
    const osg::Group* group = node.asGroup();
    for (unsigned i = 0; group && i < group->getNumChildren(); ++i)
        if (ShowsSomething(*group->getChild(i)))
            return true;
    return false;
}

QString LocalName(const osg::Node& node)
{
    return QString::fromLocal8Bit(node.getName().c_str());
}
} // namespace

std::optional<AxModelHit> AxPickModelLayer(osg::Node& root, const AxViewRay& ray,
                                           const osgEarth::SpatialReference& srs)
{
    AxSceneQuery query;
    query.mask = AxModelLayerMask;
    query.under = AxModelLayerMask;
    for (const AxSceneHit& hit : AxPickScene(root, ray, query)) {
        const auto innermost = std::find_if(hit.path.rbegin(), hit.path.rend(), [](const osg::Node* node) {
            return node->getNodeMask() == AxModelLayerMask;
        });
        osgEarth::GeoPoint point;
        if (!point.fromWorld(&srs, hit.world))
            continue;
        AxModelHit found;
        found.lngLatAlt = point.vec3d();
        found.world = hit.world;
        double latitude = 0.0;
        double longitude = 0.0;
        srs.getEllipsoid()->convertXYZToLatLongHeight(hit.world.x(), hit.world.y(), hit.world.z(), latitude,
                                                      longitude, found.height);
        const osg::Node& node = **innermost;
        found.currNode = LocalName(node);
        const auto above = std::next(innermost);
        if (above != hit.path.rend())
            found.parentNode = LocalName(**above);
        else if (node.getNumParents() > 0)
            found.parentNode = LocalName(*node.getParent(0));
        return found;
    }
    return std::nullopt;
}

osg::Group* AxFindModelRoot(osg::Node* sceneRoot)
{
    osg::Group* root = sceneRoot ? sceneRoot->asGroup() : nullptr;
    return root ? FindGroup(*root, "ModelRoot", namedGroupDepth) : nullptr;
}

bool AxIsModelShown(osg::Node* sceneRoot)
{
    const osg::Group* root = AxFindModelRoot(sceneRoot);
    for (unsigned i = 0; root && i < root->getNumChildren(); ++i) {
        const osg::Node* layers = root->getChild(i);
        if (layers->getName() == "ModelLayer" && ShowsSomething(*layers))
            return true;
    }
    return false;
}

std::optional<double> AxTopOfModels(osg::Group& modelRoot, double longitude, double latitude,
                                    const osgEarth::SpatialReference& srs)
{
    const osg::EllipsoidModel& ellipsoid = *srs.getEllipsoid();
    const double lat = osg::DegreesToRadians(latitude);
    const double lon = osg::DegreesToRadians(longitude);
    AxViewRay down;
    ellipsoid.convertLatLongHeightToXYZ(lat, lon, aboveEverything, down.eye.x(), down.eye.y(), down.eye.z());
    down.direction = -ellipsoid.computeLocalUpVector(down.eye.x(), down.eye.y(), down.eye.z());
    AxSceneQuery query;
    query.finest = true;
    const std::vector<AxSceneHit> hits = AxPickScene(modelRoot, down, query);
    const auto top = std::find_if(hits.begin(), hits.end(), IsOfLayer);
    return top == hits.end() ? std::nullopt : std::make_optional(aboveEverything - top->distance);
}
