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
    /// A push: what was given up before does not count any more.
    void Begin() { moveCancelled = false; }
    /// A step to the place under the cursor; false when there is nothing that may be moved.
    bool ProcessMoveGeom(const osg::Vec3d& lngLatPos);
    /// The release. Several objects are judged and committed together; a single one ends by `releaseSingle`.
    void End(const std::function<void()>& releaseSingle);
    /// Ends the move without a commit; the rest of the drag does nothing.
    void Cancel();
    /// Nothing is being moved, whatever was.
    void Forget() { moveIdle = true; }

private:
    bool MoveSingleBlock(const osg::Vec3d& lngLatPos);
    bool MoveMultiBlock(const osg::Vec3d& lngLatPos, const QList<CAxHandleAdapter*>& adapters);
    osg::Vec3d moveAdapter(CAxHandleAdapter& adapter, const osg::Vec3d& lngLatPos, bool isFirstStep);
    void endSeveral();

    const QPointer<AxViewerParts> parts; ///< may go while a box is open
    const Tell tellMoved;
    bool moveIdle = true;
    bool moveCancelled = false;
};
