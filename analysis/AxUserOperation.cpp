#include "analysis/AxUserOperation.h"

#include <OpenThreads/ScopedLock>
#include <osgViewer/View>

AxUserOperation::AxUserOperation(User_Operation userOperation)
    : osg::Referenced(true), osg::Operation("View Operation", false), kind(userOperation)
{
}

AxUserOperation::~AxUserOperation() = default;

void AxUserOperation::setUserPolygon(const osgEarth::Symbology::Polygon& userPolygon)
{
    polygon = new osgEarth::Symbology::Polygon(userPolygon);
}

void AxUserOperation::setUserMultiGeometry(const osgEarth::Symbology::MultiGeometry& userGeometry)
{
    multiGeometry = new osgEarth::Symbology::MultiGeometry(userGeometry);
}

void AxUserOperation::block()
{
    const OpenThreads::ScopedLock<OpenThreads::Mutex> lock(gate);
    while (!released)
        opened.wait(&gate);
}

void AxUserOperation::release()
{
    const OpenThreads::ScopedLock<OpenThreads::Mutex> lock(gate);
    released = true;
    opened.broadcast();
}

void AxUserOperation::operator()(osg::Object* object)
{
    if (!dynamic_cast<osgViewer::View*>(object))
        return;
    release();
}
