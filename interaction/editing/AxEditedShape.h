#pragma once
#include "scene/AxShapeKind.h"
#include "scene/EHandleOperation.h"

#include <osg/Vec3d>

#include <QPointer>

#include <vector>

class AxViewerParts;
class CAxHandleAdapter;

/// A map object as its handles and its undo steps deal with it. CAxHandleAdapter says more. GUI thread.
class AxEditedShape
{
public:
    virtual ~AxEditedShape() = default;

    virtual std::vector<osg::Vec3d>& GetAnchor() = 0;
    virtual AxShapeKind ShapeKind() const = 0;
    virtual EHandleOperation GetHandleOperation() const = 0;
    virtual bool IsLock() const = 0;
    virtual bool IsVisible() const = 0;
    virtual int GetEditIndex() const = 0;
    /// Null without a viewer.
    virtual AxViewerParts* Parts() const = 0;

    virtual void EndDrag(const osg::Vec3d& lngLatPos, const osg::Vec3d& worldCoordPos) = 0;
    virtual bool CancelHandle() = 0;
    /// Takes vertices and name from the record again.
    virtual void ReturnLastOperate() = 0;
    virtual void DrawNameLabel() = 0;
};

/// A map object that may go away meanwhile: false from then on, and for null.
class AxEditedShapeRef
{
public:
    explicit AxEditedShapeRef(CAxHandleAdapter* object);
    explicit operator bool() const { return !alive.isNull(); }
    AxEditedShape* operator->() const { return shape; }
    bool operator==(const AxEditedShapeRef& other) const { return shape == other.shape; }

private:
    QPointer<QObject> alive;
    AxEditedShape* shape = nullptr;
};
