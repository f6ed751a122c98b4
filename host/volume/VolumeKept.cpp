#include "host/volume/VolumeKept.h"
#include "analysis/AxVolumeAnalysis.h"
#include "analysis/AxVolumeText.h"
#include "interaction/AxMeasurements.h"
#include "interaction/CAxHandleAdapter.h"
#include "viewer/CAxEarthViewer.h"

#include <AxData/CAxControl.h>

#include <QJsonObject>
#include <QScopedValueRollback>

#include <algorithm>
#include <optional>

namespace {
const QString idOfVolume = QStringLiteral("id");
const QString nameOfVolume = QStringLiteral("name");
const QString ringOfVolume = QStringLiteral("ring");
const QString baseOfVolume = QStringLiteral("base");
const QString heightOfVolume = QStringLiteral("height");
const QString cellOfVolume = QStringLiteral("cell");
const QString drawnVolume = QStringLiteral("drawn");
const QString hiddenVolume = QStringLiteral("hidden");

QJsonObject VolumeEntry(const AxVolumeResult& result, bool isDrawn)
{
    QJsonArray ring;
    for (const QPointF& corner : result.question.ring)
        ring += QJsonArray{corner.x(), corner.y()};
    QJsonObject entry{{idOfVolume, result.id},
                      {nameOfVolume, result.name},
                      {ringOfVolume, ring},
                      {baseOfVolume, AxVolumeBaseKey(result.question.base)},
                      {heightOfVolume, result.question.height},
                      {cellOfVolume, result.question.cell}};
    if (isDrawn)
        entry.insert(drawnVolume, true);
    if (!result.isVisible)
        entry.insert(hiddenVolume, true);
    return entry;
}

std::optional<QList<QPointF>> RingOfEntry(const QJsonValue& value)
{
    if (!value.isArray())
        return {};
    QList<QPointF> ring;
    const QJsonArray corners = value.toArray();
    for (const QJsonValue& corner : corners) {
        const QJsonArray numbers = corner.toArray();
        if (numbers.size() != 2 || !numbers[0].isDouble() || !numbers[1].isDouble())
            return {};
        ring += QPointF(numbers[0].toDouble(), numbers[1].toDouble());
    }
    return ring;
}

/// A field that is wrong; empty when all are right, and then `question` has them.
QString FaultOfEntry(const QJsonObject& entry, AxVolumeQuestion& question)
{
    if (entry.value(idOfVolume).toString().isEmpty())
        return idOfVolume;
    if (!entry.value(nameOfVolume).isString())
        return nameOfVolume;
    const auto ring = RingOfEntry(entry.value(ringOfVolume));
    if (!ring)
        return ringOfVolume;
    question.ring = *ring;
    const QVector<AxVolumeBase> bases = AxVolumeBases();
    const auto* const base = std::find_if(bases.begin(), bases.end(), [&entry](AxVolumeBase one) {
        return AxVolumeBaseKey(one) == entry.value(baseOfVolume).toString();
    });
    if (base == bases.end())
        return baseOfVolume;
    question.base = *base;
    for (const QString& key : {heightOfVolume, cellOfVolume})
        if (!entry.value(key).isDouble())
            return key;
    question.height = entry.value(heightOfVolume).toDouble();
    question.cell = entry.value(cellOfVolume).toDouble();
    if (question.cell < 0.0)
        return cellOfVolume;
    for (const QString& key : {drawnVolume, hiddenVolume})
        if (entry.contains(key) && !entry.value(key).isBool())
            return key;
    return {};
}
} // namespace

VolumeKept::VolumeKept(CAxEarthViewer* earthViewer, QObject* parent) : QObject(parent), viewer(earthViewer)
{
    AxVolumeAnalysis* analysis = Analysis();
    connect(analysis, &AxVolumeAnalysis::added, this, &VolumeKept::Note);
    connect(analysis, &AxVolumeAnalysis::changed, this, &VolumeKept::Note);
    connect(analysis, &AxVolumeAnalysis::removed, this, &VolumeKept::Note);
}

VolumeKept::~VolumeKept() = default;

AxVolumeAnalysis* VolumeKept::Analysis() const
{
    return viewer ? viewer->GetVolumeAnalysis() : nullptr;
}

void VolumeKept::Note()
{
    // Most changes are of answers.
    const QString text = isOpening ? former : Text();
    if (text == former)
        return;
    former = text;
    CAxControl::GetInstance()->SetProjectModified(true);
}

QString VolumeKept::Text() const
{
    const AxVolumeAnalysis* analysis = Analysis();
    QJsonArray all;
    for (const AxVolumeResult& one : analysis ? analysis->GetResults() : QList<AxVolumeResult>())
        all += VolumeEntry(one, viewer->GetMeasurements()->Find(one.id) != nullptr);
    return list.TextOf(all);
}

void VolumeKept::SetText(const QString& text)
{
    {
        const QScopedValueRollback<bool> guard(isOpening, true);
        Replace(text);
    }
    former = Text();
}

void VolumeKept::Replace(const QString& text)
{
    AxVolumeAnalysis* analysis = Analysis();
    if (!analysis)
        return;
    // One that is being drawn is of the former project, and would be finished with the tool.
    CAxHandleAdapter* current = viewer->GetCurHandleAdapter();
    if (viewer->GetToolType() == ToolMeasureVolume && current &&
        current->GetHandleOperation() == OperationDrawing)
        current->CancelHandle();
    analysis->Clear();
    const QStringList faults =
        list.Read(text, tr("Volume without a name"), [this](const QJsonValue& one) { return Show(one); });
    if (!faults.isEmpty())
        emit Unread(tr("Volumes of the project that cannot be read, and stay in it: %1")
                        .arg(faults.join(QStringLiteral("; "))));
}

QString VolumeKept::Show(const QJsonValue& value)
{
    const QJsonObject entry = value.toObject();
    AxVolumeQuestion question;
    const QString fault = FaultOfEntry(entry, question);
    if (!fault.isEmpty())
        return fault;
    const QString id = entry.value(idOfVolume).toString();
    const QString name = entry.value(nameOfVolume).toString();
    if (!Analysis()->Restore(id, name, question))
        return idOfVolume;
    Analysis()->SetVisible(id, !entry.value(hiddenVolume).toBool());
    if (!entry.value(drawnVolume).toBool())
        return {};
    AxMeasurement drawn;
    drawn.id = id;
    drawn.tool = ToolMeasureVolume;
    drawn.name = name;
    for (const QPointF& corner : qAsConst(question.ring))
        drawn.points.emplace_back(corner.x(), corner.y(), 0.0);
    viewer->GetMeasurements()->Restore(drawn);
    return {};
}
