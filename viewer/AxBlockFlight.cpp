#include "viewer/AxBlockFlight.h"
#include "interaction/input/CAxEarthManipulator.h"
#include "interaction/objects/AxBlockView.h"
#include "interaction/objects/CAxHandleAdapter.h"
#include "viewer/AxFrame.h"
#include "viewer/AxViewerPrivate.h"

#include <cmath>
#include <utility>

namespace {
constexpr double correctionSeconds = 0.5;
// Of the distance: what is nobody's move, and what is worth a correction.
constexpr double sameShare = 0.002;
constexpr double correctedShare = 0.01;

double EyeHeight(const osgEarth::Viewpoint& view)
{
    return view.focalPoint()->z() + view.getRange();
}
} // namespace

std::vector<osg::Vec3d> AxBlockFlight::places(const QStringList& ids) const
{
    QList<osg::Vec3d> all;
    for (const QString& id : ids)
        if (CAxHandleAdapter* object = viewer.objects.Find(id))
            for (const osg::Vec3d& place : object->Outline())
                all += place;
    viewer.GetElevations(all);
    return {all.cbegin(), all.cend()};
}

osgEarth::Viewpoint AxBlockFlight::over(const QStringList& ids, double margin) const
{
    const osg::Matrixd& projection = viewer.viewer->getCamera()->getProjectionMatrix();
    return AxViewpointOver(places(ids), {1.0 / projection(0, 0), 1.0 / projection(1, 1)}, margin);
}

bool AxBlockFlight::To(const QStringList& ids, double margin, double seconds)
{
    const osgEarth::Viewpoint view = over(ids, margin);
    if (!view.focalPoint().isSet())
        return false;
    viewer.aircraft.SetView(CAxEarthViewer::AircraftViewFree);
    viewer.manipulator->setViewpoint(view, seconds);
    last = Wanted{ids, margin, view};
    return true;
}

bool AxBlockFlight::isThere(const osgEarth::Viewpoint& wantedView) const
{
    const osgEarth::Viewpoint now = viewer.manipulator->getViewpoint();
    if (!now.isValid() || !now.focalPoint().isSet() || viewer.manipulator->isTethering())
        return false;
    osg::Vec3d nowAt;
    osg::Vec3d wantedAt;
    now.focalPoint()->toWorld(nowAt);
    wantedView.focalPoint()->toWorld(wantedAt);
    // The manipulator may look at the ground in place of a point over it.
    const double range = wantedView.getRange();
    return std::abs(EyeHeight(now) - EyeHeight(wantedView)) < sameShare * range &&
           (nowAt ^ wantedAt).length() / wantedAt.length() < sameShare * range;
}

void AxBlockFlight::Look()
{
    if (!last || viewer.manipulator->isSettingViewpoint())
        return;
    if (!isThere(last->viewpoint)) {
        last.reset();
        return;
    }
    if (!viewer.frame->IsPictureComplete())
        return;
    const Wanted wanted = *std::exchange(last, std::nullopt);
    const osgEarth::Viewpoint view = over(wanted.ids, wanted.margin);
    if (view.focalPoint().isSet() && std::abs(EyeHeight(view) - EyeHeight(wanted.viewpoint)) >
                                         correctedShare * wanted.viewpoint.getRange())
        viewer.manipulator->setViewpoint(view, correctionSeconds);
}
