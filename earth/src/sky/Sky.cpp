#include "sky/SiderealAngle.h"
#include "sky/SkyBackground.h"

#include <osg/LightSource>
#include <osgEarth/MapNode>
#include <osgEarth/SpatialReference>
#include <osgEarthUtil/Sky>

namespace osgEarth::Util {
namespace {
/// A sky around the globe, drawn by shaders of its own.
class GlobeSky : public SkyNode
{
public:
    explicit GlobeSky(MapNode* mapNode)
    {
        osg::ref_ptr<const osg::EllipsoidModel> ellipsoid = new osg::EllipsoidModel;
        if (mapNode && mapNode->getMapSRS())
            ellipsoid = mapNode->getMapSRS()->getEllipsoid();
        _stars = makeStars(*ellipsoid);
        _atmosphere = makeAtmosphere(*ellipsoid);
        for (osg::Node* node : {static_cast<osg::Node*>(_stars), static_cast<osg::Node*>(_sun),
                                static_cast<osg::Node*>(_moon), _atmosphere.get()})
            _background->addChild(node);

        osg::Light* light = _lightSource->getLight();
        light->setLightNum(0);
        light->setAmbient(getMinimumAmbient());
        light->setDiffuse({0.65f, 0.65f, 0.62f, 1.0f});
        light->setSpecular({0.4f, 0.4f, 0.4f, 1.0f});
        _lightSource->setCullingActive(false);
        getOrCreateStateSet()->setMode(GL_LIGHT0, osg::StateAttribute::ON);

        // The background fills the window also when no child is in view.
        setCullingActive(false);
        placeBodies();
    }

    osg::Light* getSunLight() override { return _lightSource->getLight(); }

    using SkyNode::attach;
    void attach(osg::View* view, int lightNum) override
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

    void traverse(osg::NodeVisitor& nv) override
    {
        // Only drawing sees the background: bounds, picks and searches do not.
        if (nv.getVisitorType() == osg::NodeVisitor::CULL_VISITOR) {
            _lightSource->accept(nv);
            _background->accept(nv);
        }
        SkyNode::traverse(nv);
    }

    void resizeGLObjectBuffers(unsigned int maxSize) override
    {
        _background->resizeGLObjectBuffers(maxSize);
        SkyNode::resizeGLObjectBuffers(maxSize);
    }

    void releaseGLObjects(osg::State* state) const override
    {
        _background->releaseGLObjects(state);
        SkyNode::releaseGLObjects(state);
    }

protected:
    ~GlobeSky() override = default;

    void onSetEphemeris() override { placeBodies(); }
    void onSetDateTime() override { placeBodies(); }
    void onSetSunVisible() override { show(*_sun, getSunVisible()); }
    void onSetMoonVisible() override { show(*_moon, getMoonVisible()); }
    void onSetStarsVisible() override { show(*_stars, getStarsVisible()); }
    void onSetAtmosphereVisible() override { show(*_atmosphere, getAtmosphereVisible()); }
    void onSetMinimumAmbient() override { getSunLight()->setAmbient(getMinimumAmbient()); }

private:
    static void show(osg::Node& node, bool visible) { node.setNodeMask(visible ? ~0u : 0u); }

    void placeBodies()
    {
        const osg::Vec3d zAxis(0, 0, 1);
        osg::Vec3d sun = getEphemeris()->getSunPositionECEF(getDateTime());
        osg::Vec3d moon = getEphemeris()->getMoonPositionECEF(getDateTime());
        if (sun.normalize() > 0.0) {
            _sun->setMatrix(osg::Matrixd::rotate(zAxis, sun));
            _lightSource->getLight()->setPosition(osg::Vec4d(sun, 0.0));
            _lightSource->getLight()->setDirection(-sun);
        }
        if (moon.normalize() > 0.0)
            _moon->setMatrix(osg::Matrixd::rotate(zAxis, moon));
        _stars->setMatrix(osg::Matrixd::rotate(-siderealAngle(getDateTime()), zAxis));
    }

    osg::ref_ptr<osg::LightSource> _lightSource = new osg::LightSource;
    osg::ref_ptr<osg::Group> _background = makeBackground();
    osg::ref_ptr<osg::MatrixTransform> _stars;
    osg::ref_ptr<osg::MatrixTransform> _sun = makeSun();
    osg::ref_ptr<osg::MatrixTransform> _moon = makeMoon();
    osg::ref_ptr<osg::Node> _atmosphere;
};
} // namespace

SkyNode* SkyNode::create(MapNode* mapNode)
{
    return new GlobeSky(mapNode);
}

SkyNode::SkyNode() : _ephemeris(new Ephemeris)
{
    setLighting(osg::StateAttribute::ON);
}

SkyNode::~SkyNode() = default;

void SkyNode::setEphemeris(Ephemeris* ephemeris)
{
    _ephemeris = ephemeris ? ephemeris : new Ephemeris;
    onSetEphemeris();
}

void SkyNode::setDateTime(const DateTime& dt)
{
    _dateTime = dt;
    onSetDateTime();
}

void SkyNode::setLighting(osg::StateAttribute::OverrideValue value)
{
    _lighting = value;
    getOrCreateStateSet()->setMode(GL_LIGHTING, value | osg::StateAttribute::PROTECTED);
}

void SkyNode::setSunVisible(bool value)
{
    _sunVisible = value;
    onSetSunVisible();
}

void SkyNode::setMoonVisible(bool value)
{
    _moonVisible = value;
    onSetMoonVisible();
}

void SkyNode::setStarsVisible(bool value)
{
    _starsVisible = value;
    onSetStarsVisible();
}

void SkyNode::setAtmosphereVisible(bool value)
{
    _atmosphereVisible = value;
    onSetAtmosphereVisible();
}

void SkyNode::setMinimumAmbient(const osg::Vec4f& ambient)
{
    _minimumAmbient = ambient;
    onSetMinimumAmbient();
}
} // namespace osgEarth::Util
