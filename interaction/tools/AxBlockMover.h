#pragma once
#include "scene/AxViewerParts.h"

#include <osg/Vec3d>

#include <QList>
#include <QPointer>

#include <functional>

class CAxHandleAdapter;

/**
 * A move of the current object, or of all selected ones, from the first step of a drag to its release.
 * Belongs to the manipulator. GUI thread.
 */
class AxBlockMover
{
public:
    /// A step of a single object: degrees, degrees and metres.
    using Tell = std::function<void(double dLng, double dLat, double dAlt)>;
    AxBlockMover(AxViewerParts* viewer, Tell moved) : parts(viewer), tellMoved(std::move(moved)) {}

    bool IsMoving() const { return !moveIdle; }
    /// Whether the rest of the drag belongs to a move, be it one that was given up.
    bool OwnsDrag() const { return !moveIdle || moveCancelled; }
    /// A push: what was given up before does not count any more.
    void Begin() { moveCancelled = false; }
    /// A step to the place under the cursor; false when there is nothing that may be moved.
    bool ProcessMoveGeom(const osg::Vec3d& lngLatPos);
    /// The release. Several objects are judged and committed together; a single one ends by `releaseSingle`.
    void End(const std::function<void()>& releaseSingle);
    /// Ends the move without a commit; the rest of the drag does nothing.
    void Cancel();

private:
    bool takeHold(const osg::Vec3d& lngLatPos);
    void step(CAxHandleAdapter& adapter, const osg::Vec3d& lngLatPos);
    void endSeveral();

    const QPointer<AxViewerParts> parts; ///< may go while a box is open
    const Tell tellMoved;
    bool moveIdle = true;
    bool moveCancelled = false;
    bool isSingle = false;                    ///< the current object, not the selected ones
    QList<QPointer<CAxHandleAdapter>> moving; ///< taken hold of by the first step
};
