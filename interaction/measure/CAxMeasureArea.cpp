#include "interaction/measure/CAxMeasureArea.h"
#include "interaction/measure/AxMeasurePlaces.h"
#include "interaction/objects/AxHandleAdapterState.h"

#include <AxAlgorthm/AxAreaMeasure.h>

#include <cmath>

namespace {
AxMeasuredValues MeasureRing(const std::vector<osg::Vec3d>& points, const AxPathGround& ground,
                             const std::atomic<bool>& isOff)
{
    const AxAreaFigures figures = AxMeasureArea(AxMeasurePlaces::Of(points), ground, &isOff);
    AxMeasuredValues measured;
    measured.step = figures.step;
    measured.isCrossed = figures.isCrossed;
    measured.whole = {{AxQuantity::Area, figures.area},
                      {AxQuantity::AreaOverGround, figures.overGround},
                      {AxQuantity::Perimeter, figures.perimeter}};
    return measured;
}
} // namespace

CAxMeasureArea::CAxMeasureArea(CAxEarthViewer* viewer, QObject* parent, AxMeasurements& measurements)
    : AxMeasureAdapter(viewer, parent, ToolMeasureArea, measurements)
{
}

AxMeasureWork CAxMeasureArea::Work() const
{
    return &MeasureRing;
}

QString CAxMeasureArea::TextOf(const AxMeasuredValues& values, bool isLive)
{
    QStringList lines;
    if (values.isCrossed)
        lines += tr("The outline crosses itself: no area");
    for (const AxMeasured& measured : values.whole) {
        if (!std::isfinite(measured.value))
            continue;
        // Of the ground in memory, and not looked at everywhere: the finished measurement reads the finest.
        const bool isAbout = isLive && measured.quantity == AxQuantity::AreaOverGround;
        lines += isAbout ? tr("over the ground about %1").arg(AxMeasureText::Value(measured))
                         : AxMeasureText::Lines({measured});
    }
    return lines.join(QLatin1Char('\n'));
}

QString CAxMeasureArea::LiveText(const AxMeasuredValues& values) const
{
    return TextOf(values, true);
}

QString CAxMeasureArea::Hint() const
{
    return d->anchors.size() < 3 ? tr("double click: the last corner; Backspace: one corner back")
                                 : QString();
}

QVector<AxMeasureAdapter::Label> CAxMeasureArea::Labels(const AxMeasurement& measurement) const
{
    if (measurement.points.empty())
        return {};
    return {{AxMeasurePlaces::Middle(measurement.points), TextOf(measurement.values, false), true}};
}
