#include "interaction/AxBlockRefusal.h"
#include "analysis/CAxAncillaryProcess.h"
#include "interaction/AxLongitudes.h"
#include "interaction/AxNotice.h"
#include "viewer/CAxEarthViewer.h"

#include <QCoreApplication>
#include <QPointer>

#include <algorithm>
#include <cmath>

namespace {
// What CheckGeometry() answers after the operator was told why.
constexpr int rejectedAloud = -2;
constexpr int mostNamed = 20;

int Tell(CAxEarthViewer* viewer, const QString& text, const QString& details = {})
{
    AxShowNotice(viewer, QCoreApplication::translate("AxBlockRefusal", "Block Information"), text, details);
    return rejectedAloud;
}
} // namespace

int AxBlockRefusal::TooFewPoints(CAxEarthViewer* viewer)
{
    return Tell(viewer,
                QCoreApplication::translate("AxBlockRefusal", "Point count of block is less than 3."));
}

int AxBlockRefusal::Invalid(CAxEarthViewer* viewer)
{
    return Tell(viewer, QCoreApplication::translate("AxBlockRefusal", "Block is invalid."));
}

int AxBlockRefusal::OverZones(CAxEarthViewer* viewer, const QStringList& zoneIDs)
{
    if (CAxAncillaryProcess* process = viewer ? viewer->GetAncillaryProcess() : nullptr)
        process->FlashZones(zoneIDs);
    return Tell(viewer,
                QCoreApplication::translate("AxBlockRefusal",
                                            "The current measurement area contains information no-fly area."),
                AxZoneDetails(zoneIDs));
}

QString AxZoneDetails(const QStringList& zoneIDs)
{
    const QString named = QStringList(zoneIDs.mid(0, mostNamed)).join(QStringLiteral(", "));
    const int more = static_cast<int>(zoneIDs.size()) - mostNamed;
    return more > 0 ? QCoreApplication::translate("AxBlockRefusal", "No-fly zones: %1 and %2 more")
                          .arg(named)
                          .arg(more)
                    : QCoreApplication::translate("AxBlockRefusal", "No-fly zones: %1").arg(named);
}

QStringList AxZonesUnder(const CAxEarthViewer& viewer, const std::vector<osg::Vec3d>& ring)
{
    CAxAncillaryProcess* process = viewer.GetAncillaryProcess();
    const bool isUsable =
        std::all_of(ring.begin(), ring.end(), [](const osg::Vec3d& point) { return point.valid(); });
    if (!process || ring.empty() || !isUsable)
        return {};
    // The test knows no antimeridian: a ring across it goes on beyond 180 degrees.
    constexpr double half = 180.0;
    const osg::ref_ptr<osgEarth::Symbology::Polygon> area = new osgEarth::Symbology::Polygon;
    for (const osg::Vec3d& point : ring) {
        const double before = area->empty() ? point.x() : area->back().x();
        const bool isCrossing = std::abs(point.x() - before) > half;
        area->push_back(osg::Vec3d(isCrossing ? AxLongitudes::NearestTo(before, point.x()) : point.x(),
                                   point.y(), point.z()));
    }
    // A ring around a pole does run around the globe.
    if (std::abs(area->back().x() - area->front().x()) > half)
        area->asVector() = ring;
    QStringList ids;
    process->Intersection(area, ids, false);
    return ids;
}
