#include "host/aircraft/AircraftPanel.h"
#include "host/aircraft/AircraftOnMap.h"
#include "host/aircraft/AircraftSession.h"
#include "host/aircraft/AircraftText.h"
#include "host/aircraft/CommandBar.h"
#include "host/aircraft/ConnectForm.h"
#include "host/aircraft/MessageList.h"
#include "host/aircraft/MissionBox.h"
#include "host/aircraft/MissionOfPlan.h"
#include "host/aircraft/PhotoFiles.h"
#include "host/aircraft/ReplayBar.h"
#include "host/tasks/CarriedMissions.h"
#include "viewer/CAxEarthViewer.h"

#include <AxTelemetry/AxMavlinkAircraft.h>

#include <AxBaseUI/CAxMessageBox.h>
#include <AxData/CAxBlockManager.h>

#include <QCheckBox>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QTabBar>
#include <QTabWidget>
#include <QToolButton>
#include <QTreeWidget>
#include <QUrl>
#include <QVBoxLayout>

namespace {
constexpr int showMs = 250;
constexpr int listedRows = 3;
constexpr int leastRows = 5; // of the values
// MAV_SEVERITY: what is worse is said aloud, too.
constexpr int spokenSeverity = 4;
constexpr int refusedSeverity = 3;
const QColor valueRed(0xc0, 0x20, 0x20);
const QColor valueOrange(0xb0, 0x60, 0x00);

QToolButton* TextButton(const QString& text, const QString& tip, const char* name)
{
    auto* button = new QToolButton;
    button->setText(text);
    button->setToolTip(tip);
    button->setObjectName(QLatin1String(name));
    return button;
}

// A page that needs more room than there is does not make the window larger.
QScrollArea* Scrolled(QWidget* page)
{
    auto* area = new QScrollArea;
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setWidget(page);
    return area;
}
} // namespace

