#pragma once
#include "host/HostOptions.h"

#include <QMainWindow>

class CAxEarthViewer;
class LogPanel;
class QDockWidget;
class QLabel;

/**
 * The ground-control window: the globe, panels around it that further
 * capabilities fill, and a log that shows the viewer's signals as they come.
 */
class MainWindow : public QMainWindow
{
    Q_OBJECT
public:
    explicit MainWindow(const HostOptions& options);
    ~MainWindow() override;

    /// Starts the globe; false when the video adapter cannot show it.
    bool StartViewer();

    /// Writes the window's picture with the globe in it.
    bool SavePicture(const QString& file);

signals:
    /// What the command line asked for is done; the program may end with this status.
    void Done(int status);

private:
    void BuildMenus();
    QDockWidget* AddPanel(const QString& title, const char* name, QWidget* content, Qt::DockWidgetArea area);
    void BuildPanels();
    void OnLoaded();
    void ReportProgress();
    void OnSavePicture();
    void ShowAbout();

    HostOptions options;
    CAxEarthViewer* viewer;
    LogPanel* log;
    QLabel* state;
    QList<QDockWidget*> panels;
};
