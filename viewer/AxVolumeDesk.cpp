#include "viewer/AxVolumeDesk.h"
#include "analysis/volume/AxVolumeAnalysis.h"
#include "analysis/volume/AxVolumeText.h"
#include "viewer/overlay/AxColorLegend.h"
#include "viewer/overlay/AxGridWidget.h"

#include <AxAlgorthm/AxUnits.h>
#include <AxBaseUI/CAxMessageBox.h>

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
    shown = result.id.isEmpty() ? volumes.Next() : result.question;
    panel->ShowQuestion(shown);
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
    // Somebody else has asked; what is being typed stays otherwise.
    const AxVolumeQuestion& asked = result.id.isEmpty() ? volumes.Next() : result.question;
    if (asked.base != shown.base || asked.height != shown.height || asked.cell != shown.cell)
        panel->ShowQuestion(asked);
    shown = asked;
    QStringList notes;
    if (result.id.isEmpty())
        notes += tr("Click the corners of the area, the last one by a double click.");
    else if (!result.refusal.isEmpty())
        notes += result.refusal;
    else if (result.fault != AxVolumeFault::None)
        notes += AxVolumeFaultText(result.fault, result.question);
    else if (result.isPending)
        notes += AxVolumeSizeText(AxVolumeSizeOf(result.question));
    else if (result.volume)
        notes += tr("Cut %1, fill %2")
                     .arg(AxUnits::Volume(result.volume->cut), AxUnits::Volume(result.volume->fill));
    if (result.isStale && !result.isPending)
        notes += tr("The ground has changed since.");
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
    // Each asks for the latest question of its volume.
    if (isAsking)
        return;
    isAsking = true;
    CAxMessageBox box(window);
    box.SetIcon(QStringLiteral(":/images/Normal/Exclamation_mark.png"));
    box.SetWindowTitle(tr("Volume"));
    box.SetMsgText(tr("The grid of this volume is large: %1. It takes a while. Do you want to compute it?")
                       .arg(AxVolumeSizeText(AxVolumeSizeOf(question))));
    box.SetBtnOKText(tr("Compute"));
    box.SetCancelDefault(true);
    const QPointer<AxVolumeDesk> self(this);
    const bool isMeant = box.exec() == QDialog::Accepted;
    if (!self)
        return;
    isAsking = false;
    if (!isMeant) {
        if (panel)
            ShowVolume(panel->HandleID());
        return;
    }
    const AxVolumeResult result = volumes.GetResult(id);
    AxVolumeQuestion meant = question;
    meant.ring = result.question.ring;
    meant.mayBeLarge = true;
    // It may be gone, and its ring is what counts.
    if (!result.id.isEmpty() && volumes.Ask(id, result.name, meant) && self && panel &&
        panel->HandleID() == id)
        volumes.SetNext(meant);
}
