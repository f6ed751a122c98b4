#include "analysis/zones/CAxAreaIntersectOperate.h"
#include "scene/base/AxLongitudes.h"
#include "scene/base/AxWgs84.h"

#include <OpenThreads/ScopedLock>
#include <OpenThreads/Thread>
#include <osg/Math>
#include <osgEarth/GeoMath>

#include <QtNumeric>

#include <algorithm>
#include <cmath>

namespace {
using Lock = OpenThreads::ScopedLock<OpenThreads::Mutex>;

using AxLongitudes::fullTurn;
// How far from the area's middle the middle of a zone may be to be tested.
constexpr double metresPerDegree = 113000.0;
constexpr double farthestMetres = 20000.0;

template <typename Points> QPainterPath PathThrough(const Points& points)
{
    QPainterPath path;
    bool isFirst = true;
    for (const auto& point : points) {
        if (isFirst)
            path.moveTo(point.x(), point.y());
        else
            path.lineTo(point.x(), point.y());
        isFirst = false;
    }
    return path;
}

double Distance(const QPointF& a, const QPointF& b)
{
    return osgEarth::GeoMath::distance(osg::DegreesToRadians(a.y()), osg::DegreesToRadians(a.x()),
                                       osg::DegreesToRadians(b.y()), osg::DegreesToRadians(b.x()),
                                       AxWgs84::semiMajorAxis);
}

/// Whether two places are surely farther apart, by their latitudes alone.
bool IsBeyond(const QPointF& a, const QPointF& b, double metres)
{
    constexpr double roundingMetres = 1.0;
    return osg::DegreesToRadians(std::abs(a.y() - b.y())) * AxWgs84::semiMajorAxis > metres + roundingMetres;
}
} // namespace

QPainterPath AxZoneOutline::Path() const
{
    return shape.IsEmpty() ? PathThrough(lifted) : PathThrough(shape.Ring());
}

bool AxZoneOutline::Contains(double longitude, double latitude) const
{
    const double centre = bounds.center().x();
    const QPointF place(longitude - fullTurn * std::round((longitude - centre) / fullTurn), latitude);
    return bounds.contains(place) && Path().contains(place);
}

std::vector<AxZoneOutline> AxZoneOutlines(const AxNoflyZones& zones)
{
    std::vector<AxZoneOutline> outlines;
    outlines.reserve(static_cast<std::size_t>(zones.zonePolygons.size()));
    for (auto zone = zones.zonePolygons.begin(); zone != zones.zonePolygons.end(); ++zone) {
        AxZoneOutline outline;
        outline.id = zone.key();
        const osgEarth::Bounds box = zone.value().Box();
        if (box.valid()) {
            outline.middle = QPointF(box.center().x(), box.center().y());
            outline.bounds = QRectF(QPointF(box.xMin(), box.yMin()), QPointF(box.xMax(), box.yMax()));
        } else {
            outline.middle = QPointF(qQNaN(), qQNaN());
        }
        const auto lifted = zones.zoneOutlines.find(zone.key());
        if (lifted != zones.zoneOutlines.end()) {
            outline.lifted = *lifted;
            outline.bounds = lifted->boundingRect();
        } else {
            outline.shape = zone.value();
        }
        outlines.push_back(outline);
    }
    return outlines;
}

void AxPendingWorkers::Set(int workers)
{
    const Lock lock(mutex);
    count = workers;
}

void AxPendingWorkers::Finish()
{
    const Lock lock(mutex);
    if (--count == 0)
        done.broadcast();
}

void AxPendingWorkers::Wait()
{
    const Lock lock(mutex);
    while (count > 0)
        done.wait(&mutex);
    count = 0;
}

CAxAreaIntersectOperate::CAxAreaIntersectOperate(const AxZoneOutline* firstZone,
                                                 const AxZoneOutline* endOfZones)
    : osg::Referenced(true), osg::Operation("AreaIntersect Operation", true), first(firstZone),
      end(endOfZones)
{
}

CAxAreaIntersectOperate::~CAxAreaIntersectOperate() = default;

void CAxAreaIntersectOperate::SetJob(const osgEarth::Symbology::Geometry& newArea, AxPendingWorkers& workers)
{
    area = &newArea;
    pendingWorkers = &workers;
    met.clear();
    pending = true;
}

void CAxAreaIntersectOperate::operator()(osg::Object*)
{
    if (!pending) {
        // An operation that is kept is run again and again until its thread ends.
        OpenThreads::Thread::YieldCurrentThread();
        return;
    }
    test();
    pending = false;
    pendingWorkers->Finish();
}

void CAxAreaIntersectOperate::test()
{
    const osgEarth::Bounds box = area->getBounds();
    if (!box.valid())
        return;
    const QPainterPath path = PathThrough(area->asVector());
    const QRectF areaBounds = path.boundingRect();
    const QPointF centre = areaBounds.center();
    const double radius = std::hypot(areaBounds.width(), areaBounds.height()) / 2.0;
    const double limit = radius * metresPerDegree + farthestMetres;
    for (const AxZoneOutline* it = first; it != end; ++it) {
        const AxZoneOutline& zone = *it;
        const QPointF middle = zone.bounds.center();
        if (IsBeyond(middle, centre, limit) || Distance(middle, centre) > limit)
            continue;
        // The area as it is counted on the zone's side of the antimeridian.
        const double turns = std::round((middle.x() - centre.x()) / fullTurn);
        if (zone.Path().intersects(turns == 0.0 ? path : path.translated(turns * fullTurn, 0.0)))
            met += zone.id;
    }
}
