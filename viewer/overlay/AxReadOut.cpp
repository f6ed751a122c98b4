#include "viewer/overlay/AxReadOut.h"

#include <QCoreApplication>

#include <cmath>

namespace {
QString Text(const char* label, double value, int decimals, const char* unit)
{
    const auto tr = [](const char* text) { return QCoreApplication::translate("CAxEarthManipulator", text); };
    if (std::isnan(value))
        return tr(label) + QLatin1Char('-');
    return tr(label) + QString::number(value, 'f', decimals) + tr(unit);
}
} // namespace

AxReadOut AxReadOut::Of(double longitude, double latitude, double altitude, double range, bool coarse)
{
    return {Text(QT_TRANSLATE_NOOP("CAxEarthManipulator", "longitude:"), longitude, 6,
                 QT_TRANSLATE_NOOP("CAxEarthManipulator", "degree")),
            Text(QT_TRANSLATE_NOOP("CAxEarthManipulator", "latitude:"), latitude, 6,
                 QT_TRANSLATE_NOOP("CAxEarthManipulator", "degree")),
            Text(QT_TRANSLATE_NOOP("CAxEarthManipulator", "altitude:"), altitude, coarse ? 0 : 2,
                 QT_TRANSLATE_NOOP("CAxEarthManipulator", "meter")),
            Text(QT_TRANSLATE_NOOP("CAxEarthManipulator", "camera range:"), range, 2,
                 QT_TRANSLATE_NOOP("CAxEarthManipulator", "meter"))};
}
