#include "host/aircraft/MissionBox.h"
#include "host/aircraft/AircraftText.h"
#include "host/aircraft/MissionDoubts.h"
#include "host/aircraft/MissionOfPlan.h"
#include "host/aircraft/PanelRules.h"
#include "host/tasks/PlanWarnings.h"

#include <AxTelemetry/AxMissionTransfer.h>

#include <AxBaseUI/CAxMessageBox.h>
#include <AxData/exchange/AxMissionPoints.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include <utility>

MissionBox::MissionBox(QWidget* parent)
    : QWidget(parent), chosen(new QLabel), upload(new QPushButton(tr("Upload"))),
      download(new QPushButton(tr("Download"))), cancel(new QPushButton(tr("Cancel"))),
      progress(new QProgressBar), outcome(new QLabel)
{
    upload->setObjectName(QStringLiteral("UploadMission"));
    upload->setToolTip(tr("Brings the route of the chosen task to the aircraft"));
    download->setObjectName(QStringLiteral("DownloadMission"));
    download->setToolTip(tr("Shows the mission that the aircraft carries as a route"));
    cancel->setObjectName(QStringLiteral("CancelMission"));
    outcome->setObjectName(QStringLiteral("MissionOutcome"));
    chosen->setObjectName(QStringLiteral("MissionRoute"));
    for (QLabel* line : {chosen, outcome}) {
        line->setWordWrap(true);
        line->setTextFormat(Qt::PlainText);
        // A long word does not make the panel wider.
        line->setMinimumWidth(1);
    }
    progress->setFormat(QStringLiteral("%v / %m"));
    auto* column = new QVBoxLayout(this);
    auto* row = new QHBoxLayout;
    for (QPushButton* button : {upload, download, cancel})
        row->addWidget(button);
    column->addWidget(chosen);
    column->addLayout(row);
    column->addWidget(progress);
    column->addWidget(outcome);
    column->addStretch();
    progress->hide();
    connect(upload, &QPushButton::clicked, this, &MissionBox::UploadWanted);
    connect(download, &QPushButton::clicked, this, &MissionBox::DownloadWanted);
    connect(cancel, &QPushButton::clicked, this, &MissionBox::Cancel);
}

MissionBox::~MissionBox()
{
    if (transfer)
        transfer->disconnect(this);
}

bool MissionBox::IsTransferring() const
{
    return transfer && transfer->IsRunning();
}

void MissionBox::Show(const AxMavlinkAircraft* aircraft, const AircraftEnabled& can)
{
    if (aircraft && aircraft != focus) {
        focus = aircraft;
        Forget();
    }
    chosen->setText(route ? tr("Route to upload: %1.").arg(RouteName(*route))
                          : tr("Route to upload: none, choose a task that has one."));
    upload->setEnabled(can.upload);
    download->setEnabled(can.download);
    cancel->setEnabled(can.cancel);
}

void MissionBox::Forget()
{
    if (!IsTransferring())
        Tell(QString(), false);
}

void MissionBox::Upload(AxMavlinkAircraft* aircraft)
{
    if (!aircraft || !route || IsTransferring())
        return;
    const AxMissionRead made = MissionOfPlan(*route);
    if (!made.fault.isEmpty())
        return Tell(tr("The mission was not uploaded: %1").arg(made.fault), true);
    const QPointer<AxMavlinkAircraft> target(aircraft);
    if (!IsWanted(*aircraft, made) || !target || IsTransferring())
        return;
    notes = made.notes;
    carrier = target;
    carried = route;
    emit Carries(target, {}, {});
    Begin(target, true);
    transfer->Upload(made.mission);
    emit Changed();
}

