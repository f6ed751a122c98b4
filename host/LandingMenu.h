#pragma once
#include <QObject>
#include <QPointer>

class CAxDownhillAnglenode;
class CAxEarthViewer;
class QAction;
class QMenu;

/**
 * Actions for landings and points of interest: the direction of the approach to the home of the chosen block,
 * turned on the map by its handle, and a point of interest by a click. Owned by its parent; the viewer
 * outlives it. GUI thread.
 */
class LandingMenu : public QObject
{
    Q_OBJECT
public:
    LandingMenu(CAxEarthViewer* viewer, QObject* parent);
    ~LandingMenu() override;

    void AddTo(QMenu* menu);

signals:
    void Told(const QString& text); ///< for the status bar

private:
    void ShowApproach(bool shown);
    void Follow();
    void PickInterest(bool wanted);

    CAxEarthViewer* viewer;
    QAction* approachAction;
    QAction* interestAction;
    QAction* removeInterest;
    CAxDownhillAnglenode* approach = nullptr; ///< while it is shown
    bool hasHome = false;                     ///< the block that was looked at last
};
