#include "analysis/AxZoneFlash.h"
#include "analysis/AxZoneDrawing.h"
#include "viewer/CAxEarthViewer.h"

#include <osgEarth/DrapeableNode>

namespace {
constexpr int turnMs = 250;
constexpr int turns = 16; // in four seconds
const AxAreaColors strong{osg::Vec4f(1.0f, 0.1f, 0.0f, 0.75f), osg::Vec4f(1.0f, 1.0f, 1.0f, 1.0f), 3.0f};
} // namespace

AxZoneFlash::AxZoneFlash(CAxEarthViewer& earthViewer) : alive(&earthViewer), viewer(earthViewer)
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
    if (!alive || !viewer.GetDrawNodeGroup() || !viewer.getSRS())
        return;
    osg::ref_ptr<osg::Group> group = new osgEarth::DrapeableNode;
    for (const auto& area : areas) {
        const osg::ref_ptr<osg::Node> drawn =
            area ? AxDrawArea(*area, *viewer.getSRS(), strong) : osg::ref_ptr<osg::Node>();
        // What has no extent draws nothing.
        if (drawn && drawn->asGroup()->getNumChildren() > 0)
            group->addChild(drawn);
    }
    if (group->getNumChildren() == 0)
        return;
    group->setName("ZoneFlash");
    shown = group;
    parent = viewer.GetDrawNodeGroup();
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
    if (--turnsLeft <= 0 || !alive)
        return Stop();
    shown->setNodeMask(shown->getNodeMask() ? 0u : ~0u);
}
