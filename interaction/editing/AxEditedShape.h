#pragma once
#include "scene/AxShapeKind.h"
#include "scene/base/AxEarthViewerExport.h"
#include "scene/EHandleOperation.h"

#include <osg/Vec3d>

#include <QPointer>

#include <vector>

class AxViewerParts;
class CAxHandleAdapter;

/// A handle of a map object that is none of a vertex.
struct AxFurtherHandle
{
    /// What dragging it does to the object.
    enum class Does
    {
        Resizes, ///< shown as a box
        Turns,   ///< shown as a ball
    };
    osg::Vec3d place;          ///< degrees, degrees, metres
    Does does = Does::Resizes; ///< also tells how it looks
};

/// A map object as its handles and its undo steps deal with it. CAxHandleAdapter says more. GUI thread.
class AXEARTHVIEWER_EXPORT AxEditedShape
{
public:
    virtual ~AxEditedShape() = default;

    /// Its vertices: longitude and latitude in degrees, altitude in metres. Who changes them calls for the
    /// drawing.
    virtual std::vector<osg::Vec3d>& GetAnchor() = 0;
    /// What the vertices make; the same for all objects of a kind.
    virtual AxShapeKind ShapeKind() const = 0;
    /// The handles beside those of its vertices, where they stand now. A drag of one is a drag of a vertex
    /// to it, whose index goes on behind the last vertex; what becomes of it is the object's business.
    virtual std::vector<AxFurtherHandle> FurtherHandles() { return {}; }
    /// What is going on with it. A locked object is neither moved nor edited.
    virtual EHandleOperation GetHandleOperation() const = 0;
    virtual bool IsLock() const = 0;
    /// Nor is one whose routes are on the map.
    virtual bool HasRoutes() const = 0;
    virtual bool IsVisible() const = 0;
    /// The vertex that is being dragged, -1 when none is.
    virtual int GetEditIndex() const = 0;
    /// Null without a viewer.
    virtual AxViewerParts* Parts() const = 0;

    /// Ends the drag of a vertex or of the object where the mouse is: degrees, degrees, metres, and
    /// geocentric metres. The shape is judged, then kept or taken back.
    virtual void EndDrag(const osg::Vec3d& lngLatPos, const osg::Vec3d& worldCoordPos) = 0;
    /// Gives up what is going on; true when there was something to give up.
    virtual bool CancelHandle() = 0;
    /// Takes vertices and name from the record again.
    virtual void ReturnLastOperate() = 0;
    /// Draws the name of the record.
    virtual void DrawNameLabel() = 0;
};

/// A map object that may go away meanwhile: false from then on, and for null.
class AXEARTHVIEWER_EXPORT AxEditedShapeRef
{
public:
    /// It does not own the object. As a truth value: whether the object is there; only then -> may be used.
    explicit AxEditedShapeRef(CAxHandleAdapter* object);
    explicit operator bool() const { return !alive.isNull(); }
    AxEditedShape* operator->() const { return shape; }
    bool operator==(const AxEditedShapeRef& other) const { return shape == other.shape; }

private:
    QPointer<QObject> alive;
    AxEditedShape* shape = nullptr;
};
