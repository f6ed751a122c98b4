#include <osgEarth/Viewpoint>

namespace osgEarth {
Viewpoint::Viewpoint()
    : _heading(Angle(0.0)), _pitch(Angle(-30.0)), _range(Distance(1.0)), _posOffset(osg::Vec3d())
{
}

Viewpoint::Viewpoint(const char* name, double lon, double lat, double z, double heading, double pitch,
                     double range)
    : Viewpoint()
{
    if (name)
        _name = std::string(name);
    _point = GeoPoint(SpatialReference::get("wgs84"), lon, lat, z, ALTMODE_ABSOLUTE);
    setHeading(heading);
    setPitch(pitch);
    setRange(range);
}

Viewpoint::Viewpoint(const Config& conf) : Viewpoint()
{
    conf.getIfSet("name", _name);
    conf.getIfSet("heading", _heading);
    conf.getIfSet("pitch", _pitch);
    conf.getIfSet("range", _range);
    const bool geographic = conf.hasValue("long") || conf.hasValue("lat");
    if (geographic || conf.hasValue("x")) {
        const std::string srs = conf.hasValue("srs") ? conf.value("srs") : std::string("wgs84");
        const double x = conf.value<double>(geographic ? "long" : "x", 0.0);
        const double y = conf.value<double>(geographic ? "lat" : "y", 0.0);
        const std::string z = conf.hasValue("height") ? "height" : conf.hasValue("alt") ? "alt" : "z";
        GeoPoint point(SpatialReference::get(srs), x, y, conf.value<double>(z, 0.0), ALTMODE_ABSOLUTE);
        if (point.isValid())
            _point = point;
    }
    if (conf.hasValue("x_offset") || conf.hasValue("y_offset") || conf.hasValue("z_offset"))
        _posOffset = osg::Vec3d(conf.value<double>("x_offset", 0.0), conf.value<double>("y_offset", 0.0),
                                conf.value<double>("z_offset", 0.0));
}

bool Viewpoint::isValid() const
{
    return (_point.isSet() && _point.value().isValid()) || nodeIsSet();
}

Config Viewpoint::getConfig() const
{
    Config conf("viewpoint");
    conf.updateIfSet("name", _name);
    conf.updateIfSet("heading", _heading);
    conf.updateIfSet("pitch", _pitch);
    conf.updateIfSet("range", _range);
    if (_point.isSet() && _point.value().isValid()) {
        const GeoPoint& p = _point.value();
        const bool geographic = p.getSRS()->isGeographic();
        conf.set(geographic ? "long" : "x", p.x());
        conf.set(geographic ? "lat" : "y", p.y());
        conf.set(geographic ? "height" : "z", p.z());
        if (!p.getSRS()->isEquivalentTo(SpatialReference::get("wgs84")))
            conf.set("srs", p.getSRS()->getHorizInitString().empty() ? p.getSRS()->getWKT()
                                                                     : p.getSRS()->getHorizInitString());
    }
    if (_posOffset.isSet()) {
        conf.set("x_offset", _posOffset.value().x());
        conf.set("y_offset", _posOffset.value().y());
        conf.set("z_offset", _posOffset.value().z());
    }
    return conf;
}

std::string Viewpoint::toString() const
{
    Stringify out;
    if (_name.isSet())
        out << _name.value() << ": ";
    if (_point.isSet())
        out << "x=" << _point.value().x() << ", y=" << _point.value().y() << ", z=" << _point.value().z()
            << ", ";
    out << "h=" << getHeading() << ", p=" << getPitch() << ", d=" << getRange();
    return out;
}
} // namespace osgEarth
