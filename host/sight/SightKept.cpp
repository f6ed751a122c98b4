#include "host/sight/SightKept.h"
#include "analysis/AxSightAnalysis.h"
#include "viewer/CAxEarthViewer.h"

#include <AxData/CAxControl.h>

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <optional>

namespace {
const QString fromKey = QStringLiteral("from");
const QString toKey = QStringLiteral("to");
const QString observerKey = QStringLiteral("observer");
const QString targetKey = QStringLiteral("target");
const QString radiusKey = QStringLiteral("radius");
const QString cellKey = QStringLiteral("cell");
const QString refractionKey = QStringLiteral("refraction");
const QString hiddenKey = QStringLiteral("hidden");

QJsonArray Written(const AxSightEnd& end)
{
    return {end.place.x(), end.place.y(), end.aboveGround};
}

std::optional<AxSightEnd> EndOf(const QJsonValue& value)
{
    const QJsonArray numbers = value.toArray();
    if (numbers.size() != 3 || !numbers[0].isDouble() || !numbers[1].isDouble() || !numbers[2].isDouble())
        return {};
    return AxSightEnd{{numbers[0].toDouble(), numbers[1].toDouble()}, numbers[2].toDouble()};
}

bool IsLine(const QJsonObject& question)
{
    return question.contains(fromKey);
}

bool IsQuestion(const QJsonObject& question)
{
    const auto areNumbers = [&question](std::initializer_list<QString> keys) {
        return std::all_of(keys.begin(), keys.end(),
                           [&question](const QString& key) { return question.value(key).isDouble(); });
    };
    if (IsLine(question))
        return EndOf(question.value(fromKey)) && EndOf(question.value(toKey)) && areNumbers({refractionKey});
    return EndOf(question.value(observerKey)) && areNumbers({targetKey, radiusKey, cellKey, refractionKey});
}

QJsonObject QuestionOf(const AxSightResult& result)
{
    if (result.line)
        return {{fromKey, Written(result.line->from)},
                {toKey, Written(result.line->to)},
                {refractionKey, result.line->refraction}};
    const AxViewshedQuestion& question = result.viewshed->question;
    return {{observerKey, Written({question.observer, question.aboveGround})},
            {targetKey, question.targetAboveGround},
            {radiusKey, question.radius},
            {cellKey, question.cell},
            {refractionKey, question.refraction}};
}
} // namespace

SightKept::SightKept(CAxEarthViewer* earthViewer, QObject* parent) : QObject(parent), viewer(earthViewer)
{
    AxSightAnalysis* analysis = Analysis();
    connect(analysis, &AxSightAnalysis::busyChanged, this, &SightKept::OnBusy);
    connect(analysis, &AxSightAnalysis::added, this, &SightKept::OnAdded);
    connect(analysis, &AxSightAnalysis::failed, this, &SightKept::OnFailed);
    connect(analysis, &AxSightAnalysis::removed, this, &SightKept::OnRemoved);
}

SightKept::~SightKept() = default;

AxSightAnalysis* SightKept::Analysis() const
{
    return viewer ? viewer->GetSightAnalysis() : nullptr;
}

SightKept::Asked* SightKept::Find(int id)
{
    const auto found =
        std::find_if(asked.begin(), asked.end(), [id](const Asked& one) { return one.id == id; });
    return found == asked.end() ? nullptr : &*found;
}

// The project

QString SightKept::Text() const
{
    QJsonArray all;
    for (const Asked& one : asked) {
        QJsonObject question = one.question;
        if (one.number != 0 && Analysis()) {
            question.remove(hiddenKey);
            if (!Analysis()->GetResult(one.number).isVisible)
                question.insert(hiddenKey, true);
        }
        all += question;
    }
    return all.isEmpty() ? QString() : QString::fromUtf8(QJsonDocument(all).toJson(QJsonDocument::Compact));
}

void SightKept::SetText(const QString& text)
{
    asked.clear();
    running = 0;
    if (AxSightAnalysis* analysis = Analysis()) {
        analysis->CallOff();
        analysis->Clear();
    }
    const QJsonArray all = QJsonDocument::fromJson(text.toUtf8()).array();
    int leftOut = all.isEmpty() && !text.isEmpty() ? 1 : 0;
    for (const QJsonValue& one : all) {
        if (IsQuestion(one.toObject()))
            asked += Asked{++last, one.toObject(), 0, {}};
        else
            ++leftOut;
    }
    if (leftOut > 0)
        emit Unread(tr("Lines of sight and viewsheds of the project that cannot be read: %1").arg(leftOut));
    emit waitingChanged();
    Next();
}

