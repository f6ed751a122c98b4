#include "interaction/objects/AxLandingReach.h"
#include "interaction/objects/CAxHandleAdapter.h"
#include "scene/base/AxNotice.h"

#include <osg/Math>
#include <osgEarth/GeoMath>

#include <QCoreApplication>

namespace {
QString LandingText(const char* text)
{
    return QCoreApplication::translate("CAxEarthViewer", text);
}
} // namespace

bool AxIsInLandingReach(CAxHandleAdapter& object, double longitude, double latitude)
{
    const CAxVector3D centre = object.GetGravityLatLng(); // latitude first
    return osgEarth::GeoMath::distance(osg::DegreesToRadians(centre.x()), osg::DegreesToRadians(centre.y()),
                                       osg::DegreesToRadians(latitude),
                                       osg::DegreesToRadians(longitude)) <= axLandingReach;
}

bool AxAcceptsLanding(CAxHandleAdapter& object, double longitude, double latitude, QWidget* parent)
{
    if (AxIsInLandingReach(object, longitude, latitude))
        return true;
    AxShowClosableNotice(
        parent, LandingText(QT_TRANSLATE_NOOP("CAxEarthViewer", "Route Information")),
        LandingText(QT_TRANSLATE_NOOP(
            "CAxEarthViewer", "Please select the appropriate landing point because the landing point is too "
                              "far from the job area.")));
    return false;
}

bool AxHasLanding(const CAxHandleAdapter* object)
{
    return object && object->GetBlockType() != CAxBlock::MarkPointBlock;
}
