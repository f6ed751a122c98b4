#pragma once
#include <AxAlgorthm/CAxVector3D.h>

#include <osg/Vec3d>

#include <QObject>
#include <QString>

class CAxBlock;
class CAxEarthViewer;
class EscapeKey;

/// Sets home of a block, where its tasks land, with a click on the map in the landing area around the block;
/// Escape, another tool and the choice of something that is no block give it up. Owned by its parent; the
/// viewer outlives it. GUI thread.
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

    /// Gives a block its home, or with a null place none, as a step of the undo history.
    static void SetHome(CAxEarthViewer& viewer, CAxBlock& block, const CAxVector3D& place);

signals:
    /// A click is waited for, or is not any more. Told again when another block was chosen meanwhile: home
    /// stays that of its own.
    void Wanted(bool wanted);
    /// Home was set.
    void Done();

private:
    void FollowChoice();
    void OnLandingPicked(double longitude, double latitude, double altitude);

    CAxEarthViewer* viewer;
    EscapeKey* escape;
    QString blockID;         ///< empty while no click is waited for
    osg::Vec3d clickedWorld; ///< of the last click, geocentric metres; a pick has fewer digits
};
