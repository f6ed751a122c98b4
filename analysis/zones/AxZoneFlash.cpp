#include "analysis/zones/AxZoneFlash.h"
#include "analysis/zones/AxZoneDrawing.h"
#include "scene/AxScene.h"

#include <osgEarth/DrapeableNode>

namespace {
constexpr int turnMs = 250;
constexpr int turns = 16; // in four seconds
const AxAreaColors strong{osg::Vec4f(1.0f, 0.1f, 0.0f, 0.75f), osg::Vec4f(1.0f, 1.0f, 1.0f, 1.0f), 3.0f};
} // namespace

AxZoneFlash::AxZoneFlash(AxViewerParts& parts) : viewer(&parts)
{
    timer.setInterval(turnMs);
    QObject::connect(&timer, &QTimer::timeout, &timer, [this] { Turn(); });
}

AxZoneFlash::~AxZoneFlash()
{
    Stop();
}

void AxZoneFlash::Flash(const QList<osg::ref_ptr<const osgEarth::Symbology::Geometry>>& areas)
{
    Stop();
    if (!viewer)
        return;
    osg::Group* const drawn = viewer->Scene().DrawGroup();
    const osgEarth::SpatialReference* const srs = viewer->Scene().MapSRS();
    if (!drawn || !srs)
        return;
    osg::ref_ptr<osg::Group> group = new osgEarth::DrapeableNode;
    for (const auto& area : areas) {
        const osg::ref_ptr<osg::Node> shape =
            area ? AxDrawArea(*area, *srs, strong) : osg::ref_ptr<osg::Node>();
        // What has no extent draws nothing.
        if (shape && shape->asGroup()->getNumChildren() > 0)
            group->addChild(shape);
    }
    if (group->getNumChildren() == 0)
        return;
    group->setName("ZoneFlash");
    shown = group;
    parent = drawn;
    parent->addChild(shown);
    turnsLeft = turns;
    timer.start();
}

void AxZoneFlash::Stop()
{
    timer.stop();
    if (parent && shown)
        parent->removeChild(shown);
    parent = nullptr;
    shown = nullptr;
}

void AxZoneFlash::Turn()
{
    if (--turnsLeft <= 0 || !viewer)
        return Stop();
    shown->setNodeMask(shown->getNodeMask() ? 0u : ~0u);
}
