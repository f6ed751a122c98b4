#include "sky/SkyBackground.h"

#include <osg/LightSource>
#include <osgEarth/MapNode>
#include <osgEarth/SpatialReference>
#include <osgEarthUtil/Sky>

namespace osgEarth::Util {
struct SkyNode::Parts
{
    osg::ref_ptr<Ephemeris> ephemeris = new Ephemeris;
    DateTime dateTime;
    osg::StateAttribute::OverrideValue lighting = osg::StateAttribute::ON;
    osg::Vec4f minimumAmbient{0.45f, 0.45f, 0.45f, 1.0f};
    osg::ref_ptr<osg::LightSource> lightSource = new osg::LightSource;
    osg::ref_ptr<osg::Group> background = makeBackground();
    osg::ref_ptr<osg::MatrixTransform> stars;
    osg::ref_ptr<osg::MatrixTransform> sun = makeSun();
    osg::ref_ptr<osg::MatrixTransform> moon = makeMoon();
    osg::ref_ptr<osg::Node> atmosphere;
};

namespace {
void setVisible(osg::Node& node, bool visible)
{
    node.setNodeMask(visible ? ~0u : 0u);
}

bool isVisible(const osg::Node& node)
{
    return node.getNodeMask() != 0;
}
} // namespace

SkyNode* SkyNode::create(MapNode* mapNode)
{
    return new SkyNode(mapNode);
}

SkyNode::SkyNode(MapNode* mapNode) : _parts(new Parts)
{
    osg::ref_ptr<const osg::EllipsoidModel> ellipsoid = new osg::EllipsoidModel;
    if (mapNode && mapNode->getMapSRS())
        ellipsoid = mapNode->getMapSRS()->getEllipsoid();
    _parts->stars = makeStars(*ellipsoid);
    _parts->atmosphere = makeAtmosphere(*ellipsoid);
    for (osg::Node* node : {static_cast<osg::Node*>(_parts->stars), static_cast<osg::Node*>(_parts->sun),
                            static_cast<osg::Node*>(_parts->moon), _parts->atmosphere.get()})
        _parts->background->addChild(node);

    osg::Light* light = _parts->lightSource->getLight();
    light->setLightNum(0);
    light->setAmbient(_parts->minimumAmbient);
    light->setDiffuse({0.65f, 0.65f, 0.62f, 1.0f});
    light->setSpecular({0.4f, 0.4f, 0.4f, 1.0f});
    _parts->lightSource->setCullingActive(false);
    getOrCreateStateSet()->setMode(GL_LIGHT0, osg::StateAttribute::ON);

    // The background fills the window also when no child is in view.
    setCullingActive(false);
    setLighting(osg::StateAttribute::ON);
    placeBodies();
}

SkyNode::~SkyNode() = default;

void SkyNode::setEphemeris(Ephemeris* ephemeris)
{
    _parts->ephemeris = ephemeris ? ephemeris : new Ephemeris;
    placeBodies();
}

const Ephemeris* SkyNode::getEphemeris() const
{
    return _parts->ephemeris.get();
}

void SkyNode::setDateTime(const DateTime& dt)
{
    _parts->dateTime = dt;
    placeBodies();
}

const DateTime& SkyNode::getDateTime() const
{
    return _parts->dateTime;
}

void SkyNode::placeBodies()
{
    const osg::Vec3d zAxis(0, 0, 1);
    osg::Vec3d sun = _parts->ephemeris->getSunPositionECEF(_parts->dateTime);
    osg::Vec3d moon = _parts->ephemeris->getMoonPositionECEF(_parts->dateTime);
    if (sun.normalize() > 0.0) {
        _parts->sun->setMatrix(osg::Matrixd::rotate(zAxis, sun));
        _parts->lightSource->getLight()->setPosition(osg::Vec4d(sun, 0.0));
        _parts->lightSource->getLight()->setDirection(-sun);
    }
    if (moon.normalize() > 0.0)
        _parts->moon->setMatrix(osg::Matrixd::rotate(zAxis, moon));
    _parts->stars->setMatrix(osg::Matrixd::rotate(-Ephemeris::siderealAngle(_parts->dateTime), zAxis));
}

void SkyNode::setLighting(osg::StateAttribute::OverrideValue value)
{
    _parts->lighting = value;
    getOrCreateStateSet()->setMode(GL_LIGHTING, value | osg::StateAttribute::PROTECTED);
}

osg::StateAttribute::OverrideValue SkyNode::getLighting() const
{
    return _parts->lighting;
}

void SkyNode::setSunVisible(bool value)
{
    setVisible(*_parts->sun, value);
}

bool SkyNode::getSunVisible() const
{
    return isVisible(*_parts->sun);
}

void SkyNode::setMoonVisible(bool value)
{
    setVisible(*_parts->moon, value);
}

bool SkyNode::getMoonVisible() const
{
    return isVisible(*_parts->moon);
}

void SkyNode::setStarsVisible(bool value)
{
    setVisible(*_parts->stars, value);
}

bool SkyNode::getStarsVisible() const
{
    return isVisible(*_parts->stars);
}

void SkyNode::setAtmosphereVisible(bool value)
{
    setVisible(*_parts->atmosphere, value);
}

bool SkyNode::getAtmosphereVisible() const
{
    return isVisible(*_parts->atmosphere);
}

osg::Light* SkyNode::getSunLight()
{
    return _parts->lightSource->getLight();
}

const osg::Light* SkyNode::getSunLight() const
{
    return _parts->lightSource->getLight();
}

void SkyNode::setMinimumAmbient(const osg::Vec4f& ambient)
{
    _parts->minimumAmbient = ambient;
    getSunLight()->setAmbient(ambient);
}

const osg::Vec4f& SkyNode::getMinimumAmbient() const
{
    return _parts->minimumAmbient;
}

void SkyNode::attach(osg::View* view, int lightNum)
{
    if (!view || lightNum < 0)
        return;
    osg::Light* light = getSunLight();
    getOrCreateStateSet()->removeMode(GL_LIGHT0 + light->getLightNum());
    light->setLightNum(lightNum);
    getOrCreateStateSet()->setMode(GL_LIGHT0 + lightNum, osg::StateAttribute::ON);
    view->setLightingMode(osg::View::SKY_LIGHT);
    view->setLight(light);
}

void SkyNode::traverse(osg::NodeVisitor& nv)
{
    // Only drawing sees the background: bounds, picks and searches do not.
    if (nv.getVisitorType() == osg::NodeVisitor::CULL_VISITOR) {
        _parts->lightSource->accept(nv);
        _parts->background->accept(nv);
    }
    osg::Group::traverse(nv);
}

void SkyNode::resizeGLObjectBuffers(unsigned int maxSize)
{
    _parts->background->resizeGLObjectBuffers(maxSize);
    osg::Group::resizeGLObjectBuffers(maxSize);
}

void SkyNode::releaseGLObjects(osg::State* state) const
{
    _parts->background->releaseGLObjects(state);
    osg::Group::releaseGLObjects(state);
}
} // namespace osgEarth::Util
