// Area texts of zones and lifts: any text ends in points on the globe, and a zone less any lift in outlines.
#include "analysis/zones/AxNoflyZones.h"
#include "analysis/zones/AxZoneArea.h"
#include "scene/base/AxViewerLog.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>

Q_LOGGING_CATEGORY(axViewerLog, "ax.viewer", QtCriticalMsg)

namespace {
void Require(bool holds)
{
    if (!holds)
        std::abort();
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QString input = QString::fromUtf8(reinterpret_cast<const char*>(data), int(size));
    const QString area = input.section(QLatin1Char('\n'), 0, 0);
    const QString lift = input.section(QLatin1Char('\n'), 1);
    const AxZoneShape shape = AxZoneShapeOf(AxReadArea(area));
    const auto polygon = shape.Polygon();
    Require(polygon.valid() && shape.IsEmpty() == polygon->empty());
    const osgEarth::Bounds box = polygon->getBounds();
    Require(shape.Box().valid() == box.valid());
    Require(!box.valid() || (shape.Box()._min == box._min && shape.Box()._max == box._max));
    const int parts = area.count(QLatin1Char('|')) + 1;
    Require(int(polygon->size()) <= std::max(parts, 73));
    for (const osg::Vec3d& point : *polygon) {
        Require(std::isfinite(point.x()) && std::abs(point.y()) <= 90.0);
        Require(point.z() == 0.0);
    }

    const QString id = QStringLiteral("a");
    const QVariant zoneRow = QVariantList{0.0, 0.0, id, true, area};
    const QVariant liftRow = QVariantList{QString(), QString(), lift, QStringLiteral("a,b"), QString(), 2};
    const AxNoflyZones zones = AxReadZones({zoneRow}, {liftRow});
    Require(zones.zonePolygons.size() == 1 && zones.zoneOutlines.contains(id) &&
            zones.zoneDisplayGeometry.contains(QStringLiteral("b")));
    for (const QPointF& point : zones.zoneOutlines.value(id))
        Require(std::isfinite(point.x()) && std::isfinite(point.y()));
    return 0;
}
