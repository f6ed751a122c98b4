#include "viewer/overlay/AxReadOut.h"

#include <QCoreApplication>

#include <cmath>

namespace {
QString Text(const char* label, double value, int decimals, const char* unit)
{
    const auto tr = [](const char* text) { return QCoreApplication::translate("CAxEarthManipulator", text); };
    // Where nothing is under the mouse, a pick's values are zeros, as its listeners expect.
    return tr(label) + QString::number(std::isnan(value) ? 0.0 : value, 'f', decimals) + tr(unit);
}
} // namespace

AxReadOut AxReadOut::Of(double longitude, double latitude, double altitude, double range,
                        const AxCoordinateSystem& system)
{
    AxReadOut texts{Text(QT_TRANSLATE_NOOP("CAxEarthManipulator", "longitude:"), longitude, 6,
                         QT_TRANSLATE_NOOP("CAxEarthManipulator", "degree")),
                    Text(QT_TRANSLATE_NOOP("CAxEarthManipulator", "latitude:"), latitude, 6,
                         QT_TRANSLATE_NOOP("CAxEarthManipulator", "degree")),
                    Text(QT_TRANSLATE_NOOP("CAxEarthManipulator", "altitude:"), altitude, 2,
                         QT_TRANSLATE_NOOP("CAxEarthManipulator", "meter")),
                    Text(QT_TRANSLATE_NOOP("CAxEarthManipulator", "camera range:"), range, 2,
                         QT_TRANSLATE_NOOP("CAxEarthManipulator", "meter")),
                    QString()};
    if (system.Text().isEmpty())
        return texts;
    const bool isPlace = std::isfinite(longitude) && std::isfinite(latitude);
    const AxCoordinateSystem::Shown shown = system.Show(latitude, longitude);
    const auto line = [&shown, isPlace](std::size_t axis) {
        if (shown.names[axis].isEmpty())
            return QString();
        const bool hasValue = isPlace && !shown.values[axis].isEmpty();
        return QCoreApplication::translate("CAxEarthManipulator",
                                           QT_TRANSLATE_NOOP("CAxEarthManipulator", "%1:%2"))
            .arg(shown.names[axis], hasValue ? shown.values[axis] : QStringLiteral("-"));
    };
    texts.longitude = line(0);
    texts.latitude = line(1);
    texts.system = isPlace ? shown.system : system.Name();
    return texts;
}
