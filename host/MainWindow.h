#pragma once
#include "host/HostOptions.h"

#include <osg/Vec3d>

#include <QHash>
#include <QMainWindow>

class AircraftPanel;
class BlockPanel;
class CameraRest;
class ControlPointPanel;
class CAxEarthViewer;
class EventLog;
class FileDrop;
class GeoExchange;
class KeptState;
class LogPanel;
class MarkPanel;
class MeasurePanel;
class OfflineAreas;
class PanelExtents;
class ProjectSession;
class QDockWidget;
class QLabel;
class QMenu;
class QToolBar;
class TaskPanel;
class ToolActions;
class ZonePanel;

/**
 * The ground-control window: the globe, panels around it that further
 * capabilities fill, and a log that shows the viewer's signals as they come.
 */
class MainWindow : public QMainWindow
{
    Q_OBJECT
public:
    /// `events` hears what happens in the viewer when it is open; it outlives the window.
    MainWindow(const HostOptions& options, EventLog& events);
    ~MainWindow() override;

    /// Whether the globe's widget got an OpenGL context; without one it cannot even be shown.
    bool HasOpenGl() const;

    /// The largest picture that the display's OpenGL can draw, pixels.
    QSize LargestPicture() const;

    /// Starts the globe; false when the video adapter cannot show it.
    bool StartViewer();

    /// Writes the window's picture with the globe in it; as PNG where the name has no extension.
    bool SavePicture(const QString& file);

signals:
    /// What the command line asked for is done; the program may end with this status.
    void Done(int status);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    static constexpr QSize usualSize{1440, 900};

    void BuildMenus();
    void BuildDrawMenu();
    void BuildTaskMenu();
    QDockWidget* AddPanel(const QString& title, const char* name, QWidget* content, Qt::DockWidgetArea area);
    /// For panels that are high: a low window shows a part of them.
    static QWidget* Scrolled(QWidget* content);
    void BuildPanels();
    void BuildTaskPanels();
    void BuildSightPanel();
    void BuildVolumePanel();
    QMenu* MeasureMenu(); ///< made at the first call
    void ShowTaskPanels();
    void BuildLayers(QDockWidget* beside);
    void BuildControlPoints(QDockWidget* beside);
    void BuildModels(QMenu* file);
    void BuildLanding(QMenu* menu);
    void BuildSearch(QToolBar* bar);
    void Tell(const QString& text); ///< in the status bar, for a while
    void RelaySignals();
    void OnLoaded();
    void RestoreLayout();
    void KeepLayout();
    void RestoreSwitches();
    void BuildProject();
    void GoToFirstView();
    void ReportProgress();
    void OnSavePicture();
    void ShowAbout();

    HostOptions options;
    CAxEarthViewer* viewer;
    EventLog& events;
    LogPanel* log;
    BlockPanel* blocks;
    MarkPanel* marks;
    MeasurePanel* measure = nullptr;
    ControlPointPanel* controlPoints = nullptr;
    CameraRest* cameraRest;
    ZonePanel* zones;
    TaskPanel* tasks;
    AircraftPanel* aircraft;
    KeptState* kept; ///< null: nothing is kept
    PanelExtents* extents;
    ProjectSession* project = nullptr;
    GeoExchange* exchange = nullptr;
    OfflineAreas* offline = nullptr;
    FileDrop* drop = nullptr; ///< opens files of the kinds that its takers want
    QDockWidget* history = nullptr;
    QDockWidget* measurePanel = nullptr;
    QList<QDockWidget*> taskPanels; ///< tasks, height profile, coverage
    ToolActions* tools;
    QLabel* place; ///< what is under the mouse
    QLabel* state;
    QList<QDockWidget*> panels;
    QHash<QString, QAction*> switches; ///< of the view menu, by the names under which they are kept
};
