#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <AxAlgorthm/CAxVector3D.h>

#include <QString>

class CAxHandleAdapter;
class CAxTaskPolygon;
class QObject;

/// The route of a task, as the map object to whose block it belongs deals with it. GUI thread.
class AXEARTHVIEWER_EXPORT AxTaskRoute
{
public:
    virtual ~AxTaskRoute() = default;

    /// The same as a Qt object, whose end can be heard of.
    virtual QObject& AsObject() = 0;
    /// The object to which it was added. One whose deletion was undone is another object than before.
    virtual void SetMapObject(CAxHandleAdapter* object) = 0;
    /// Of the task that it belongs to; unique within the block.
    virtual const QString& GetTaskID() const = 0;
    /// Where the aircraft takes off and lands: longitude, latitude, altitude; null until set.
    virtual const CAxVector3D& GetHomePoint() const = 0;
    virtual void SetHomePoint(const CAxVector3D& position) = 0;
    /// The corner at which the route begins, 0 to 3; -1 is none.
    virtual void SetEntryPoint(int index) = 0;
    /// Whether it is drawn so that it stands out among other routes.
    virtual void SetHighlighted(bool highlighted) = 0;
    /// Whether the aircraft glides down to its landing point.
    virtual void SetLandingMethod(bool downhill) = 0;
};

/// The route as the object deals with it; null for null.
AXEARTHVIEWER_EXPORT AxTaskRoute* AxRouteOf(CAxTaskPolygon* route);
