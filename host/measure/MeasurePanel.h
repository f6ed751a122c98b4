#pragma once
#include <QPointer>
#include <QWidget>

#include <osg/Vec3d>

class AxMeasurements;
class CAxEarthViewer;
class MeasureKept;
class MeasureList;
class MeasureProfile;
class QAction;

/**
 * What has been measured: the list, what is done with its rows, and the heights along the selected one. While
 * browsing a click on a measurement of the map selects its row, with Ctrl besides the others, and gives the
 * list the keyboard. GUI thread; the viewer may go first.
 */
class MeasurePanel : public QWidget
{
    Q_OBJECT
public:
    explicit MeasurePanel(CAxEarthViewer* viewer, QWidget* parent = nullptr);

    /// What is done with the selected measurements and with all, where the list has the keyboard.
    QList<QAction*> Actions() const { return offered; }
    /// Those of them that are for a menu, where it need not.
    QList<QAction*> MenuActions() const { return ofAll; }
    /// For the project.
    MeasureKept* Kept() const { return kept; }

signals:
    void Wanted();                  ///< a measurement was clicked on the map: the panel is to be seen
    void Told(const QString& text); ///< for the status bar

protected:
    QSize sizeHint() const override;

private:
    QAction* Offer(const QString& text, const QString& tip, const QKeySequence& keys,
                   void (MeasurePanel::*done)());
    void OnMapClicked(const osg::Vec3d& lngLatPos, const osg::Vec3d& world);
    void Follow();
    void FlyTo();
    void Copy();
    void Delete();
    void Clear();
    void Export();
    bool Ask(const QString& title, const QString& question, const QString& yes);

    QPointer<CAxEarthViewer> viewer;
    QPointer<AxMeasurements> measurements;
    MeasureList* list;
    MeasureProfile* profile;
    MeasureKept* kept;
    QList<QAction*> offered;
    QList<QAction*> ofAll;    ///< that are in a menu, too
    QList<QAction*> ofChosen; ///< those that need a selection
    QString folder;           ///< that was exported to last
};
