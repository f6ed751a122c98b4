#include "interaction/measure/CAxMeasurePlane.h"
#include "interaction/measure/AxMeasurePlaces.h"
#include "interaction/objects/AxHandleAdapterState.h"
#include "scene/AxScene.h"

#include <AxAlgorthm/AxAreaMeasure.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace {
AxMeasuredValues MeasureRectangle(const std::vector<osg::Vec3d>& points, const AxPathGround& ground,
                                  const std::atomic<bool>& isOff)
{
    if (points.size() != 4)
        return {};
    std::array<CAxVector3D, 4> corners;
    const std::vector<CAxVector3D> places = AxMeasurePlaces::Of(points);
    std::copy(places.begin(), places.end(), corners.begin());
    const AxPlaneFigures figures = AxMeasurePlane(corners, ground, &isOff);
    AxMeasuredValues measured;
    measured.step = figures.step;
    measured.whole = {{AxQuantity::Width, figures.width},
                      {AxQuantity::Depth, figures.depth},
                      {AxQuantity::Area, figures.area},
                      {AxQuantity::AreaOnPlane, figures.onPlane},
                      {AxQuantity::Dip, figures.dip},
                      {AxQuantity::Aspect, figures.aspect},
                      {AxQuantity::Roughness, figures.roughness}};
    return measured;
}

// To the east and to the north at a place, by its normal; at a pole along the meridians 90 and 180.
struct Axes
{
    osg::Vec3d east;
    osg::Vec3d north;
};

Axes AxesAt(const osg::Vec3d& normal)
{
    const double longitude = std::atan2(normal.y(), normal.x());
    const osg::Vec3d east(-std::sin(longitude), std::cos(longitude), 0.0);
    return {east, normal ^ east};
}
} // namespace

CAxMeasurePlane::CAxMeasurePlane(CAxEarthViewer* viewer, QObject* parent, AxMeasurements& measurements)
    : AxDraggedMeasure(viewer, parent, ToolMeasurePlane, measurements)
{
}

void CAxMeasurePlane::SetPlane(const osg::Vec3d& center, const osg::Matrixd& matrix)
{
    planeCenter = center;
    planeMatrix = matrix;
}

AxMeasureWork CAxMeasurePlane::Work() const
{
    return &MeasureRectangle;
}

QString CAxMeasurePlane::Hint() const
{
    return tr("click or let go: the opposite corner");
}

double CAxMeasurePlane::bearingAt(const osg::Vec3d& place) const
{
    constexpr double toEast = 90.0;
    const osg::Vec3d here = AxGlobe::NormalAt(place);
    osg::Vec3d up = planeCenter;
    const bool hasCenter = up.valid() && up.normalize() > 0.0;
    const Axes local = AxesAt(hasCenter ? up : here);
    const osg::Vec3d turned = osg::Matrixd::transform3x3(osg::Vec3d(1.0, 0.0, 0.0), planeMatrix);
    const osg::Vec3d along =
        local.east * turned.x() + local.north * turned.y() + (hasCenter ? up : here) * turned.z();
    const Axes atPlace = AxesAt(here);
    const double east = along * atPlace.east;
    const double north = along * atPlace.north;
    // Upright, or no rotation at all.
    if (!(std::hypot(east, north) > 1.0e-6 * along.length()))
        return toEast;
    return std::atan2(east, north) * 180.0 / AxGlobe::pi;
}

std::vector<osg::Vec3d> CAxMeasurePlane::rectangle(const osg::Vec3d& from, const osg::Vec3d& to) const
{
    QList<osg::Vec3d> corners;
    for (const CAxVector3D& corner :
         AxRectangleOver({from.x(), from.y(), from.z()}, {to.x(), to.y(), to.z()}, bearingAt(from)))
        corners += {corner.x(), corner.y(), corner.z()};
    if (d->viewer)
        d->viewer->Scene().GetElevations(corners);
    return {corners.begin(), corners.end()};
}

std::vector<osg::Vec3d> CAxMeasurePlane::Outline()
{
    const std::vector<osg::Vec3d> points = AxDraggedMeasure::Outline();
    return points.size() == 2 ? rectangle(points[0], points[1]) : points;
}

void CAxMeasurePlane::take(const Place& picked)
{
    const auto place = placeOf(picked.lngLat, picked.world);
    if (!place || d->anchors.size() >= 2 || !addPoint(*place))
        return;
    if (d->anchors.size() < 2) {
        showLive(*place);
        return;
    }
    const std::vector<osg::Vec3d> corners = rectangle(d->anchors[0], d->anchors[1]);
    const auto places = AxMeasurePlaces::Of(corners);
    // A line, along which both corners lie, is none.
    if (!(AxMeasureArea(places).area > 0.0)) {
        RemoveLastPoint();
        return;
    }
    d->anchors = corners;
    finish();
}

QVector<AxMeasureAdapter::Label> CAxMeasurePlane::Labels(const AxMeasurement& measurement) const
{
    if (measurement.points.empty())
        return {};
    return {
        {AxMeasurePlaces::Middle(measurement.points), AxMeasureText::Lines(measurement.values.whole), true}};
}