AircraftPanel::AircraftPanel(CAxEarthViewer* earthViewer, QWidget* parent)
    : QWidget(parent), viewer(earthViewer), session(new AircraftSession(earthViewer, this)),
      state(new QLabel), replay(new ReplayBar), tabs(new QTabWidget), form(new ConnectForm),
      connectButton(new QPushButton(tr("Connect"))), disconnectButton(new QPushButton(tr("Disconnect"))),
      removeButton(new QPushButton(tr("Remove"))), recorded(new QLabel), list(new QListWidget),
      values(new QTreeWidget), commands(new CommandBar),
      follow(TextButton(tr("Follow"), tr("Keeps the aircraft in the middle"), "FollowButton")),
      chase(TextButton(tr("Chase"), tr("Looks ahead from behind the aircraft"), "ChaseButton")),
      home(TextButton(tr("From home"), tr("Looks at the aircraft from home"), "HomeButton")),
      trail(new QCheckBox(tr("Trail"))), photos(new QCheckBox(tr("Photos"))),
      clearTrail(
          TextButton(tr("Clear trail"), tr("Takes the trails flown so far off the map"), "ClearTrail")),
      exportPhotos(TextButton(tr("Export..."), tr("Writes the places of the photos to a CSV or KML file"),
                              "ExportPhotos")),
      mission(new MissionBox), messages(new MessageList)
{
    state->setWordWrap(true);
    state->setTextFormat(Qt::PlainText);
    // A long word does not make the panel wider.
    state->setMinimumWidth(1);
    recorded->setMinimumWidth(1);
    state->setObjectName(QStringLiteral("LinkState"));
    tabs->addTab(Scrolled(BuildLink()), tr("Link"));
    tabs->addTab(Scrolled(BuildFlight()), tr("Flight"));
    tabs->addTab(Scrolled(mission), tr("Mission"));
    tabs->addTab(messages, tr("Messages"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(4, 4, 4, 4);
    column->addWidget(state);
    column->addWidget(replay);
    column->addWidget(tabs, 1);
    replay->hide();

    connect(session, &AircraftSession::Changed, this, &AircraftPanel::ShowAll);
    connect(session, &AircraftSession::FocusChanged, this, &AircraftPanel::ShowAll);
    connect(session, &AircraftSession::Said, this, &AircraftPanel::OnSaid);
    connect(mission, &MissionBox::Changed, this, &AircraftPanel::ShowAll);
    connect(mission, &MissionBox::UploadWanted, this, [this] { mission->Upload(session->LiveAircraft()); });
    connect(mission, &MissionBox::DownloadWanted, this,
            [this] { mission->Download(session->LiveAircraft()); });
    const auto refuse = [this](const QString& who, const QString& text) {
        OnSaid(who, refusedSeverity, text, true);
    };
    connect(mission, &MissionBox::Failed, this, refuse);
    connect(mission, &MissionBox::Downloaded, this, &AircraftPanel::OnDownloaded);
    connect(mission, &MissionBox::Carries, viewer,
            [this](const AxMavlinkAircraft* aircraft, const QString& blockID, const QString& taskID) {
                const CarriedMissions::Carrier carrier{aircraft, aircraft->State().name,
                                                       [aircraft] { return IsInTheAir(aircraft->State()); }};
                CarriedMissions::Of(viewer).Take(carrier, blockID, taskID);
            });
    connect(commands, &CommandBar::Refused, this, refuse);
    connect(viewer, &CAxEarthViewer::signalLoadEarth, this, &AircraftPanel::ShowAll);
    connect(viewer, &CAxEarthViewer::signalAircraftView, this, &AircraftPanel::ShowViews);
    connect(messages, &MessageList::NewestSeen, this, [this] {
        unread = 0;
        ShowUnread();
    });
    clock.setInterval(showMs);
    connect(&clock, &QTimer::timeout, this, &AircraftPanel::ShowValues);
    clock.start();
    ShowAll();
}

AircraftPanel::~AircraftPanel()
{
    // Its children hear of nothing that happens while they go.
    session->disconnect(this);
    mission->disconnect(this);
    commands->disconnect(this);
    delete session;
}

QSize AircraftPanel::sizeHint() const
{
    return {fontMetrics().averageCharWidth() * 44, QWidget::sizeHint().height()};
}

QWidget* AircraftPanel::BuildLink()
{
    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    auto* buttons = new QHBoxLayout;
    connectButton->setObjectName(QStringLiteral("ConnectButton"));
    disconnectButton->setObjectName(QStringLiteral("DisconnectButton"));
    removeButton->setObjectName(QStringLiteral("RemoveButton"));
    removeButton->setToolTip(tr("Takes the aircraft of the closed link off the map"));
    for (QPushButton* button : {connectButton, disconnectButton, removeButton})
        buttons->addWidget(button);
    column->addWidget(form);
    column->addLayout(buttons);
    column->addWidget(BuildRecording());
    column->addStretch();
    connect(connectButton, &QPushButton::clicked, this, &AircraftPanel::Connect);
    connect(disconnectButton, &QPushButton::clicked, this, &AircraftPanel::Disconnect);
    connect(removeButton, &QPushButton::clicked, session, &AircraftSession::Remove);
    connect(form, &ConnectForm::Changed, this, [this] {
        session->ForgetFault();
        ShowAll();
    });
    connect(form, &ConnectForm::SpeedChanged, session, &AircraftSession::SetSimulatorSpeed);
    connect(form, &ConnectForm::Told, this, &AircraftPanel::Told);
    return page;
}

QWidget* AircraftPanel::BuildRecording()
{
    auto* page = new QWidget;
    auto* grid = new QGridLayout(page);
    grid->setContentsMargins(0, 0, 0, 0);
    auto* folder = TextButton(tr("Folder..."), tr("Where flights are recorded, from the next connection on"),
                              "RecordFolder");
    auto* open = TextButton(tr("Show folder"), tr("Opens the folder of the records"), "OpenRecords");
    recorded->setWordWrap(true);
    recorded->setTextFormat(Qt::PlainText);
    recorded->setObjectName(QStringLiteral("RecordState"));
    grid->addWidget(recorded, 0, 0, 1, 3);
    grid->addWidget(folder, 1, 0);
    grid->addWidget(open, 1, 1);
    grid->setColumnStretch(2, 1);
    connect(folder, &QToolButton::clicked, this, &AircraftPanel::ChooseRecordFolder);
    connect(open, &QToolButton::clicked, this, &AircraftPanel::OpenRecordFolder);
    return page;
}

QWidget* AircraftPanel::BuildFlight()
{
    auto* page = new QWidget;
    list->setObjectName(QStringLiteral("AircraftList"));
    list->setAccessibleName(tr("Aircraft"));
    list->setMaximumHeight(listedRows * fontMetrics().lineSpacing() + 2 * list->frameWidth() + 8);
    values->setObjectName(QStringLiteral("AircraftValues"));
    values->setHeaderLabels({tr("Quantity"), tr("Value")});
    values->setRootIsDecorated(false);
    values->setMinimumHeight(leastRows * fontMetrics().lineSpacing());
    messages->setMinimumHeight(2 * fontMetrics().lineSpacing());
    values->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    auto* column = new QVBoxLayout(page);
    column->addWidget(list);
    column->addWidget(values, 1);
    column->addWidget(commands);
    column->addWidget(BuildViews());
    connect(list, &QListWidget::currentRowChanged, this, [this](int row) {
        if (!isListing)
            session->SetFocus(row);
    });
    return page;
}

QWidget* AircraftPanel::BuildViews()
{
    auto* page = new QWidget;
    auto* grid = new QGridLayout(page);
    grid->setContentsMargins(0, 0, 0, 0);
    for (QToolButton* button : {follow, chase})
        button->setCheckable(true);
    int place = 0;
    for (QWidget* one : std::initializer_list<QWidget*>{follow, chase, home})
        grid->addWidget(one, 0, place++);
    place = 0;
    for (QWidget* one : std::initializer_list<QWidget*>{trail, photos, clearTrail, exportPhotos})
        grid->addWidget(one, 1, place++);
    grid->setColumnStretch(place, 1);
    trail->setChecked(true);
    trail->setToolTip(tr("Shows the way flown"));
    photos->setToolTip(tr("Shows where photos were taken"));
    const auto look = [this](QToolButton* button, CAxEarthViewer::EAircraftView view) {
        connect(button, &QToolButton::clicked, this, [this, view](bool isOn) {
            if (viewer)
                viewer->SetAircraftView(isOn ? view : CAxEarthViewer::AircraftViewFree);
            ShowViews();
        });
    };
    look(follow, CAxEarthViewer::AircraftViewFollow);
    look(chase, CAxEarthViewer::AircraftViewChase);
    connect(home, &QToolButton::clicked, this, &AircraftPanel::LookFromHome);
    connect(trail, &QCheckBox::toggled, session, &AircraftSession::SetTrailVisible);
    connect(photos, &QCheckBox::toggled, this, [this](bool isOn) {
        if (viewer)
            viewer->SetDisplayShootPoint(isOn);
    });
    connect(clearTrail, &QToolButton::clicked, session, &AircraftSession::ClearTrail);
    connect(exportPhotos, &QToolButton::clicked, this, &AircraftPanel::ExportPhotos);
    return page;
}

void AircraftPanel::ShowPlan(const std::shared_ptr<const ShownPlan>& plan)
{
    route = plan;
    mission->SetRoute(plan);
    const CAxBlock* block = plan ? CAxBlockManager::instance().GetBlock(plan->blockID) : nullptr;
    if (block)
        session->SetBlockType(block->GetBlockType());
    ShowAll();
}

QByteArray AircraftPanel::Settings() const
{
    LinkSettings settings = form->Settings();
    settings.recordFolder = recordFolder;
    return settings.ToBytes();
}

void AircraftPanel::SetSettings(const QByteArray& kept)
{
    const LinkSettings settings = LinkSettings::FromBytes(kept);
    recordFolder = settings.recordFolder;
    form->SetSettings(settings);
    ShowAll();
}

void AircraftPanel::Connect()
{
    LinkSettings settings = form->Settings();
    settings.recordFolder = recordFolder;
    if (!session->Connect(settings, form->Key(), route))
        emit Told(session->Fault());
    isAwaited = session->IsConnected();
    ShowAll();
}

void AircraftPanel::Disconnect()
{
    const QString reason = ReasonToStay();
    if (!reason.isEmpty()) {
        const QPointer<AircraftPanel> alive(this);
        CAxMessageBox box(window());
        box.SetIcon(QStringLiteral(":/images/Normal/Exclamation_mark.png"));
        box.SetWindowTitle(tr("Disconnect"));
        box.SetMsgText(reason + QLatin1Char(' ') + tr("Do you want to disconnect all the same?"));
        box.SetBtnOKText(tr("Disconnect"));
        box.SetCancelDefault(true);
        if (box.exec() != QDialog::Accepted || !alive)
            return;
    }
    session->Disconnect();
}

QString AircraftPanel::ReasonToStay() const
{
    if (mission->IsTransferring())
        return tr("A mission is on its way to or from an aircraft.");
    const QStringList flying = session->InTheAir();
    if (flying.size() > 1)
        return tr("%1 are in the air.").arg(flying.join(QStringLiteral(", ")));
    return flying.isEmpty() ? QString() : tr("%1 is in the air.").arg(flying.first());
}

void AircraftPanel::OnSaid(const QString& who, int severity, const QString& text, bool isLive)
{
    messages->Add(who, severity, text);
    if (severity > spokenSeverity)
        return;
    if (!messages->IsNewestSeen())
        ++unread;
    ShowUnread();
    emit Told(text);
    // What a replay says has happened long ago.
    if (isLive)
        emit Spoken(session->Names().size() > 1 && !who.isEmpty() ? QStringLiteral("%1: %2").arg(who, text)
                                                                  : text);
}

void AircraftPanel::ShowUnread()
{
    const int tab = tabs->indexOf(messages);
    tabs->setTabText(tab, unread > 0 ? tr("Messages (%1)").arg(unread) : tr("Messages"));
    tabs->tabBar()->setTabTextColor(tab, unread > 0 ? valueRed : QColor());
}

void AircraftPanel::OnDownloaded(const TaskFiles::Read& read)
{
    if (!viewer || !AddRoute(*viewer, route ? route->blockID : QString(), read))
        emit Told(tr("The route cannot be shown."));
}

void AircraftPanel::ChooseRecordFolder()
{
    LinkSettings settings;
    settings.recordFolder = recordFolder;
    const QString chosen =
        QFileDialog::getExistingDirectory(window(), tr("Folder for records"), settings.RecordFolder());
    if (!chosen.isEmpty())
        recordFolder = chosen;
    ShowAll();
}

void AircraftPanel::OpenRecordFolder()
{
    LinkSettings settings;
    settings.recordFolder = recordFolder;
    const QString file = session->RecordFile();
    const QString folder = file.isEmpty() ? settings.RecordFolder() : QFileInfo(file).absolutePath();
    if (!QDir(folder).exists())
        return emit Told(
            tr("Nothing is recorded yet: %1 does not exist.").arg(QDir::toNativeSeparators(folder)));
    QDesktopServices::openUrl(QUrl::fromLocalFile(folder));
}

void AircraftPanel::ExportPhotos()
{
    const AircraftOnMap* focus = session->Focus();
    if (!focus)
        return;
    // The dialog runs events, in which all may go.
    const std::vector<AxPhotoRecord> taken = focus->Photos();
    const QString file = PhotoFiles::Export(window(), tr("Photos of %1").arg(focus->Name()), taken);
    if (!file.isEmpty())
        emit Told(tr("Saved %1").arg(file));
}

void AircraftPanel::LookFromHome()
{
    const AircraftOnMap* focus = session->Focus();
    if (!viewer || !focus || !focus->State().home)
        return;
    const AxPlace place = *focus->State().home;
    viewer->SetHomeView(
        {place.longitude, place.latitude, viewer->GetHAE(place.longitude, place.latitude, place.altitude)});
}

AircraftFacts AircraftPanel::Facts() const
{
    AircraftFacts facts;
    facts.kind = form->Settings().kind;
    facts.isKeyBad = form->IsKeyBad();
    facts.hasMap = viewer && viewer->getMapNode();
    facts.hasRoute = route != nullptr;
    facts.isTransferring = mission->IsTransferring();
    facts.isAwaited = commands->IsWaiting(session->LiveAircraft());
    session->AddTo(facts);
    return facts;
}

void AircraftPanel::ShowAll()
{
    if (isAwaited && (session->Replay() || session->LiveAircraft())) {
        isAwaited = false;
        // Who has gone elsewhere meanwhile stays there.
        if (tabs->currentIndex() == 0)
            tabs->setCurrentIndex(1);
    }
    replay->Show(session->Replay(), session->ReplayedFlight());
    replay->setVisible(session->Replay());
    ShowValues();
    ShowViews();
}

void AircraftPanel::ShowAircraft()
{
    const QScopedValueRollback<bool> guard(isListing, true);
    QStringList names = session->Names();
    for (int i = 0; i < names.size(); ++i)
        if (session->IsSilent(i))
            names[i] = tr("%1 - no link").arg(names[i]);
    while (list->count() > names.size())
        delete list->takeItem(list->count() - 1);
    for (int i = 0; i < names.size(); ++i) {
        if (i == list->count())
            list->addItem(names[i]);
        else if (list->item(i)->text() != names[i])
            list->item(i)->setText(names[i]);
        list->item(i)->setForeground(session->IsSilent(i) ? QBrush(valueRed) : QBrush());
    }
    list->setCurrentRow(session->FocusIndex());
    list->setVisible(names.size() > 1);
}

void AircraftPanel::ShowValues()
{
    ShowAircraft();
    const AircraftFacts facts = Facts();
    const AircraftEnabled can = EnabledBy(facts);
    state->setText(LinkText::Of(facts));
    state->setStyleSheet(LinkText::IsBad(facts) ? QStringLiteral("color: #c02020; font-weight: bold")
                                                : QString());
    connectButton->setEnabled(can.connect);
    connectButton->setText(facts.kind == LinkSettings::Kind::File ? tr("Open") : tr("Connect"));
    disconnectButton->setEnabled(can.disconnect);
    disconnectButton->setText(facts.isReplay || facts.loadingPercent >= 0 ? tr("Close") : tr("Disconnect"));
    removeButton->setEnabled(can.remove);
    form->SetChangeable(can.settings);
    mission->Show(session->LiveAircraft(), can);
    commands->Show(session->LiveAircraft(), can);
    if (facts.isReplay || (!facts.IsConnected() && facts.aircraft == 0)) {
        mission->Forget();
        commands->Forget();
    }
    for (QToolButton* button : {follow, chase})
        button->setEnabled(can.views);
    home->setEnabled(can.homeView);
    clearTrail->setEnabled(can.clearTrail);
    exportPhotos->setEnabled(can.exportPhotos);

    const QString fault = session->RecordFault();
    const QString file = session->RecordFile();
    LinkSettings folder;
    folder.recordFolder = recordFolder;
    recorded->setText(
        !fault.isEmpty() ? fault
        : !file.isEmpty()
            ? tr("Recorded: %1").arg(QDir::toNativeSeparators(file))
            : tr("Flights are recorded in %1").arg(QDir::toNativeSeparators(folder.RecordFolder())));

    const AircraftOnMap* focus = session->Focus();
    const AxAircraftState known = focus ? focus->State() : AxAircraftState();
    const QList<AircraftText::Line> lines =
        AircraftText::Lines(known, focus ? focus->AboveGround() : std::nullopt, facts.heardAgo);
    for (int i = 0; i < lines.size(); ++i) {
        if (i == values->topLevelItemCount())
            values->addTopLevelItem(new QTreeWidgetItem({lines[i].name, QString()}));
        if (values->topLevelItem(i)->text(1) != lines[i].value)
            values->topLevelItem(i)->setText(1, lines[i].value);
        // What was told last by one that is silent is no longer so.
        const QBrush brush = focus && !known.isHeard ? palette().brush(QPalette::Disabled, QPalette::Text)
                             : lines[i].level == BatteryLevel::Critical ? QBrush(valueRed)
                             : lines[i].level == BatteryLevel::Low      ? QBrush(valueOrange)
                                                                        : QBrush();
        if (values->topLevelItem(i)->foreground(1) != brush)
            for (const int column : {0, 1})
                values->topLevelItem(i)->setForeground(column, brush);
    }
    values->setToolTip(known.geoidNote);
    if (viewer) {
        // The bar of tools has a button for them, too.
        const QSignalBlocker quiet(photos);
        photos->setChecked(viewer->IsDisplayShootPoint());
    }
}

void AircraftPanel::ShowViews()
{
    const int view = viewer ? viewer->GetAircraftView() : CAxEarthViewer::AircraftViewFree;
    follow->setChecked(view == CAxEarthViewer::AircraftViewFollow);
    chase->setChecked(view == CAxEarthViewer::AircraftViewChase);
}
