#pragma once
#include <osg/Vec3d>

#include <QList>
#include <QObject>
#include <QPointer>
#include <QPointF>

class CAxEarthViewer;
class EscapeKey;

/// Waits for clicks on the map; Escape and another tool give it up. Owned by its parent; the viewer may go
/// first. GUI thread.
class SightPick : public QObject
{
    Q_OBJECT
public:
    SightPick(CAxEarthViewer* viewer, QObject* parent);
    ~SightPick() override;

    /// How many clicks are still waited for.
    int Wanted() const { return wanted; }
    /// What was clicked so far.
    const QList<QPointF>& Places() const { return places; }
    /// Waits for so many clicks from now on; none gives up.
    void Want(int clicks);

signals:
    void WantedChanged(int clicks);
    /// All of them are there: longitude, latitude, degrees.
    void Picked(QList<QPointF> places);

private:
    /// Gives up where another tool has been taken up; true when no clicks are waited for.
    bool EndWithoutTool();
    void OnMapClicked(const osg::Vec3d& lngLatPos, const osg::Vec3d& world);

    QPointer<CAxEarthViewer> viewer;
    EscapeKey* escape;
    int wanted = 0;
    QList<QPointF> places;
};
