#include "host/MainWindow.h"
#include "host/aircraft/AircraftPanel.h"
#include "host/BlockMenu.h"
#include "host/BlockPanel.h"
#include "host/CameraRest.h"
#include "host/EventLog.h"
#include "host/exchange/GeoExchange.h"
#include "host/FileDrop.h"
#include "host/HistoryView.h"
#include "host/KeptState.h"
#include "host/LogPanel.h"
#include "host/marks/ControlPointPanel.h"
#include "host/marks/MarkPanel.h"
#include "host/measure/MeasureKept.h"
#include "host/measure/MeasurePanel.h"
#include "host/offline/OfflineAreas.h"
#include "host/PanelExtents.h"
#include "host/PlaceLabel.h"
#include "host/project/ProjectSession.h"
#include "host/sight/SightKept.h"
#include "host/sight/SightPanel.h"
#include "host/SignalRelay.h"
#include "host/StartBlocks.h"
#include "host/tasks/CoveragePanel.h"
#include "host/tasks/ProfilePanel.h"
#include "host/tasks/TaskPanel.h"
#include "host/ToolActions.h"
#include "host/Tour.h"
#include "host/Voice.h"
#include "host/volume/VolumeKept.h"
#include "host/volume/VolumePanel.h"
#include "host/ZonePanel.h"
#include "interaction/CAxEarthManipulator.h"
#include "viewer/CAxEarthViewer.h"

#include <AxBaseUI/CAxNoflyApplyUpload.h>
#include <AxData/CAxNoflyZoneMgr.h>
#include <AxData/project/AxRecovery.h>

#include <QCloseEvent>
#include <QDir>
#include <QDockWidget>
#include <QLabel>
#include <QStatusBar>
#include <QTextStream>
#include <QTimer>
#include <QUndoStack>

#include <functional>
#include <utility>

namespace {
// Of the manipulator's signals those that tell of something that a person has done.
bool IsForPeople(const QString& signal)
{
    static const QStringList told{
        QStringLiteral("mouseLeftBtnClick"),       QStringLiteral("mouseLeftBtnClickSignal"),
        QStringLiteral("mouseLeftBtnDoubleClick"), QStringLiteral("signalRightBtnPicked"),
        QStringLiteral("signalHandleKeyDelete"),   QStringLiteral("signalMouseLeftBtnClickModelLayer"),
    };
    return told.contains(signal);
}
} // namespace

MainWindow::MainWindow(const HostOptions& hostOptions, EventLog& eventLog)
    : options(hostOptions), viewer(new CAxEarthViewer(this)), events(eventLog), log(new LogPanel),
      blocks(new BlockPanel(viewer)), marks(new MarkPanel(viewer)), cameraRest(new CameraRest(viewer, this)),
      zones(new ZonePanel(viewer, cameraRest)), tasks(new TaskPanel(viewer)),
      aircraft(new AircraftPanel(viewer)), kept(KeptState::Open(hostOptions, this)),
      extents(new PanelExtents(this)), tools(new ToolActions(viewer, this)), place(new PlaceLabel(viewer)),
      state(new QLabel)
{
    // With it Control adds to the selection.
    constexpr int planning = 1;
    viewer->SetAppType(planning);
    setWindowTitle(tr("Ground control"));
    setCentralWidget(viewer);
    BuildPanels();
    BuildProject();
    BuildMenus();
    statusBar()->addPermanentWidget(place);
    statusBar()->addPermanentWidget(state);
    RestoreLayout();

    RelaySignals();
    connect(tasks, &TaskPanel::PlanShown, this, [this](const std::shared_ptr<const ShownPlan>& shown) {
        if (shown)
            events.Signal(
                "tasks", QStringLiteral("PlanShown"),
                {shown->taskID, static_cast<double>(shown->plan.points.size()), shown->plan.figures.length});
    });
    if (!options.noVoice && !options.IsUnattended())
        connect(aircraft, &AircraftPanel::Spoken, new Voice(viewer, this), &Voice::Warn);
    connect(viewer, &CAxEarthViewer::signalLoadEarth, this, &MainWindow::OnLoaded);
    viewer->setFocus();
}

