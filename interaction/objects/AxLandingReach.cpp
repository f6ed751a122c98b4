#include "interaction/objects/AxLandingReach.h"
#include "interaction/objects/CAxHandleAdapter.h"

#include <osg/Math>
#include <osgEarth/GeoMath>

bool AxIsInLandingReach(CAxHandleAdapter& object, double longitude, double latitude)
{
    const CAxVector3D centre = object.GetGravityLatLng(); // latitude first
    return osgEarth::GeoMath::distance(osg::DegreesToRadians(centre.x()), osg::DegreesToRadians(centre.y()),
                                       osg::DegreesToRadians(latitude),
                                       osg::DegreesToRadians(longitude)) <= axLandingReach;
}
