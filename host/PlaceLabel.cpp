#include "host/PlaceLabel.h"
#include "interaction/CAxEarthManipulator.h"
#include "viewer/CAxEarthViewer.h"

#include <AxAlgorthm/AxCoordinateSystem.h>

#include <cmath>

PlaceLabel::PlaceLabel(CAxEarthViewer* earthViewer, QWidget* parent) : QLabel(parent), viewer(earthViewer)
{
    setTextFormat(Qt::PlainText);
    connect(viewer->getManipulator(), &CAxEarthManipulator::signalPointed, this,
            [this](double longitude, double latitude, double altitude, double, bool coarse) {
                place = {longitude, latitude, altitude};
                isCoarse = coarse;
                Write();
            });
    connect(viewer, &CAxEarthViewer::signalCoordSys, this, &PlaceLabel::Write);
}

void PlaceLabel::Write()
{
    if (!place)
        return;
    const auto [longitude, latitude, altitude] = *place;
    const auto text = [](double value, int decimals, const QString& withUnit) {
        return std::isnan(value) ? QStringLiteral("-") : withUnit.arg(QString::number(value, 'f', decimals));
    };
    const QString height = text(altitude, isCoarse ? 0 : 1, tr("%1 m"));
    const AxCoordinateSystem& system = viewer->GetCoordinateSystem();
    if (system.Text().isEmpty()) {
        const QString degrees = tr("%1\302\260");
        setText(tr("Longitude %1, latitude %2, altitude %3")
                    .arg(text(longitude, 6, degrees), text(latitude, 6, degrees), height));
        return;
    }
    // As it can be typed again, so in the order and without the units of typed places.
    const bool isPlace = std::isfinite(longitude) && std::isfinite(latitude);
    const bool hasNumbers = isPlace && !system.Show(latitude, longitude).values[0].isEmpty();
    if (isPlace && !hasNumbers)
        setText(tr("%1, altitude %2").arg(system.Line(latitude, longitude), height));
    else
        setText(tr("%1 (%2), altitude %3")
                    .arg(isPlace ? system.Line(latitude, longitude) : QStringLiteral("-"), system.Name(),
                         height));
}
