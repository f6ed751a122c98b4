#pragma once
#include "host/files/SaveBox.h"
#include "host/tasks/ShownPlan.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>
#include <memory>
#include <utility>

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
    /// Why the map should not stand still now, for people, or an empty text; asked before pictures are taken.
    void SetReasonToWait(std::function<QString()> answers) { reasonToWait = std::move(answers); }

signals:
    /// Something that the status bar shows.
    void Told(const QString& text);

private:
    void SavePicture();
    void SaveMapPicture();
    void SaveRoutePictures();
    void Magnify(bool on);
    bool IsMapThere() const;
    bool MayStandStill(const QString& title) const;
    /// Asks for a file until one can be written; empty when the pilot cancels.
    QString AskFile(const QString& title, const QString& name, const QList<SaveBox::Kind>& kinds);
    QString AskPictureFile();
    /// Where else a picture is to go that could not be written; empty when it is given up.
    QString AskElsewhere(const QString& fault);
    void Tell(const QString& what, bool isDetailMissing);

    QPointer<CAxEarthViewer> viewer;
    QWidget* const window;
    QAction* along = nullptr;
    std::shared_ptr<const ShownPlan> shown;
    std::function<QString()> reasonToWait;
    QString folder; ///< where files went the last time
};
