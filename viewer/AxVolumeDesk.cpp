#include "viewer/AxVolumeDesk.h"
#include "analysis/volume/AxVolumeAnalysis.h"
#include "analysis/volume/AxVolumeText.h"
#include "scene/base/AxNotice.h"
#include "viewer/overlay/AxColorLegend.h"
#include "viewer/overlay/AxGridWidget.h"

#include <AxAlgorthm/AxUnits.h>

#include <QEvent>

AxVolumeDesk::AxVolumeDesk(AxVolumeAnalysis& analysis, AxGridWidget& widget, AxColorLegend& colors,
                           QWidget& coordinates, QWidget* over)
    : volumes(analysis), panel(&widget), legend(&colors), readOut(&coordinates), window(over)
{
    const auto follow = [this](const QString& id) {
        if (panel && panel->HandleID() == id)
            showResult();
        showLegend();
    };
    for (QWidget* watched : QList<QWidget*>{panel, readOut, window})
        watched->installEventFilter(this);
    connect(&volumes, &AxVolumeAnalysis::chosenChanged, this, &AxVolumeDesk::showLegend);
    connect(panel, &AxGridWidget::editing, this, [this] { volumes.ForgetRefusal(panel->HandleID()); });
    connect(&volumes, &AxVolumeAnalysis::added, this, &AxVolumeDesk::ShowVolume);
    connect(&volumes, &AxVolumeAnalysis::changed, this, follow);
    connect(&volumes, &AxVolumeAnalysis::removed, this, [this](const QString& id) {
        if (panel && panel->HandleID() == id)
            ShowVolume({});
    });
    connect(&volumes, &AxVolumeAnalysis::progress, this, [this](const QString& id, int percent) {
        if (panel && panel->HandleID() == id)
            panel->ShowProgress(percent);
    });
    connect(&volumes, &AxVolumeAnalysis::nextChanged, this, [this] {
        if (panel && panel->HandleID().isEmpty())
            panel->ShowQuestion(volumes.Next());
    });
    // Queued: a box lets events run, and this may come out of the middle of one.
    connect(&volumes, &AxVolumeAnalysis::largeAsked, this, &AxVolumeDesk::askForLarge, Qt::QueuedConnection);
    connect(panel, &AxGridWidget::questionChanged, this, &AxVolumeDesk::take);
    connect(panel, &AxGridWidget::cancelled, this, [this] { volumes.CallOff(panel->HandleID()); });
    ShowVolume({});
}

void AxVolumeDesk::ShowVolume(const QString& id)
{
    if (!panel)
        return;
    const AxVolumeResult result = volumes.GetResult(id);
    panel->ShowVolume(result.id, result.name);
    panel->ShowQuestion(result.id.isEmpty() ? volumes.Next() : result.question);
    showResult();
    showLegend();
}

bool AxVolumeDesk::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::Resize:
    case QEvent::Move:
    case QEvent::Show:
    case QEvent::Hide:
        showLegend();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void AxVolumeDesk::showLegend()
{
    if (!panel || !legend)
        return;
    const bool isInHand = !panel->isHidden();
    const QString ofPanel = isInHand ? panel->HandleID() : QString();
    const AxVolumeResult result = volumes.GetResult(ofPanel.isEmpty() ? volumes.Chosen() : ofPanel);
    const bool isSeen = result.volume && result.isVisible;
    if (isSeen) {
        AxColorLegend::Rows rows;
        for (const AxGeoRaster::Class& one : AxVolumeLegend(*result.volume))
            rows += {QColor(one.color[0], one.color[1], one.color[2]), one.name};
        legend->ShowRows(result.name, rows);
        placeLegend();
    }
    legend->setVisible(isSeen);
}

void AxVolumeDesk::placeLegend()
{
    if (!window || !readOut)
        return;
    const int margin = panel->x();
    const bool isBeside = readOut->isHidden() || readOut->x() >= 2 * margin + legend->width();
    legend->move(margin, (isBeside ? window->height() : readOut->y()) - legend->height() - margin);
}

void AxVolumeDesk::showResult()
{
    const AxVolumeResult result = volumes.GetResult(panel->HandleID());
    panel->FollowQuestion(result.id.isEmpty() ? volumes.Next() : result.question);
    QStringList notes;
    if (result.id.isEmpty())
        notes += tr("Click the corners of the area, the last one by a double click.");
    else if (!result.refusal.isEmpty())
        notes += result.refusal;
    else if (result.fault == AxVolumeFault::None && result.isPending)
        notes += AxVolumeSizeText(AxVolumeSizeOf(result.question));
    else if (result.fault == AxVolumeFault::None && result.volume)
        notes += tr("Cut %1, fill %2")
                     .arg(AxUnits::Volume(result.volume->cut), AxUnits::Volume(result.volume->fill));
    if (!result.isPending)
        notes += AxVolumeAnalysis::NotesOf(result);
    panel->ShowNote(notes.join(QLatin1Char('\n')));
    panel->ShowProgress(result.isPending ? 0 : -1);
}

void AxVolumeDesk::take()
{
    AxVolumeQuestion question = panel->Question();
    const AxVolumeResult result = volumes.GetResult(panel->HandleID());
    if (result.id.isEmpty()) {
        volumes.SetNext(question);
        return;
    }
    question.ring = result.question.ring;
    const QPointer<AxVolumeDesk> self(this);
    // What is refused here would be so for the next one, too.
    if (volumes.Ask(result.id, result.name, question) && self)
        volumes.SetNext(question);
    else if (self && panel)
        panel->ShowQuestion(volumes.GetResult(panel->HandleID()).question);
}

void AxVolumeDesk::askForLarge(const QString& id, const AxVolumeQuestion& question)
{
    if (!large.contains(id))
        toAsk += id;
    large[id] = question;
    if (isAsking)
        return;
    isAsking = true;
    const QPointer<AxVolumeDesk> self(this);
    while (self && !toAsk.isEmpty()) {
        const QString next = toAsk.takeFirst();
        const AxVolumeQuestion asked = large.take(next);
        const AxVolumeResult result = volumes.GetResult(next);
        if (result.id.isEmpty())
            continue;
        QString text = tr("The grid of \"%1\" is large: %2. It takes a while. Do you want to compute it?")
                           .arg(result.name, AxVolumeSizeText(AxVolumeSizeOf(asked)));
        if (const double held = volumes.HeldMegabytes(); held >= 1.0)
            text += QLatin1Char('\n') + tr("The volumes that there are hold %1 MB.").arg(held, 0, 'f', 0);
        const bool isMeant = AxAskQuestion(window, tr("Volume"), text, tr("Compute"));
        if (!self)
            return;
        if (isMeant)
            computeLarge(next, asked);
        else if (panel)
            ShowVolume(panel->HandleID());
    }
    if (self)
        isAsking = false;
}

void AxVolumeDesk::computeLarge(const QString& id, AxVolumeQuestion question)
{
    // It may be gone by now.
    const AxVolumeResult result = volumes.GetResult(id);
    question.mayBeLarge = true;
    const QPointer<AxVolumeDesk> self(this);
    if (!result.id.isEmpty() && volumes.Ask(id, result.name, question) && self && panel &&
        panel->HandleID() == id)
        volumes.SetNext(question);
}
