#include "interaction/objects/AxZonesUnder.h"
#include "scene/AxViewerParts.h"
#include "scene/AxZoneAnswers.h"
#include "scene/base/AxLongitudes.h"

#include <osgEarthSymbology/Geometry>

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

namespace {
constexpr int mostNamed = 20;
} // namespace

QString AxZoneDetails(const QStringList& zoneIDs)
{
    const QString named = QStringList(zoneIDs.mid(0, mostNamed)).join(QStringLiteral(", "));
    const int more = static_cast<int>(zoneIDs.size()) - mostNamed;
    return more > 0 ? QCoreApplication::translate("AxBlockRefusal", "No-fly zones: %1 and %2 more")
                          .arg(named)
                          .arg(more)
                    : QCoreApplication::translate("AxBlockRefusal", "No-fly zones: %1").arg(named);
}

QStringList AxZonesUnder(AxViewerParts& viewer, const std::vector<osg::Vec3d>& ring)
{
    AxZoneAnswers* const zones = viewer.Zones();
    const bool isUsable =
        std::all_of(ring.begin(), ring.end(), [](const osg::Vec3d& point) { return point.valid(); });
    if (!zones || ring.empty() || !isUsable)
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
    zones->Intersection(area, ids, false);
    return ids;
}

QStringList AxZonesUnder(const CAxEarthViewer& viewer, const std::vector<osg::Vec3d>& ring)
{
    return AxZonesUnder(*AxPartsOf(const_cast<CAxEarthViewer*>(&viewer)), ring);
}
