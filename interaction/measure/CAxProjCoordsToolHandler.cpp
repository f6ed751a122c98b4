#include "interaction/measure/CAxProjCoordsToolHandler.h"
#include "interaction/objects/AxHandleAdapterState.h"
#include "scene/AxScene.h"
#include "scene/AxToolInHand.h"
#include "scene/base/AxLongitudes.h"

#include <cmath>

namespace {
AxMeasuredValues MeasurePlace(const std::vector<osg::Vec3d>& points, const AxPathGround& ground,
                              const AxCoordinateSystem& system)
{
    if (points.empty())
        return {};
    const osg::Vec3d& place = points.back();
    double easting = AxPathLeg::unknown;
    double northing = AxPathLeg::unknown;
    if (system.IsOfProj()) {
        const AxCoordinateSystem::Point point = system.FromPlace(place.y(), place.x());
        if (point.reach != AxCoordinateSystem::Reach::Outside) {
            easting = point.values[0];
            northing = point.values[1];
        }
    } else if (system.Form() == AxCoordinateText::Form::Utm) {
        if (const auto grid = AxCoordinateText::ToGrid(place.y(), place.x())) {
            easting = grid->easting;
            northing = grid->northing;
        }
    }
    AxMeasuredValues measured;
    measured.system = system.IsOfProj() ? system.Name() : system.Show(place.y(), place.x()).system;
    measured.whole = {{AxQuantity::Longitude, AxLongitudes::Normalized(place.x())},
                      {AxQuantity::Latitude, place.y()},
                      {AxQuantity::Easting, easting},
                      {AxQuantity::Northing, northing},
                      {AxQuantity::GroundHeight,
                       ground.height ? ground.height(place.x(), place.y()).value_or(AxPathLeg::unknown)
                                     : AxPathLeg::unknown}};
    return measured;
}
} // namespace

CAxProjCoordsToolHandler::CAxProjCoordsToolHandler(CAxEarthViewer* viewer, QObject* parent,
                                                   AxMeasurements& measurements)
    : AxMeasureAdapter(viewer, parent, ToolProjCoords, measurements)
{
}

AxMeasureWork CAxProjCoordsToolHandler::Work() const
{
    return [taken = system](const std::vector<osg::Vec3d>& points, const AxPathGround& ground,
                            const std::atomic<bool>&) { return MeasurePlace(points, ground, taken); };
}

QString CAxProjCoordsToolHandler::textAt(const osg::Vec3d& place, double height) const
{
    const AxCoordinateSystem::Shown shown = system.Show(place.y(), place.x());
    QStringList lines;
    for (const std::size_t axis : {0U, 1U})
        if (!shown.values[axis].isEmpty())
            lines += tr("%1: %2").arg(shown.names[axis], shown.values[axis]);
    if (std::isfinite(height))
        lines += tr("height: %1").arg(AxMeasureText::Value({AxQuantity::GroundHeight, height}));
    if (!shown.system.isEmpty())
        lines += shown.system;
    return lines.join(QLatin1Char('\n'));
}

void CAxProjCoordsToolHandler::slotMoving(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    if (d->operation != OperationDrawing || !d->viewer)
        return;
    const auto place = placeOf(lngLatPos, worldCoordPos);
    if (!place) {
        d->cursorLabel.Hide();
        return;
    }
    system = d->viewer->Scene().CoordinateSystem();
    d->cursorLabel.Show(d->viewer->Scene(), d->style, *place, textAt(*place, place->z()));
}

void CAxProjCoordsToolHandler::slotPicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    const auto place = d->operation == OperationDrawing ? placeOf(lngLatPos, worldCoordPos) : std::nullopt;
    if (!place || !d->viewer)
        return;
    system = d->viewer->Scene().CoordinateSystem();
    addPoint(*place);
    finish();
}

bool CAxProjCoordsToolHandler::CancelHandle()
{
    if (d->operation != OperationDrawing || !d->viewer)
        return false;
    const QPointer<AxViewerParts> viewer = d->viewer;
    AxMeasureAdapter::CancelHandle();
    if (viewer && viewer->Tools().Tool() == ToolProjCoords)
        viewer->Tools().TakeUp(ToolNavigate);
    return true;
}

QVector<AxMeasureAdapter::Label> CAxProjCoordsToolHandler::Labels(const AxMeasurement& measurement) const
{
    if (measurement.points.empty())
        return {};
    return {{measurement.points.back(),
             textAt(measurement.points.back(), measurement.values.Of(AxQuantity::GroundHeight)), true}};
}
