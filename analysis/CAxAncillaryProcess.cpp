#include "analysis/CAxAncillaryProcess.h"
#include "viewer/CAxEarthViewer.h"

#include <osgEarth/DrapeableNode>

CAxAncillaryProcess::CAxAncillaryProcess(CAxEarthViewer* earthViewer, QObject* parent)
    : QObject(parent), viewer(earthViewer)
{
    CreateNoFlyZone();
}

void CAxAncillaryProcess::CreateNoFlyZone()
{
    zoneRoot = new osg::Switch;
    osg::ref_ptr<osgEarth::DrapeableNode> zones = new osgEarth::DrapeableNode;
    zones->setName("NoFlyGroup");
    zoneRoot->addChild(zones);
    viewer->GetDrawNodeGroup()->addChild(zoneRoot);
}

void CAxAncillaryProcess::SetNoFlyZoneMask(bool visible)
{
    zoneRoot->setNodeMask(visible ? 1u : 0u);
}

bool CAxAncillaryProcess::NoFlyZoneMask() const
{
    return zoneRoot->getNodeMask() > 0u;
}

bool CAxAncillaryProcess::Intersection(osgEarth::Symbology::Geometry*, QStringList& ids, bool)
{
    // No zones are loaded yet.
    ids.clear();
    return false;
}
