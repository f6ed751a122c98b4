#include "analysis/CAxAncillaryProcess.h"
#include "viewer/CAxEarthViewer.h"

#include <osgEarth/DrapeableNode>

CAxAncillaryProcess::CAxAncillaryProcess(CAxEarthViewer* earthViewer, QObject* parent)
    : QObject(parent), viewer(earthViewer)
{
    CreateNoFlyZone();
}

CAxAncillaryProcess::~CAxAncillaryProcess() = default;

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

void CAxAncillaryProcess::SetCurrViewPort(const osgEarth::Viewpoint& viewpoint)
{
    currViewPort = viewpoint;
}

osgEarth::Viewpoint CAxAncillaryProcess::GetCurrViewPort() const
{
    return currViewPort;
}

QStringList CAxAncillaryProcess::ZonesAt(double, double) const
{
    return {};
}

QList<AxNoflyZoneNear> CAxAncillaryProcess::ZonesNear(double, double, double) const
{
    return {};
}

void CAxAncillaryProcess::FlashZones(const QStringList&) {}

void CAxAncillaryProcess::block() {}

void CAxAncillaryProcess::release() {}

void CAxAncillaryProcess::SetElevationQueryPara(int, int, double, osgEarth::Map*,
                                                const osgEarth::Symbology::Geometry&,
                                                const std::vector<osgEarth::TileKey>&, QObject*,
                                                CAxElevationQuery*)
{
}

void CAxAncillaryProcess::GenerateElevation(const QVariant&) {}

void CAxAncillaryProcess::slotGenerateElevationQuery(QVariant) {}
