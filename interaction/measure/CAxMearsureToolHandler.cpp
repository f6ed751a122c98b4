#include "interaction/measure/CAxMearsureToolHandler.h"
#include "interaction/objects/AxHandleAdapterState.h"
#include "scene/base/AxGlobePoint.h"

#include <cmath>

namespace {
// Middles of more legs are not told apart on the map.
constexpr int mostLegTexts = 100;

QVector<AxMeasured> ValuesOf(const AxPathLeg& leg, bool isStraight)
{
    QVector<AxMeasured> values{{AxQuantity::Length, leg.length}, {AxQuantity::OverGround, leg.overGround}};
    if (isStraight)
        values += {AxQuantity::Bearing, leg.bearing};
    values += {AxQuantity::Rise, leg.rise};
    if (isStraight)
        values += {AxQuantity::Slope, leg.Slope()};
    values += {AxQuantity::Ascent, leg.ascent};
    values += {AxQuantity::Descent, leg.descent};
    return values;
}

AxMeasuredValues MeasurePath(const std::vector<osg::Vec3d>& points, const AxPathGround& ground,
                             const std::atomic<bool>& isOff)
{
    std::vector<CAxVector3D> path;
    path.reserve(points.size());
    for (const osg::Vec3d& point : points)
        path.emplace_back(point.x(), point.y(), point.z());
    const AxPathFigures figures = AxMeasurePath(path, ground, &isOff);
    AxMeasuredValues measured;
    measured.step = figures.step;
    measured.whole = ValuesOf(figures.total, figures.legs.size() < 2);
    for (const AxPathLeg& leg : figures.legs)
        measured.parts += ValuesOf(leg, true);
    return measured;
}

QString TextOf(const QVector<AxMeasured>& values, AxQuantity quantity)
{
    for (const AxMeasured& one : values)
        if (one.quantity == quantity && std::isfinite(one.value))
            return AxMeasureText::Value(one);
    return {};
}
} // namespace

CAxMearsureToolHandler::CAxMearsureToolHandler(CAxEarthViewer* viewer, QObject* parent,
                                               AxMeasurements& measurements)
    : AxMeasureAdapter(viewer, parent, ToolMeasureDistance, measurements)
{
}

AxMeasureWork CAxMearsureToolHandler::Work() const
{
    return &MeasurePath;
}

QString CAxMearsureToolHandler::LiveText(const AxMeasuredValues& values) const
{
    if (values.parts.isEmpty())
        return {};
    const QVector<AxMeasured>& leg = values.parts.last();
    const auto withTotal = [&](AxQuantity quantity) {
        const QString ofLeg = TextOf(leg, quantity);
        const QString ofAll = TextOf(values.whole, quantity);
        return values.parts.size() < 2 || ofAll.isEmpty() ? ofLeg : tr("%1, in all %2").arg(ofLeg, ofAll);
    };
    QStringList lines{withTotal(AxQuantity::Length)};
    const QString overGround = withTotal(AxQuantity::OverGround);
    // Of the ground in memory, and not looked at everywhere: the finished measurement reads the finest.
    if (!overGround.isEmpty())
        lines += tr("over the ground about %1").arg(overGround);
    QStringList way;
    for (const AxQuantity quantity : {AxQuantity::Bearing, AxQuantity::Rise, AxQuantity::Slope}) {
        const QString text = TextOf(leg, quantity);
        if (!text.isEmpty())
            way += text;
    }
    if (!way.isEmpty())
        lines += way.join(tr(", "));
    return lines.join(QLatin1Char('\n'));
}

QString CAxMearsureToolHandler::Hint() const
{
    return d->anchors.size() < 2 ? tr("double click: the last point; Backspace: one point back") : QString();
}

QVector<AxMeasureAdapter::Label> CAxMearsureToolHandler::Labels(const AxMeasurement& measurement) const
{
    QVector<Label> labels;
    const auto& parts = measurement.values.parts;
    const std::vector<osg::Vec3d>& points = measurement.points;
    if (points.size() < 2)
        return labels;
    for (int i = 0; parts.size() > 1 && parts.size() <= mostLegTexts && i < parts.size(); ++i) {
        const auto at = static_cast<std::size_t>(i);
        if (at + 1 >= points.size())
            break;
        labels += {AxGlobe::LngLatOf(
                       AxGlobe::Middle(AxGlobe::NormalAt(points[at]), AxGlobe::NormalAt(points[at + 1]))),
                   TextOf(parts[i], AxQuantity::Length)};
    }
    QStringList lines{TextOf(measurement.values.whole, AxQuantity::Length)};
    const QString overGround = TextOf(measurement.values.whole, AxQuantity::OverGround);
    if (!overGround.isEmpty())
        lines += tr("over the ground %1").arg(overGround);
    labels += {points.back(), lines.join(QLatin1Char('\n')), true};
    return labels;
}
