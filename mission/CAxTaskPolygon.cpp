#include "mission/CAxTaskPolygon.h"

#include <AxAlgorthm/AxUniqueID.h>

CAxTaskPolygon::CAxTaskPolygon(QObject* parent) : QObject(parent), taskID(CreateUniqueID()) {}

CAxTaskPolygon::~CAxTaskPolygon() = default;