MainWindow::~MainWindow()
{
    // A run that ended by itself closed nothing.
    if (isVisible())
        KeepLayout();
    // It looks at what the others show.
    delete project;
    delete offline;
    // The records of flights end whole, whatever comes after.
    delete aircraft;
    viewer->ReleaseAll();
    // Their rows ask the viewer.
    delete blocks;
    delete marks;
    delete zones;
    delete tasks;
    delete cameraRest;
    delete viewer;
}

QDockWidget* MainWindow::AddPanel(const QString& title, const char* name, QWidget* content,
                                  Qt::DockWidgetArea area)
{
    auto* panel = new QDockWidget(title, this);
    panel->setObjectName(QLatin1String(name));
    panel->setWidget(content);
    addDockWidget(area, panel);
    panels += panel;
    extents->Add(panel);
    return panel;
}

void MainWindow::BuildPanels()
{
    QDockWidget* blocksPanel = AddPanel(tr("Blocks"), "BlocksPanel", blocks, Qt::LeftDockWidgetArea);
    tabifyDockWidget(blocksPanel,
                     AddPanel(tr("Marks"), "MarksPanel", Scrolled(marks), Qt::LeftDockWidgetArea));
    BuildControlPoints(blocksPanel);
    blocksPanel->raise();
    QDockWidget* zonesPanel = AddPanel(tr("No-fly zones"), "ZonesPanel", zones, Qt::LeftDockWidgetArea);
    tabifyDockWidget(zonesPanel,
                     AddPanel(tr("Aircraft"), "AircraftPanel", Scrolled(aircraft), Qt::LeftDockWidgetArea));
    zonesPanel->raise();
    auto* undoView = new HistoryView(viewer);
    undoView->setEmptyLabel(tr("Nothing done"));
    history = AddPanel(tr("Undo history"), "HistoryPanel", undoView, Qt::RightDockWidgetArea);
    history->hide();
    BuildTaskPanels();
    QDockWidget* logPanel = AddPanel(tr("Log"), "LogPanel", log, Qt::BottomDockWidgetArea);
    tabifyDockWidget(logPanel, taskPanels.at(1));
    measure = new MeasurePanel(viewer);
    measurePanel = AddPanel(tr("Measurements"), "MeasurePanel", Scrolled(measure), Qt::BottomDockWidgetArea);
    tabifyDockWidget(logPanel, measurePanel);
    logPanel->raise();
    BuildSightPanel();
    BuildVolumePanel();
    BuildLayers(zonesPanel);
    extents->Want(Qt::BottomDockWidgetArea, usualSize.height() / 7);
    extents->Want(Qt::RightDockWidgetArea, tasks->sizeHint().width());
    // The block list's columns fit.
    extents->Want(Qt::LeftDockWidgetArea, blocks->sizeHint().width());
    connect(blocks, &BlockPanel::Told, this, &MainWindow::Tell);
    connect(marks, &MarkPanel::Told, this, &MainWindow::Tell);
    connect(tasks, &TaskPanel::Told, this, &MainWindow::Tell);
    connect(measure, &MeasurePanel::Told, this, &MainWindow::Tell);
    connect(measure, &MeasurePanel::Wanted, measurePanel, [this] {
        measurePanel->show();
        measurePanel->raise();
        extents->Apply();
    });
    connect(aircraft, &AircraftPanel::Told, this, &MainWindow::Tell);
    connect(tasks, &TaskPanel::PlanShown, aircraft, &AircraftPanel::ShowPlan);
    // It may be out of sight, and what was told of it holds no more.
    connect(viewer->GetUndoStack(), &QUndoStack::indexChanged, this, [this, former = 0](int index) mutable {
        if (index >= std::exchange(former, index))
            return;
        const QString step = viewer->GetUndoStack()->text(index);
        if (step.isEmpty())
            statusBar()->clearMessage();
        else
            Tell(tr("Undone: %1").arg(step));
    });
}

void MainWindow::BuildSightPanel()
{
    auto* sight = new SightPanel(viewer);
    QDockWidget* panel = AddPanel(tr("Sight"), "SightPanel", Scrolled(sight), Qt::RightDockWidgetArea);
    tabifyDockWidget(taskPanels[0], panel);
    panel->hide();
    connect(sight, &SightPanel::Told, this, &MainWindow::Tell);
    connect(sight, &SightPanel::Wanted, panel, [this, panel] {
        panel->show();
        panel->raise();
        extents->Apply();
    });
}