// Looking

bool SightKept::IsToBeAsked(const Asked& one)
{
    return one.number == 0 && one.reason.isEmpty();
}

void SightKept::Next()
{
    AxSightAnalysis* analysis = Analysis();
    while (analysis && running == 0 && !analysis->IsBusy()) {
        const auto next = std::find_if(asked.begin(), asked.end(), IsToBeAsked);
        if (next == asked.end())
            return;
        running = next->id;
        next->reason = Ask(next->question);
        if (next->reason.isEmpty()) {
            // The panel with its progress may be hidden.
            emit Told(tr("What the project asks about sight is looked at: %1 to go; Escape calls it off")
                          .arg(std::count_if(next, asked.end(), IsToBeAsked)));
            return;
        }
        running = 0;
        emit waitingChanged();
    }
}

QString SightKept::Ask(const QJsonObject& question)
{
    QString why;
    const double refraction = question.value(refractionKey).toDouble();
    isAsking = true;
    if (IsLine(question)) {
        AxSightOptions options;
        options.refraction = refraction;
        Analysis()->LookAlong(*EndOf(question.value(fromKey)), *EndOf(question.value(toKey)), options, &why);
    } else {
        const AxSightEnd observer = *EndOf(question.value(observerKey));
        Analysis()->LookAround({observer.place, observer.aboveGround, question.value(targetKey).toDouble(),
                                question.value(radiusKey).toDouble(), question.value(cellKey).toDouble(),
                                refraction},
                               &why);
    }
    isAsking = false;
    return why;
}

void SightKept::OnBusy(bool busy)
{
    // The pilot's own question has taken the place of this one, which comes later.
    if (busy && !isAsking)
        running = 0;
    // Its answer, if there is one, comes before.
    if (!busy)
        QMetaObject::invokeMethod(this, &SightKept::Settle, Qt::QueuedConnection);
}

void SightKept::Settle()
{
    AxSightAnalysis* analysis = Analysis();
    if (!analysis || analysis->IsBusy())
        return;
    if (running != 0) {
        running = 0;
        for (Asked& one : asked)
            if (IsToBeAsked(one))
                one.reason = tr("Called off; a double click looks again");
        emit waitingChanged();
    }
    Next();
}

void SightKept::OnAdded(int number)
{
    if (Asked* one = Find(running)) {
        one->number = number;
        running = 0;
        Analysis()->SetVisible(number, !one->question.value(hiddenKey).toBool());
        emit waitingChanged();
        return;
    }
    running = 0;
    asked += Asked{++last, QuestionOf(Analysis()->GetResult(number)), number, {}};
    CAxControl::GetInstance()->SetProjectModified(true);
}

void SightKept::OnFailed(const QString& why)
{
    if (Asked* one = Find(running)) {
        one->reason = why;
        emit waitingChanged();
    }
    running = 0;
}

void SightKept::OnRemoved(int number)
{
    const auto gone = std::remove_if(asked.begin(), asked.end(),
                                     [number](const Asked& one) { return one.number == number; });
    if (gone == asked.end())
        return;
    asked.erase(gone, asked.end());
    CAxControl::GetInstance()->SetProjectModified(true);
}

// Those without a result

QVector<SightKept::Waiting> SightKept::GetWaiting() const
{
    QVector<Waiting> waiting;
    for (const Asked& one : asked)
        if (one.number == 0)
            waiting +=
                Waiting{one.id, IsLine(one.question) ? tr("Line of sight") : tr("Viewshed"), one.reason};
    return waiting;
}

void SightKept::Remove(int id)
{
    Asked* one = Find(id);
    if (!one || one->number != 0)
        return;
    const bool isRunning = id == running;
    asked.remove(static_cast<int>(one - asked.data()));
    if (isRunning) {
        running = 0;
        if (AxSightAnalysis* analysis = Analysis())
            analysis->CallOff();
    }
    CAxControl::GetInstance()->SetProjectModified(true);
    emit waitingChanged();
}

void SightKept::LookAgain(int id)
{
    Asked* one = Find(id);
    if (!one || one->number != 0)
        return;
    one->reason.clear();
    emit waitingChanged();
    Next();
}
