#pragma once
#include <AxAlgorthm/CAxVector3D.h>

#include <QString>

class CAxTaskPolygon;

/// The route of a task, as the map object to whose block it belongs deals with it. GUI thread.
class AxTaskRoute
{
public:
    virtual ~AxTaskRoute() = default;

    virtual const QString& GetTaskID() const = 0;
    /// Where the aircraft takes off and lands: longitude, latitude, altitude; null until set.
    virtual const CAxVector3D& GetHomePoint() const = 0;
    virtual void SetHomePoint(const CAxVector3D& position) = 0;
    virtual void SetEntryPoint(int index) = 0;
    virtual void SetLandingMethod(bool downhill) = 0;
};

/// Null for null.
AxTaskRoute* AxRouteOf(CAxTaskPolygon* route);
