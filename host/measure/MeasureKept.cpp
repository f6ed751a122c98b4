#include "host/measure/MeasureKept.h"
#include "interaction/AxMeasurements.h"
#include "interaction/CAxHandleAdapter.h"
#include "viewer/CAxEarthViewer.h"

#include <AxBaseUI/AxToolTable.h>
#include <AxData/CAxControl.h>

#include <QJsonObject>
#include <QScopedValueRollback>

#include <algorithm>
#include <iterator>

namespace {
const QString idOfMeasured = QStringLiteral("id");
const QString nameOfMeasured = QStringLiteral("name");
const QString kindOfMeasured = QStringLiteral("kind");
const QString pointsOfMeasured = QStringLiteral("points");

const struct
{
    EToolType tool;
    const char* key;
} measuredKinds[] = {
    {ToolMeasureDistance, "distance"}, {ToolProjCoords, "place"}, {ToolMeasureAltitude, "height"},
    {ToolMeasurePlane, "plane"},       {ToolMeasureArea, "area"},
};

QJsonValue MeasureEntry(const AxMeasurement& measured)
{
    const auto* const kind = std::find_if(std::begin(measuredKinds), std::end(measuredKinds),
                                          [&measured](const auto& row) { return row.tool == measured.tool; });
    if (kind == std::end(measuredKinds))
        return {};
    QJsonArray points;
    for (const osg::Vec3d& point : measured.points)
        points += QJsonArray{point.x(), point.y()};
    return QJsonObject{{idOfMeasured, measured.id},
                       {nameOfMeasured, measured.name},
                       {kindOfMeasured, QLatin1String(kind->key)},
                       {pointsOfMeasured, points}};
}
} // namespace

MeasureKept::MeasureKept(CAxEarthViewer* earthViewer, QObject* parent) : QObject(parent), viewer(earthViewer)
{
    AxMeasurements* measurements = Measurements();
    connect(measurements, &AxMeasurements::added, this, &MeasureKept::Note);
    connect(measurements, &AxMeasurements::removed, this, &MeasureKept::Note);
}

MeasureKept::~MeasureKept() = default;

AxMeasurements* MeasureKept::Measurements() const
{
    return viewer ? viewer->GetMeasurements() : nullptr;
}

void MeasureKept::Note()
{
    // Volumes come and go among them.
    const QString text = isOpening ? former : Text();
    if (text == former)
        return;
    former = text;
    CAxControl::GetInstance()->SetProjectModified(true);
}

QString MeasureKept::Text() const
{
    const AxMeasurements* measurements = Measurements();
    QJsonArray all;
    for (const AxMeasurement& one : measurements ? measurements->All() : QVector<AxMeasurement>())
        if (const QJsonValue entry = MeasureEntry(one); entry.isObject())
            all += entry;
    return list.TextOf(all);
}

void MeasureKept::SetText(const QString& text)
{
    {
        const QScopedValueRollback<bool> guard(isOpening, true);
        Replace(text);
    }
    former = Text();
}

void MeasureKept::Replace(const QString& text)
{
    AxMeasurements* measurements = Measurements();
    if (!measurements)
        return;
    // One that is being drawn is of the former project, and would be finished with the tool.
    CAxHandleAdapter* current = viewer->GetCurHandleAdapter();
    if (AxToolRowOf(viewer->GetToolType()).measures && current &&
        current->GetHandleOperation() == OperationDrawing)
        current->CancelHandle();
    const QVector<AxMeasurement> before = measurements->All();
    for (const AxMeasurement& one : before)
        if (one.tool != ToolMeasureVolume)
            measurements->Remove(one.id);
    const QStringList faults = list.Read(text, tr("Measurement without a name"),
                                         [this](const QJsonValue& one) { return Show(one); });
    if (!faults.isEmpty())
        emit Unread(tr("Measurements of the project that cannot be read, and stay in it: %1")
                        .arg(faults.join(QStringLiteral("; "))));
}

// The field that is wrong; empty when it is shown.
QString MeasureKept::Show(const QJsonValue& value) const
{
    const QJsonObject entry = value.toObject();
    AxMeasurement drawn;
    drawn.id = entry.value(idOfMeasured).toString();
    if (drawn.id.isEmpty() || Measurements()->Find(drawn.id))
        return idOfMeasured;
    if (!entry.value(nameOfMeasured).isString())
        return nameOfMeasured;
    drawn.name = entry.value(nameOfMeasured).toString();
    const QString key = entry.value(kindOfMeasured).toString();
    const auto* const kind = std::find_if(std::begin(measuredKinds), std::end(measuredKinds),
                                          [&key](const auto& row) { return key == QLatin1String(row.key); });
    if (kind == std::end(measuredKinds))
        return kindOfMeasured;
    drawn.tool = kind->tool;
    const QJsonArray points = entry.value(pointsOfMeasured).toArray();
    for (const QJsonValue& point : points) {
        const QJsonArray numbers = point.toArray();
        if (numbers.size() != 2 || !numbers[0].isDouble() || !numbers[1].isDouble())
            return pointsOfMeasured;
        drawn.points.emplace_back(numbers[0].toDouble(), numbers[1].toDouble(), 0.0);
    }
    return Measurements()->Restore(drawn) ? QString() : pointsOfMeasured;
}
