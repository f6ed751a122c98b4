#include "mission/routes/CAxTaskPolygon.h"

#include <AxAlgorthm/AxUniqueID.h>

CAxTaskPolygon::CAxTaskPolygon(QObject* parent) : QObject(parent), taskID(CreateUniqueID()) {}

CAxTaskPolygon::~CAxTaskPolygon() = default;

AxTaskRoute* AxRouteOf(CAxTaskPolygon* route)
{
    return route;
}