bool MissionBox::IsWanted(AxMavlinkAircraft& aircraft, const AxMissionRead& made)
{
    QStringList details = MissionDoubts::Of(made.mission, aircraft.State()) + MissionDoubts::OfPlan(*route);
    if (IsReadRoute(*route))
        details += tr("The chosen route was read from a file or an aircraft, it is not planned here.");
    const QString danger = PlanWarnings::Summary(route->plan.warnings);
    if (!danger.isEmpty())
        details.prepend(danger);
    const bool isInTheAir = IsInTheAir(aircraft.State());
    if (details.isEmpty() && !isInTheAir)
        return true;
    const QString name = aircraft.State().name;
    const QString what = tr("Route: %1.").arg(RouteName(*route)) + QLatin1Char('\n');
    const QString doubt = danger.isEmpty()
                              ? tr("The route may not fit %1. Upload it all the same?").arg(name)
                              : tr("An aircraft that flies this route is in danger. Upload it all the same?");
    const QString replaced =
        tr("%1 is in the air, or armed. Do you want to replace the mission that it carries?").arg(name);
    const QPointer<AxMavlinkAircraft> asked(&aircraft);
    if (!isInTheAir) {
        if (!Ask(what + doubt, details + made.notes, tr("Upload")))
            return false;
        // It may have taken off while the box was open.
        return asked && (!IsInTheAir(asked->State()) || Ask(what + replaced, made.notes, tr("Replace")));
    }
    return Ask(what + (details.isEmpty() ? replaced : replaced + QLatin1Char(' ') + doubt),
               details + made.notes, tr("Replace"));
}

bool MissionBox::Ask(const QString& text, const QStringList& details, const QString& yes)
{
    CAxMessageBox box(window());
    box.SetIcon(QStringLiteral(":/images/Normal/Exclamation_mark.png"));
    box.SetWindowTitle(tr("Upload mission"));
    box.SetMsgText(text);
    box.SetDetails(details.join(QLatin1Char('\n')));
    box.SetBtnOKText(yes);
    box.SetCancelDefault(true);
    return box.exec() == QDialog::Accepted;
}

void MissionBox::Download(AxMavlinkAircraft* aircraft)
{
    if (!aircraft || IsTransferring())
        return;
    notes.clear();
    Begin(aircraft, false);
    transfer->Download();
    emit Changed();
}

void MissionBox::Begin(AxMavlinkAircraft* aircraft, bool isUpload)
{
    aircraftName = aircraft->State().name;
    transfer = std::make_unique<AxMissionTransfer>(aircraft);
    progress->setRange(0, 0);
    progress->show();
    Tell(isUpload ? tr("Uploading to %1...").arg(aircraftName)
                  : tr("Downloading from %1...").arg(aircraftName),
         false);
    connect(transfer.get(), &AxMissionTransfer::signalProgress, this, [this](int done, int total) {
        progress->setRange(0, total);
        progress->setValue(done);
    });
    connect(transfer.get(), &AxMissionTransfer::signalFinished, this,
            [this, isUpload](const QString& fault) { Finish(isUpload, fault); });
}

void MissionBox::Cancel()
{
    if (IsTransferring())
        transfer->Cancel();
}

void MissionBox::Finish(bool isUpload, const QString& fault)
{
    progress->hide();
    if (!fault.isEmpty()) {
        const QString text = isUpload ? tr("%1: the mission was not uploaded: %2").arg(aircraftName, fault)
                                      : tr("%1: no mission was downloaded: %2").arg(aircraftName, fault);
        Tell(text, true);
        emit Changed();
        if (isUpload)
            emit Failed(aircraftName, tr("The mission was not uploaded: %1").arg(fault));
        return;
    }
    if (isUpload) {
        Tell((QStringList{tr("%1 has the mission.").arg(aircraftName)} + notes).join(QLatin1Char('\n')),
             false);
        if (carrier)
            emit Carries(carrier, carried->blockID, carried->taskID);
        emit Changed();
        return;
    }
    TaskFiles::Read read;
    read.mission = transfer->Mission();
    read.points = AxPointsOf(read.mission, notes);
    read.name = tr("Mission of %1").arg(aircraftName);
    const bool isEmpty = read.points.empty();
    Tell((QStringList{
              isEmpty ? tr("%1 carries no mission with a place in it.").arg(aircraftName)
                      : tr("The mission of %1 is shown as a route, which is chosen now.").arg(aircraftName)} +
          notes)
             .join(QLatin1Char('\n')),
         false);
    emit Changed();
    if (!isEmpty)
        emit Downloaded(read);
}

void MissionBox::Tell(const QString& text, bool isBad)
{
    outcome->setText(text);
    outcome->setStyleSheet(isBad ? QStringLiteral("color: #c02020; font-weight: bold") : QString());
}
