#include <osgEarth/StringUtils>
#include <osgEarthFeatures/Feature>
#include <osgEarthFeatures/FeatureCursor>

namespace osgEarth::Features {
std::string AttributeValue::getString() const
{
    if (!second.set)
        return {};
    switch (first) {
    case ATTRTYPE_STRING:
        return second.stringValue;
    case ATTRTYPE_DOUBLE:
        return osgEarth::toString(second.doubleValue);
    case ATTRTYPE_INT:
        return osgEarth::toString(second.intValue);
    case ATTRTYPE_BOOL:
        return osgEarth::toString(second.boolValue);
    default:
        return {};
    }
}

double AttributeValue::getDouble(double defaultValue) const
{
    if (!second.set)
        return defaultValue;
    switch (first) {
    case ATTRTYPE_STRING:
        return osgEarth::as<double>(second.stringValue, defaultValue);
    case ATTRTYPE_DOUBLE:
        return second.doubleValue;
    case ATTRTYPE_INT:
        return static_cast<double>(second.intValue);
    case ATTRTYPE_BOOL:
        return second.boolValue ? 1.0 : 0.0;
    default:
        return defaultValue;
    }
}

int AttributeValue::getInt(int defaultValue) const
{
    if (first == ATTRTYPE_INT && second.set)
        return second.intValue;
    return static_cast<int>(getDouble(defaultValue));
}

bool AttributeValue::getBool(bool defaultValue) const
{
    if (!second.set)
        return defaultValue;
    switch (first) {
    case ATTRTYPE_STRING:
        return osgEarth::as<bool>(second.stringValue, defaultValue);
    case ATTRTYPE_DOUBLE:
        return second.doubleValue != 0.0;
    case ATTRTYPE_INT:
        return second.intValue != 0;
    case ATTRTYPE_BOOL:
        return second.boolValue;
    default:
        return defaultValue;
    }
}

Feature::Feature(Geometry* geom, const SpatialReference* srs, const Style& style, FeatureID fid)
    : _fid(fid), _geom(geom), _srs(srs)
{
    if (!style.empty())
        _style = style;
}

Feature::Feature(const Feature& rhs, const osg::CopyOp& copyop)
    : osg::Object(rhs, copyop), _fid(rhs._fid), _geom(rhs._geom.valid() ? rhs._geom->clone() : nullptr),
      _srs(rhs._srs), _attrs(rhs._attrs), _style(rhs._style), _geoInterp(rhs._geoInterp)
{
}

bool Feature::getWorldBound(const SpatialReference* srs, osg::BoundingSphered& out_bound) const
{
    if (!srs || !_srs || !_geom)
        return false;
    osg::BoundingBoxd box;
    for (ConstGeometryIterator it(_geom.get()); it.hasMore();) {
        for (const osg::Vec3d& p : *it.next()) {
            osg::Vec3d local, world;
            if (_srs->transform(p, srs, local) && srs->transformToWorld(local, world))
                box.expandBy(world);
        }
    }
    if (!box.valid())
        return false;
    out_bound = osg::BoundingSphered(box.center(), box.radius());
    return true;
}

void Feature::set(const std::string& name, const std::string& value)
{
    AttributeValue& a = _attrs[name];
    a.first = ATTRTYPE_STRING;
    a.second.stringValue = value;
    a.second.set = true;
}

void Feature::set(const std::string& name, double value)
{
    AttributeValue& a = _attrs[name];
    a.first = ATTRTYPE_DOUBLE;
    a.second.doubleValue = value;
    a.second.set = true;
}

void Feature::set(const std::string& name, int value)
{
    AttributeValue& a = _attrs[name];
    a.first = ATTRTYPE_INT;
    a.second.intValue = value;
    a.second.set = true;
}

void Feature::set(const std::string& name, bool value)
{
    AttributeValue& a = _attrs[name];
    a.first = ATTRTYPE_BOOL;
    a.second.boolValue = value;
    a.second.set = true;
}

void Feature::setNull(const std::string& name, AttributeType type)
{
    AttributeValue& a = _attrs[name];
    a.first = type;
    a.second.set = false;
}

bool Feature::isSet(const std::string& name) const
{
    const auto found = _attrs.find(name);
    return found != _attrs.end() && found->second.second.set;
}

std::string Feature::getString(const std::string& name) const
{
    const auto found = _attrs.find(name);
    return found != _attrs.end() ? found->second.getString() : std::string();
}

double Feature::getDouble(const std::string& name, double defaultValue) const
{
    const auto found = _attrs.find(name);
    return found != _attrs.end() ? found->second.getDouble(defaultValue) : defaultValue;
}

int Feature::getInt(const std::string& name, int defaultValue) const
{
    const auto found = _attrs.find(name);
    return found != _attrs.end() ? found->second.getInt(defaultValue) : defaultValue;
}

bool Feature::getBool(const std::string& name, bool defaultValue) const
{
    const auto found = _attrs.find(name);
    return found != _attrs.end() ? found->second.getBool(defaultValue) : defaultValue;
}

double Feature::eval(NumericExpression& expr) const
{
    for (const NumericExpression::Variable& var : expr.variables())
        expr.set(var, getDouble(var.first, 0.0));
    return expr.eval();
}

const std::string& Feature::eval(StringExpression& expr) const
{
    for (const StringExpression::Variable& var : expr.variables())
        expr.set(var, getString(var.first));
    return expr.eval();
}

void Feature::transform(const SpatialReference* srs)
{
    if (!srs || !_srs || !_geom || _srs->isEquivalentTo(srs))
        return;
    for (GeometryIterator it(_geom.get()); it.hasMore();)
        _srs->transform(it.next()->asVector(), srs);
    _srs = srs;
}

void FeatureCursor::fill(FeatureList& output)
{
    while (hasMore())
        if (Feature* feature = nextFeature())
            output.push_back(feature);
}
} // namespace osgEarth::Features