void MainWindow::BuildVolumePanel()
{
    auto* volumes = new VolumePanel(viewer);
    QDockWidget* panel = AddPanel(tr("Volumes"), "VolumePanel", Scrolled(volumes), Qt::RightDockWidgetArea);
    tabifyDockWidget(taskPanels[0], panel);
    panel->hide();
    connect(volumes, &VolumePanel::Told, this, &MainWindow::Tell);
    connect(volumes, &VolumePanel::Wanted, panel, [this, panel] {
        panel->show();
        panel->raise();
        extents->Apply();
    });
}

void MainWindow::BuildTaskPanels()
{
    auto* profile = new ProfilePanel(viewer);
    auto* coverage = new CoveragePanel(viewer);
    connect(tasks, &TaskPanel::PlanShown, profile, &ProfilePanel::ShowPlan);
    connect(tasks, &TaskPanel::PlanShown, coverage, &CoveragePanel::ShowPlan);
    taskPanels = {AddPanel(tr("Tasks"), "TasksPanel", tasks, Qt::RightDockWidgetArea),
                  AddPanel(tr("Height profile"), "ProfilePanel", profile, Qt::BottomDockWidgetArea),
                  AddPanel(tr("Coverage"), "CoveragePanel", coverage, Qt::RightDockWidgetArea)};
    tabifyDockWidget(taskPanels[0], taskPanels[2]);
    // They take a good part of the map, so they come with the first task.
    for (QDockWidget* panel : qAsConst(taskPanels))
        panel->hide();
}

void MainWindow::ShowTaskPanels()
{
    for (QDockWidget* panel : qAsConst(taskPanels))
        panel->show();
    taskPanels[0]->raise();
    extents->Apply();
}

void MainWindow::BuildProject()
{
    // With --settings it stays with the other things that are kept.
    QString recovery = options.settingsFile.isEmpty() ? AxRecoveryFolder()
                                                      : options.settingsFile + QStringLiteral(".recovery");
    if (!kept || options.IsUnattended())
        recovery.clear();
    project = new ProjectSession(viewer, this, recovery, options.IsUnattended());
    project->SetReasonToStay([this] { return aircraft->ReasonToStay(); });
    project->KeepValue(
        QStringLiteral("hidden_routes"), [this] { return tasks->HiddenRoutes(); },
        [this](const QString& text) { tasks->SetHiddenRoutes(text); });
    project->KeepValue(
        QStringLiteral("control_points"), [this] { return controlPoints->Text(); },
        [this](const QString& text) { controlPoints->SetText(text); });
    SightKept* sight = findChild<SightPanel*>()->Kept();
    project->KeepValue(
        QStringLiteral("sight"), [sight] { return sight->Text(); },
        [sight](const QString& text) { sight->SetText(text); });
    MeasureKept* measured = findChild<MeasurePanel*>()->Kept();
    project->KeepValue(
        QStringLiteral("measurements"), [measured] { return measured->Text(); },
        [measured](const QString& text) { measured->SetText(text); });
    VolumeKept* volumes = findChild<VolumePanel*>()->Kept();
    project->KeepValue(
        QStringLiteral("volumes"), [volumes] { return volumes->Text(); },
        [volumes](const QString& text) { volumes->SetText(text); });
    connect(sight, &SightKept::Unread, project, &ProjectSession::NoteUnread);
    connect(measured, &MeasureKept::Unread, project, &ProjectSession::NoteUnread);
    connect(volumes, &VolumeKept::Unread, project, &ProjectSession::NoteUnread);
    connect(project, &ProjectSession::Told, this, &MainWindow::Tell);
    drop = new FileDrop(this);
    drop->Watch(viewer->viewport());
    drop->Add(&ProjectSession::IsProjectFile,
              [this](const QStringList& files) { return project->Open(files.constFirst()); });
    exchange = new GeoExchange(viewer, this, [this](const QString& id) { return blocks->FaultOf(id); });
    connect(exchange, &GeoExchange::Told, this, &MainWindow::Tell);
    connect(blocks, &BlockPanel::MenuAsked, exchange,
            [this](QMenu* menu) { exchange->FillBlockMenu(menu, blocks->Chosen()); });
    drop->Add(&GeoExchange::IsGeoFile, [this](const QStringList& files) {
        exchange->Import(files);
        return true;
    });
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    if (!project->MayLeave(aircraft->ReasonToStay(), tr("Do you want to close all the same?"), tr("Close"))) {
        event->ignore();
        return;
    }
    project->End();
    KeepLayout();
    QMainWindow::closeEvent(event);
}

