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

AxReadOut AxReadOut::Of(double longitude, double latitude, double altitude, double range)
{
    return {Text(QT_TRANSLATE_NOOP("CAxEarthManipulator", "longitude:"), longitude, 6,
                 QT_TRANSLATE_NOOP("CAxEarthManipulator", "degree")),
            Text(QT_TRANSLATE_NOOP("CAxEarthManipulator", "latitude:"), latitude, 6,
                 QT_TRANSLATE_NOOP("CAxEarthManipulator", "degree")),
            Text(QT_TRANSLATE_NOOP("CAxEarthManipulator", "altitude:"), altitude, 2,
                 QT_TRANSLATE_NOOP("CAxEarthManipulator", "meter")),
            Text(QT_TRANSLATE_NOOP("CAxEarthManipulator", "camera range:"), range, 2,
                 QT_TRANSLATE_NOOP("CAxEarthManipulator", "meter"))};
}
