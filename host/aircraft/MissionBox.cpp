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
    : QWidget(parent), upload(new QPushButton(tr("Upload"))), download(new QPushButton(tr("Download"))),
      cancel(new QPushButton(tr("Cancel"))), progress(new QProgressBar), outcome(new QLabel)
{
    upload->setObjectName(QStringLiteral("UploadMission"));
    upload->setToolTip(tr("Brings the route of the chosen task to the aircraft"));
    download->setObjectName(QStringLiteral("DownloadMission"));
    download->setToolTip(tr("Shows the mission that the aircraft carries as a route"));
    cancel->setObjectName(QStringLiteral("CancelMission"));
    outcome->setObjectName(QStringLiteral("MissionOutcome"));
    outcome->setWordWrap(true);
    outcome->setTextFormat(Qt::PlainText);
    progress->setFormat(QStringLiteral("%v / %m"));
    auto* column = new QVBoxLayout(this);
    auto* row = new QHBoxLayout;
    for (QPushButton* button : {upload, download, cancel})
        row->addWidget(button);
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

void MissionBox::SetEnabledBy(const AircraftEnabled& can)
{
    upload->setEnabled(can.upload);
    download->setEnabled(can.download);
    cancel->setEnabled(can.cancel);
}

void MissionBox::Upload(AxMavlinkAircraft* aircraft)
{
    if (!aircraft || !route || IsTransferring())
        return;
    const AxMissionRead made = MissionOfPlan(*route);
    if (!made.fault.isEmpty())
        return outcome->setText(tr("The mission was not uploaded: %1").arg(made.fault));
    const QPointer<AxMavlinkAircraft> target(aircraft);
    if (!IsWanted(*aircraft, made) || !target || IsTransferring())
        return;
    notes = made.notes;
    Begin(target, true);
    transfer->Upload(made.mission);
    emit Changed();
}

bool MissionBox::IsWanted(const AxMavlinkAircraft& aircraft, const AxMissionRead& made)
{
    QStringList details = MissionDoubts::Of(made.mission, aircraft.State());
    const QString danger = PlanWarnings::Summary(route->plan.warnings);
    if (!danger.isEmpty())
        details.prepend(danger);
    const bool isInTheAir = IsInTheAir(aircraft.State());
    if (details.isEmpty() && !isInTheAir)
        return true;
    const QString name = aircraft.State().name;
    const QString doubt = danger.isEmpty()
                              ? tr("The route may not fit %1. Upload it all the same?").arg(name)
                              : tr("An aircraft that flies this route is in danger. Upload it all the same?");
    const QString replaced =
        tr("%1 is in the air, or armed. Do you want to replace the mission that it carries?").arg(name);
    CAxMessageBox box(window());
    box.SetIcon(QStringLiteral(":/images/Normal/Exclamation_mark.png"));
    box.SetWindowTitle(tr("Upload mission"));
    box.SetMsgText(!isInTheAir ? doubt : details.isEmpty() ? replaced : replaced + QLatin1Char(' ') + doubt);
    box.SetDetails((details + made.notes).join(QLatin1Char('\n')));
    box.SetBtnOKText(isInTheAir ? tr("Replace") : tr("Upload"));
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
    outcome->setText(isUpload ? tr("Uploading to %1...").arg(aircraftName)
                              : tr("Downloading from %1...").arg(aircraftName));
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
        outcome->setText(isUpload ? tr("The mission was not uploaded: %1").arg(fault)
                                  : tr("No mission was downloaded: %1").arg(fault));
        emit Changed();
        return;
    }
    if (isUpload) {
        outcome->setText(
            (QStringList{tr("%1 has the mission.").arg(aircraftName)} + notes).join(QLatin1Char('\n')));
        emit Changed();
        return;
    }
    TaskFiles::Read read;
    read.mission = transfer->Mission();
    read.points = AxPointsOf(read.mission, notes);
    read.name = tr("Mission of %1").arg(aircraftName);
    const bool isEmpty = read.points.empty();
    outcome->setText((QStringList{isEmpty ? tr("%1 carries no mission with a place in it.").arg(aircraftName)
                                          : tr("The mission of %1 is shown as a route.").arg(aircraftName)} +
                      notes)
                         .join(QLatin1Char('\n')));
    emit Changed();
    if (!isEmpty)
        emit Downloaded(read);
}
