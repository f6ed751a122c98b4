// What the window keeps from one start to the next: its size and panels, switches, and where files were.
#include "host/aircraft/AircraftPanel.h"
#include "host/exchange/GeoExchange.h"
#include "host/KeptState.h"
#include "host/LogPanel.h"
#include "host/MainWindow.h"
#include "host/offline/OfflineAreas.h"
#include "host/PanelExtents.h"
#include "host/project/ProjectSession.h"
#include "interaction/AxEditAids.h"
#include "viewer/CAxEarthViewer.h"
#include "viewer/CAxMapToolsWidget.h"

#include <QAction>
#include <QPushButton>
#include <QScreen>

namespace {
// Around it and above it, pixels.
constexpr QSize frameOfWindow(8, 40);
// Of the kept layout; another one does not fit other panels.
constexpr int layoutVersion = 1;
const QString geometryKey = QStringLiteral("window/geometry");
const QString layoutKey = QStringLiteral("window/layout");
const QString extentsKey = QStringLiteral("window/panels");
const QString aircraftKey = QStringLiteral("aircraft/link");
const QString recentKey = QStringLiteral("projects/recent");
const QString exchangeKey = QStringLiteral("exchange/folder");
const QString offlineKey = QStringLiteral("offline/areas");

const struct
{
    const char* key;
    bool AxEditAids::*aid;
} keptAids[] = {
    {"edgeHandles", &AxEditAids::edgeHandles},
    {"deleteKey", &AxEditAids::deleteKey},
    {"snap", &AxEditAids::snap},
    {"angleSteps", &AxEditAids::angleSteps},
    {"clampToModels", &AxEditAids::clampToModels},
};
} // namespace

void MainWindow::RestoreLayout()
{
    const QSize ofScreen = screen()->availableSize() - frameOfWindow;
    resize(options.size.value_or(usualSize.boundedTo(ofScreen)));
    if (!kept)
        return;
    if (!kept->IsWritable())
        log->AppendLine(
            tr("%1 cannot be written: what is changed now is lost with the window.").arg(kept->FileName()));
    if (!options.size)
        restoreGeometry(kept->Bytes(geometryKey));
    restoreState(kept->Bytes(layoutKey), layoutVersion);
    extents->Restore(kept->Bytes(extentsKey));
    aircraft->SetSettings(kept->Bytes(aircraftKey));
    project->SetRecent(kept->Bytes(recentKey));
    connect(project, &ProjectSession::RecentChanged, kept,
            [this] { kept->SetBytes(recentKey, project->Recent()); });
    exchange->SetFolder(QString::fromUtf8(kept->Bytes(exchangeKey)));
    connect(exchange, &GeoExchange::FolderChanged, kept,
            [this] { kept->SetBytes(exchangeKey, exchange->Folder().toUtf8()); });
    offline->SetKept(kept->Bytes(offlineKey));
    connect(offline, &OfflineAreas::KeptChanged, kept,
            [this] { kept->SetBytes(offlineKey, offline->Kept()); });
}

void MainWindow::RestoreSwitches()
{
    const bool wereZonesHidden = !kept->Switch(QStringLiteral("zones"), true);
    for (auto entry = switches.cbegin(); entry != switches.cend(); ++entry)
        kept->Follow(entry.key(), entry.value());
    if (wereZonesHidden) {
        const QString line = tr("The no-fly zones are hidden, as they were left.");
        log->AppendLine(line);
        Tell(line);
    }
    auto* muted = viewer->GetMapToolWidget()->findChild<QPushButton*>(QStringLiteral("m_pVoiceSwitchBtn"));
    kept->Follow(QStringLiteral("voiceOff"), muted);
    if (muted->isChecked())
        viewer->SetTextToSpeechEnabled(true);
    AxEditAids aids = viewer->GetEditAids();
    for (const auto& one : keptAids)
        aids.*one.aid = kept->Switch(QLatin1String(one.key), aids.*one.aid);
    viewer->SetEditAids(aids);
    connect(viewer, &CAxEarthViewer::signalEditAids, kept, [this] {
        for (const auto& one : keptAids)
            kept->SetSwitch(QLatin1String(one.key), viewer->GetEditAids().*one.aid);
    });
}

void MainWindow::KeepLayout()
{
    if (!kept)
        return;
    kept->SetBytes(geometryKey, saveGeometry());
    kept->SetBytes(layoutKey, saveState(layoutVersion));
    kept->SetBytes(extentsKey, extents->Save());
    kept->SetBytes(aircraftKey, aircraft->Settings());
}
