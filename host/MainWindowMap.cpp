// What the window has to look around with: layers, search, approach and point of interest.
#include "host/LandingMenu.h"
#include "host/layers/LayerPanel.h"
#include "host/MainWindow.h"
#include "host/search/SearchBox.h"

#include <QDockWidget>
#include <QMenu>
#include <QShortcut>
#include <QStatusBar>
#include <QToolBar>

void MainWindow::Tell(const QString& text)
{
    constexpr int toldMs = 8000;
    statusBar()->showMessage(text, toldMs);
}

void MainWindow::BuildLayers(QDockWidget* beside)
{
    auto* layers = new LayerPanel(viewer);
    tabifyDockWidget(beside, AddPanel(tr("Layers"), "LayersPanel", layers, Qt::LeftDockWidgetArea));
    beside->raise();
    connect(layers, &LayerPanel::Told, this, &MainWindow::Tell);
}

void MainWindow::BuildLanding(QMenu* menu)
{
    auto* landing = new LandingMenu(viewer, this);
    landing->AddTo(menu);
    connect(landing, &LandingMenu::Told, this, &MainWindow::Tell);
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
