#include "interaction/measure/CAxMeasureAltitudeHandler.h"
#include "interaction/objects/AxHandleAdapterState.h"
#include "scene/AxScene.h"
#include "scene/base/AxGlobePoint.h"
#include "scene/shape/AxDrawnGround.h"

#include <osgEarth/MapNode>

#include <algorithm>
#include <cmath>

namespace {
CAxVector3D PlaceAt(const osg::Vec3d& point, double altitude)
{
    return {point.x(), point.y(), altitude};
}

AxMeasuredValues MeasureHeights(std::vector<osg::Vec3d> points, const std::vector<bool>& ofGround,
                                const AxPathGround& ground)
{
    if (points.size() < 2)
        return {};
    for (std::size_t i = 0; ground.height && i < points.size(); ++i)
        if (i >= ofGround.size() || ofGround[i])
            points[i].z() = ground.height(points[i].x(), points[i].y()).value_or(AxPathLeg::unknown);
    const CAxVector3D from = PlaceAt(points.front(), points.front().z());
    const CAxVector3D to = PlaceAt(points.back(), points.back().z());
    const AxPathLeg leg = AxMeasurePath({from, to}).total;
    AxMeasuredValues measured;
    measured.whole = {{AxQuantity::Rise, leg.rise},
                      {AxQuantity::Length, leg.length},
                      {AxQuantity::Slant, AxSlantDistance(from, to)},
                      {AxQuantity::Slope, leg.Slope()},
                      {AxQuantity::Bearing, leg.bearing}};
    return measured;
}
} // namespace

CAxMeasureAltitudeHandler::CAxMeasureAltitudeHandler(CAxEarthViewer* viewer, QObject* parent,
                                                     AxMeasurements& measurements)
    : AxDraggedMeasure(viewer, parent, ToolMeasureAltitude, measurements)
{
}

CAxMeasureAltitudeHandler::~CAxMeasureAltitudeHandler() = default;

AxMeasureWork CAxMeasureAltitudeHandler::Work() const
{
    return [flags = ofGround](const std::vector<osg::Vec3d>& points, const AxPathGround& ground,
                              const std::atomic<bool>&) { return MeasureHeights(points, flags, ground); };
}

QString CAxMeasureAltitudeHandler::Hint() const
{
    return tr("click or let go: the second place");
}

void CAxMeasureAltitudeHandler::take(const Place& picked)
{
    const auto place = placeOf(picked.lngLat, picked.world);
    if (!place || d->anchors.size() >= 2)
        return;
    ofGround.resize(d->anchors.size());
    ofGround.push_back(isOfGround(picked.lngLat, picked.world));
    if (!addPoint(*place)) {
        ofGround.pop_back();
        return;
    }
    followGround();
    if (d->anchors.size() == 2)
        finish();
    else
        showLive(*place);
}

// The ground

void CAxMeasureAltitudeHandler::followGround()
{
    osgEarth::MapNode* const map = d->viewer ? d->viewer->Scene().MapNode() : nullptr;
    if (!map)
        return;
    if (!clamp)
        clamp = std::make_unique<AxShapeClamp>(map->getTerrain(), [this] { return layOnGround(); });
    std::vector<osg::Vec3d> normals;
    std::transform(d->anchors.begin(), d->anchors.end(), std::back_inserter(normals), AxGlobe::NormalAt);
    clamp->SetExtent(normals);
}

bool CAxMeasureAltitudeHandler::layOnGround()
{
    osgEarth::MapNode* const map = d->viewer ? d->viewer->Scene().MapNode() : nullptr;
    if (!map)
        return true;
    for (std::size_t i = 0; i < d->anchors.size(); ++i)
        if (i < ofGround.size() && ofGround[i])
            if (const auto loaded = AxLoadedHeight(*map, d->anchors[i].x(), d->anchors[i].y()))
                d->anchors[i].z() = *loaded;
    updateAdapter();
    return true;
}

void CAxMeasureAltitudeHandler::drawShape()
{
    const std::vector<osg::Vec3d> points = Outline();
    if (points.size() < 2)
        return;
    const bool isUp = points.back().z() >= points.front().z();
    const osg::Vec3d& low = isUp ? points.front() : points.back();
    const osg::Vec3d& high = isUp ? points.back() : points.front();
    // Level along the geodesic, upright, and straight back.
    constexpr std::size_t parts = 48;
    constexpr double leastPart = 1.0; // metres
    std::vector<osg::Vec3d> line;
    for (const AxPathPlace& place : AxPlacesAlong({PlaceAt(low, 0.0), PlaceAt(high, 0.0)}, leastPart, parts))
        line.emplace_back(place.longitude, place.latitude, low.z());
    line.push_back(high);
    line.push_back(low);
    drawInAir(line);
}
