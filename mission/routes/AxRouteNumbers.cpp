#include "mission/routes/AxRouteNumbers.h"

#include "mission/routes/AxRouteRules.h"
#include "scene/AxScene.h"

#include <osg/Camera>
#include <osg/Viewport>
#include <osgEarth/MapNode>
#include <osgViewer/Viewer>

#include <algorithm>
#include <utility>

void AxRouteNumbers::SetPlaces(std::vector<osg::Vec3d> points)
{
    places = std::move(points);
    shown.clear();
    node->removeChildren(0, node->getNumChildren());
}

void AxRouteNumbers::SetColors(int first, int last, const Colors& colors)
{
    for (int i = std::max(first, 0); i <= std::min(last, Count() - 1); ++i) {
        colored[i] = colors;
        if (const osg::ref_ptr<osg::Node> number = shown.take(i))
            node->removeChild(number);
    }
}

void AxRouteNumbers::Look(const AxScene& scene, const std::function<osg::ref_ptr<osg::Node>(int)>& make)
{
    const osg::Camera* camera = scene.View()->getCamera();
    if (!scene.MapNode() || !camera->getViewport())
        return;
    const std::vector<int> wanted = AxRouteRules::NumbersShown(
        places, camera->getViewMatrix() * camera->getProjectionMatrix(),
        static_cast<int>(camera->getViewport()->width()), static_cast<int>(camera->getViewport()->height()));
    for (auto number = shown.begin(); number != shown.end();) {
        if (std::binary_search(wanted.begin(), wanted.end(), number.key())) {
            ++number;
            continue;
        }
        node->removeChild(number.value());
        number = shown.erase(number);
    }
    for (const int index : wanted) {
        const osg::ref_ptr<osg::Node> number = shown.contains(index) ? nullptr : make(index);
        if (!number)
            continue;
        shown.insert(index, number);
        node->addChild(number);
    }
}
