// What the window has to look around with: layers, search, approach and point of interest.
#include "host/FileDrop.h"
#include "host/LandingMenu.h"
#include "host/layers/LayerPanel.h"
#include "host/MainWindow.h"
#include "host/marks/ControlPointPanel.h"
#include "host/models/ModelPanel.h"
#include "host/models/ModelsKept.h"
#include "host/PanelExtents.h"
#include "host/project/ProjectSession.h"
#include "host/search/SearchBox.h"

#include <QDockWidget>
#include <QMenu>
#include <QScrollArea>
#include <QShortcut>
#include <QStatusBar>
#include <QToolBar>

#include <algorithm>

void MainWindow::Tell(const QString& text)
{
    constexpr int toldMs = 8000;
    statusBar()->showMessage(text, toldMs);
}

QWidget* MainWindow::Scrolled(QWidget* content)
{
    auto* area = new QScrollArea;
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setFocusPolicy(Qt::NoFocus);
    area->setWidget(content);
    return area;
}

void MainWindow::BuildLayers(QDockWidget* beside)
{
    auto* layers = new LayerPanel(viewer);
    tabifyDockWidget(beside, AddPanel(tr("Layers"), "LayersPanel", Scrolled(layers), Qt::LeftDockWidgetArea));
    beside->raise();
    connect(layers, &LayerPanel::Told, this, &MainWindow::Tell);
}

void MainWindow::BuildControlPoints(QDockWidget* beside)
{
    controlPoints = new ControlPointPanel(viewer);
    QDockWidget* panel =
        AddPanel(tr("Control points"), "ControlPointsPanel", Scrolled(controlPoints), Qt::LeftDockWidgetArea);
    tabifyDockWidget(beside, panel);
    // Few need it: it comes with the first import, or from the menu of panels.
    panel->hide();
    connect(controlPoints, &ControlPointPanel::Told, this, &MainWindow::Tell);
    connect(controlPoints, &ControlPointPanel::Wanted, panel, [this, panel] {
        panel->show();
        panel->raise();
        extents->Apply();
    });
}

void MainWindow::BuildModels(QMenu* file)
{
    auto* models = new ModelPanel(viewer);
    QDockWidget* panel = AddPanel(tr("Models"), "ModelsPanel", Scrolled(models), Qt::LeftDockWidgetArea);
    auto* beside = findChild<QDockWidget*>(QStringLiteral("ZonesPanel"));
    tabifyDockWidget(beside, panel);
    beside->raise();
    panel->hide();
    models->FillMenu(file->addMenu(tr("3-D &models")));
    connect(models, &ModelPanel::Told, this, &MainWindow::Tell);
    connect(models, &ModelPanel::Wanted, panel, [this, panel] {
        panel->show();
        panel->raise();
        extents->Apply();
    });
    ModelsKept* inProject = models->Kept();
    inProject->SetHome([this] { return project->Home(); });
    project->KeepValue(
        QStringLiteral("models"), [inProject] { return inProject->Text(); },
        [inProject](const QString& text) { inProject->SetText(text); });
    drop->Add(&ModelPanel::IsModelFile, [models](const QStringList& files) {
        return std::all_of(files.begin(), files.end(),
                           [models](const QString& path) { return models->Load(path); });
    });
}

void MainWindow::BuildLanding(QMenu* menu)
{
    auto* landing = new LandingMenu(viewer, this);
    landing->AddTo(menu);
    connect(landing, &LandingMenu::Told, this, &MainWindow::Tell);
    project->KeepValue(
        QStringLiteral("approaches"), [landing] { return landing->Text(); },
        [landing](const QString& text) { landing->SetText(text); });
    project->KeepValue(
        QStringLiteral("point_of_interest"), [landing] { return landing->InterestText(); },
        [landing](const QString& text) { landing->SetInterestText(text); });
}

void MainWindow::BuildSearch(QToolBar* bar)
{
    auto* space = new QWidget;
    space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    bar->addWidget(space);
    auto* search = new SearchBox(viewer, bar);
    search->setMaximumWidth(260);
    bar->addWidget(search);
    connect(search, &SearchBox::Told, this, &MainWindow::Tell);
    auto* find = new QShortcut(QKeySequence::Find, this);
    connect(find, &QShortcut::activated, search, [search] {
        search->setFocus(Qt::ShortcutFocusReason);
        search->selectAll();
    });
}
