#pragma once
#include "host/tasks/ShownPlan.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <memory>

class CAxEarthViewer;
class QAction;
class QMenu;
class QWidget;

/// Entries of menus that take pictures of the map and open the magnifier. GUI thread; the viewer may go
/// first.
class CaptureMenu : public QObject
{
    Q_OBJECT
public:
    CaptureMenu(CAxEarthViewer* viewer, QWidget* window);

    void FillFile(QMenu* menu);
    void FillTask(QMenu* menu);
    void FillView(QMenu* menu);
    /// The route that pictures are taken along; null for none.
    void SetPlan(const std::shared_ptr<const ShownPlan>& plan);

signals:
    /// Something that the status bar shows.
    void Told(const QString& text);

private:
    void SavePicture();
    void SaveMapPicture();
    void SaveRoutePictures();
    void Magnify(bool on);
    bool IsMapThere() const;
    /// Where files went the last time.
    void Remember(const QString& file);
    void Tell(const QString& what, bool isDetailMissing);

    QPointer<CAxEarthViewer> viewer;
    QWidget* const window;
    QAction* along = nullptr;
    std::shared_ptr<const ShownPlan> shown;
    QString folder;
};
