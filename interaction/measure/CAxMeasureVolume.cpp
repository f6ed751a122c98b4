#include "interaction/measure/CAxMeasureVolume.h"
#include "interaction/measure/AxMeasurePlaces.h"
#include "interaction/objects/AxHandleAdapterState.h"

#include <AxAlgorthm/AxAreaMeasure.h>

#include <cmath>

namespace {
AxMeasuredValues MeasureOutline(const std::vector<osg::Vec3d>& points, const AxPathGround&,
                                const std::atomic<bool>& isOff)
{
    const AxAreaFigures figures = AxMeasureArea(AxMeasurePlaces::Of(points), {}, &isOff);
    AxMeasuredValues measured;
    measured.isCrossed = figures.isCrossed;
    measured.whole = {{AxQuantity::Area, figures.area}, {AxQuantity::Perimeter, figures.perimeter}};
    return measured;
}
} // namespace

CAxMeasureVolume::CAxMeasureVolume(CAxEarthViewer* viewer, QObject* parent, AxMeasurements& measurements)
    : AxMeasureAdapter(viewer, parent, ToolMeasureVolume, measurements)
{
    // The picture of the volume has its own colours.
    SetColors(d->edgeColor, osg::Vec4f());
}

AxMeasureWork CAxMeasureVolume::Work() const
{
    return &MeasureOutline;
}

QString CAxMeasureVolume::LiveText(const AxMeasuredValues& values) const
{
    QStringList lines;
    if (values.isCrossed)
        lines += tr("The outline crosses itself: no volume");
    lines += AxMeasureText::Lines(values.whole);
    return lines.join(QLatin1Char('\n'));
}

QString CAxMeasureVolume::Hint() const
{
    return d->anchors.size() < 3 ? tr("double click: the last corner; Backspace: one corner back")
                                 : QString();
}

QVector<AxMeasureAdapter::Label> CAxMeasureVolume::Labels(const AxMeasurement& measurement) const
{
    if (measurement.points.empty())
        return {};
    QVector<AxMeasured> shown;
    for (const AxQuantity quantity : {AxQuantity::Cut, AxQuantity::Fill, AxQuantity::Net})
        shown += {quantity, measurement.values.Of(quantity)};
    QStringList lines{measurement.name};
    for (const QString& part : {AxMeasureText::Lines(shown), measurement.values.note})
        if (!part.isEmpty())
            lines += part;
    if (measurement.isPending)
        lines += tr("is being computed...");
    return {{AxMeasurePlaces::Middle(measurement.points), lines.join(QLatin1Char('\n')), true}};
}
