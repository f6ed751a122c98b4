// The aircraft node: a light for it.
#include "mission/aircraft/CAxUavNode.h"

#include <osg/Light>
#include <osg/LightSource>

osg::ref_ptr<osg::MatrixTransform> CAxUavNode::CreateLightSource(int number, const osg::Vec3d& position,
                                                                 const osg::Vec3& direction)
{
    const osg::ref_ptr<osg::Light> light = new osg::Light;
    light->setLightNum(number);
    // In the middle of the transform; 1 for a lamp, 0 would be a sun.
    light->setPosition(osg::Vec4(0.0f, 0.0f, 0.0f, 1.0f));
    light->setDirection(direction);
    const osg::ref_ptr<osg::LightSource> source = new osg::LightSource;
    source->setLight(light);
    osg::ref_ptr<osg::MatrixTransform> placed = new osg::MatrixTransform(osg::Matrixd::translate(position));
    placed->addChild(source);
    return placed;
}
