#include "host/CameraRest.h"
#include "interaction/CAxEarthManipulator.h"
#include "viewer/CAxEarthViewer.h"

namespace {
// Two looks with the same view mean that the camera rests.
constexpr int lookEveryMs = 50;

bool IsSame(const osgEarth::Viewpoint& left, const osgEarth::Viewpoint& right)
{
    return left.isValid() && right.isValid() && left.focalPoint()->vec3d() == right.focalPoint()->vec3d() &&
           left.getHeading() == right.getHeading() && left.getPitch() == right.getPitch() &&
           left.getRange() == right.getRange();
}
} // namespace

CameraRest::CameraRest(const CAxEarthViewer* earthViewer, QObject* parent)
    : QObject(parent), viewer(earthViewer)
{
    clock.setInterval(lookEveryMs);
    connect(&clock, &QTimer::timeout, this, &CameraRest::Look);
}

void CameraRest::Start()
{
    Look();
    clock.start();
}

void CameraRest::Look()
{
    const osgEarth::Viewpoint view = viewer->getManipulator()->getViewpoint();
    if (!view.isValid())
        return;
    if (IsSame(view, seen) && !IsSame(view, told)) {
        told = view;
        emit Rested(view);
    }
    seen = view;
}
