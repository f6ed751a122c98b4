#pragma once
#include <osg/Vec3d>

#include <QObject>
#include <QString>

class CAxEarthViewer;

/// Sets home of a block, where its tasks land, with a click on the map in the landing area around the block;
/// Escape and another tool give it up. Owned by its parent; the viewer outlives it. GUI thread.
class HomeClick : public QObject
{
    Q_OBJECT
public:
    HomeClick(CAxEarthViewer* viewer, QObject* parent);
    ~HomeClick() override;

    /// Whether a click is waited for.
    bool IsWanted() const { return !blockID.isEmpty(); }
    /// Waits for a click for that block; an empty ID gives up.
    void Want(const QString& id);

signals:
    /// A click is waited for, or is not any more.
    void Wanted(bool wanted);
    /// Home was set.
    void Done();

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void OnLandingPicked(double longitude, double latitude, double altitude);

    CAxEarthViewer* viewer;
    QString blockID;         ///< empty while no click is waited for
    osg::Vec3d clickedWorld; ///< of the last click, geocentric metres; a pick has fewer digits
};