void MainWindow::RelaySignals()
{
    const auto relay = [this](const char* from, const QString& name, const QJsonArray& arguments) {
        events.Signal(from, name, arguments);
        if (QLatin1String(from) == QLatin1String("viewer") || IsForPeople(name))
            log->AppendOfKind(name, SignalText(name, arguments));
    };
    using namespace std::placeholders;
    new SignalRelay(viewer, CAxEarthViewer::staticMetaObject, std::bind(relay, "viewer", _1, _2), viewer);
    new SignalRelay(viewer->getManipulator(), CAxEarthManipulator::staticMetaObject,
                    std::bind(relay, "manipulator", _1, _2), viewer);
}

bool MainWindow::StartViewer()
{
    state->setText(tr("Loading..."));
    if (!viewer->CheckAdapterGLSupport())
        return false;
    viewer->SetMapFile(options.mapFile);
    CAxNoflyZoneMgr::SetNoflyFile(options.zoneFile);
    CAxNoflyApplyUpload::SetUploadUrl(options.applyUrl);
    viewer->InitEarthViewer();
    return true;
}

void MainWindow::GoToFirstView()
{
    const std::optional<TourStop> last = kept && !options.view ? kept->View() : options.view;
    if (last)
        viewer->getManipulator()->setViewpoint(last->Viewpoint(), 0.0);
    if (kept)
        connect(cameraRest, &CameraRest::Rested, kept, &KeptState::SetView);
}

void MainWindow::OnLoaded()
{
    state->setText(tr("Ready"));
    if (options.report)
        ReportProgress();
    if (events.IsOpen())
        events.Follow(viewer, *cameraRest);
    zones->Start();
    if (kept)
        RestoreSwitches();
    cameraRest->Start();
    QStringList drawn;
    if (!StartBlocks::Draw(*viewer, options.blocks, drawn)) {
        emit Done(exitWrongUse);
        return;
    }
    StartBlocks::TellFaults(drawn, *blocks, *log, *statusBar());
    QVector<Tour::Stop> stops;
    if (!options.shotFile.isEmpty())
        stops += {options.view ? options.view->Viewpoint() : osgEarth::Viewpoint(), options.shotFile};
    if (!options.tourFolder.isEmpty()) {
        QDir().mkpath(options.tourFolder);
        for (const TourStop& stop : tourStops)
            stops += {stop.Viewpoint(),
                      QDir(options.tourFolder).filePath(QLatin1String(stop.name) + QStringLiteral(".png"))};
    }
    // Start-up itself still goes to its first viewpoint after this signal.
    QTimer::singleShot(0, this, [this, stops] {
        GoToFirstView();
        if (!project->Start(options.projectFile) && options.IsUnattended()) {
            emit Done(exitWrongUse);
            return;
        }
        if (options.view)
            viewer->getManipulator()->setViewpoint(options.view->Viewpoint(), 0.0);
        if (!stops.isEmpty()) {
            auto* tour = new Tour(
                viewer, stops, [this](const QString& file) { return SavePicture(file); }, this);
            connect(tour, &Tour::Finished, this, [this](bool allWell) { emit Done(allWell ? 0 : 1); });
            tour->Start();
        }
    });
    if (options.quitAfterSeconds) {
        const bool unfinished = !stops.isEmpty();
        QTimer::singleShot(static_cast<int>(*options.quitAfterSeconds * 1000.0), this,
                           [this, unfinished] { emit Done(unfinished ? 1 : 0); });
    }
}

void MainWindow::ReportProgress()
{
    // Lines for programs, so not translated.
    QTextStream(stdout) << "loaded" << Qt::endl;
    constexpr int lookEveryMs = 10;
    auto* clock = new QTimer(this);
    connect(clock, &QTimer::timeout, this, [this, clock] {
        if (!viewer->IsPictureComplete())
            return;
        QTextStream(stdout) << "picture complete" << Qt::endl;
        clock->deleteLater();
    });
    clock->start(lookEveryMs);
}
