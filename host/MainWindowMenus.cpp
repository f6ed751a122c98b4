// The menus of the window and its tool bar.
#include "host/aircraft/AircraftPanel.h"
#include "host/BlockMenu.h"
#include "host/capture/CaptureMenu.h"
#include "host/CoordinatesMenu.h"
#include "host/EditMenu.h"
#include "host/exchange/GeoExchange.h"
#include "host/GoTo.h"
#include "host/KeptState.h"
#include "host/KeyHelp.h"
#include "host/MainWindow.h"
#include "host/marks/ControlPointPanel.h"
#include "host/measure/MeasurePanel.h"
#include "host/MeasureMenu.h"
#include "host/NavigateMenu.h"
#include "host/offline/OfflineAreas.h"
#include "host/project/ProjectSession.h"
#include "host/sight/SightPanel.h"
#include "host/tasks/TaskPanel.h"
#include "host/ToolActions.h"
#include "host/UnitsMenu.h"
#include "host/volume/VolumePanel.h"
#include "host/ZonePanel.h"
#include "interaction/AxMeasurements.h"
#include "interaction/CAxEarthManipulator.h"
#include "viewer/CAxEarthViewer.h"

#include <QCoreApplication>
#include <QDockWidget>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>
#include <QToolBar>

void MainWindow::BuildMenus()
{
    QMenu* file = menuBar()->addMenu(tr("&File"));
    project->FillMenu(file);
    file->addSeparator();
    exchange->FillMenu(file);
    controlPoints->FillMenu(file);
    BuildModels(file);
    file->addSeparator();
    auto* pictures = new CaptureMenu(viewer, this);
    pictures->FillFile(file);
    pictures->SetReasonToWait([this] { return aircraft->ReasonToStay(); });
    connect(pictures, &CaptureMenu::Told, this, &MainWindow::Tell);
    connect(tasks, &TaskPanel::PlanShown, pictures, &CaptureMenu::SetPlan);
    file->addAction(tr("Save picture of the &window..."), this, &MainWindow::OnSavePicture);
    file->addSeparator();
    file->addAction(tr("&Quit"), this, &QWidget::close, QKeySequence(QStringLiteral("Ctrl+Q")));

    menuBar()->addMenu(new EditMenu(viewer, history->toggleViewAction(), this));
    auto* block = new BlockMenu(viewer, blocks, this);
    menuBar()->addMenu(block);
    connect(block, &BlockMenu::Hinted, this, [this](const QString& text) {
        statusBar()->showMessage(text);
        tools->Follow();
    });
    BuildDrawMenu();
    FillMeasureMenu(MeasureMenu(), tools, measure, measurePanel);
    BuildTaskMenu();
    findChild<SightPanel*>()->FillMenu(MeasureMenu());

    QMenu* view = menuBar()->addMenu(tr("&View"));
    pictures->FillView(view);
    view->addSeparator();
    const auto addSwitch = [this, view](const char* key, const QString& text, auto change) {
        QAction* action = view->addAction(text);
        action->setCheckable(true);
        action->setChecked(true);
        connect(action, &QAction::toggled, change);
        switches[QLatin1String(key)] = action;
    };
    addSwitch("sky", tr("S&ky and graticule"), [this](bool on) { viewer->SetSkyNodeVisible(on); });
    addSwitch("compass", tr("&Compass"), [this](bool on) { viewer->SetCompassVisible(on); });
    addSwitch("coordinates", tr("Coo&rdinates"), [this](bool on) { viewer->SetCoordinateVisible(on); });
    view->addAction(zones->ShowAction());
    switches[QStringLiteral("zones")] = zones->ShowAction();
    view->addSeparator();
    auto* units = new UnitsMenu(kept, this);
    view->addMenu(units);
    // Queued: the menu tells of the choice before it is made.
    connect(
        units, &QMenu::triggered, measure,
        [this] {
            viewer->GetMeasurements()->WriteAgain();
            findChild<VolumePanel*>()->WriteAgain();
        },
        Qt::QueuedConnection);
    view->addMenu(new CoordinatesMenu(viewer, kept, this));
    QMenu* places = view->addMenu(tr("&Places"));
    const QStringList names{tr("Whole globe"), tr("Alps"), tr("Spanish Peaks from 20 km"),
                            tr("Spanish Peaks from 500 m")};
    for (int i = 0; i < names.size(); ++i) {
        places->addAction(names[i], this, [this, i] {
            constexpr double flightSeconds = 3.0;
            viewer->getManipulator()->setViewpoint(tourStops[i].Viewpoint(), flightSeconds);
        });
    }
    offline = new OfflineAreas(viewer, this);
    offline->FillMenu(view);
    connect(offline, &OfflineAreas::Told, this, &MainWindow::Tell);
    view->addSeparator();
    for (QDockWidget* panel : qAsConst(panels))
        view->addAction(panel->toggleViewAction());

    auto* navigate = new NavigateMenu(viewer->getManipulator(), this);
    menuBar()->addMenu(navigate);
    navigate->addSeparator();
    navigate->addAction(
        tr("&Go to a coordinate..."), this, [this] { AskAndGo(viewer, this); },
        QKeySequence(QStringLiteral("Ctrl+G")));

    QMenu* help = menuBar()->addMenu(tr("&Help"));
    help->addAction(
        tr("&Mouse and keys"), this, [this] { ShowKeyHelp(this); }, QKeySequence::HelpContents);
    help->addAction(tr("&About"), this, &MainWindow::ShowAbout);
}

void MainWindow::BuildDrawMenu()
{
    menuBar()->addMenu(tr("&Draw"))->addActions(tools->actions());
    QToolBar* bar = addToolBar(tr("Tools"));
    bar->setObjectName(QStringLiteral("ToolBar"));
    bar->setMovable(false);
    bar->addActions(tools->actions());
}

void MainWindow::BuildTaskMenu()
{
    QMenu* menu = menuBar()->addMenu(tr("&Task"));
    menu->addAction(tasks->AddAction());
    menu->addAction(taskPanels[0]->toggleViewAction());
    menu->addSeparator();
    menu->addAction(tasks->ImportAction());
    menu->addAction(tasks->ExportAction());
    findChild<CaptureMenu*>()->FillTask(menu);
    BuildLanding(menu);
    auto* bar = findChild<QToolBar*>(QStringLiteral("ToolBar"));
    bar->addSeparator();
    bar->addAction(tasks->AddAction());
    BuildSearch(bar);
    for (QAction* action : {tasks->AddAction(), tasks->ImportAction()})
        connect(action, &QAction::triggered, this, &MainWindow::ShowTaskPanels);
}

QMenu* MainWindow::MeasureMenu()
{
    const QString name = QStringLiteral("MeasureMenu");
    auto* menu = menuBar()->findChild<QMenu*>(name);
    if (!menu) {
        menu = menuBar()->addMenu(tr("&Measure"));
        menu->setObjectName(name);
    }
    return menu;
}

void MainWindow::ShowAbout()
{
    QMessageBox::about(
        this, tr("About"),
        tr("AxGroundControl %1\n\nA small host for the AxEarthViewer globe. MIT licence; the NOTICE "
           "file credits the map data.")
            .arg(QCoreApplication::applicationVersion()));
}
