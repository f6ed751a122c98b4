#include <osgEarth/GeoData>
#include <osgEarth/StringUtils>

#include <algorithm>
#include <cmath>
#include <limits>

namespace osgEarth {
namespace {
// Longitudes that differ by less (0.1 mm on the ground) are the same.
constexpr double kEpsilon = 1e-9;

double wrap180(double lon)
{
    const double wrapped = lon - 360.0 * std::floor((lon + 180.0) / 360.0);
    return wrapped == -180.0 && lon > 0.0 ? 180.0 : wrapped;
}
} // namespace

const GeoExtent GeoExtent::INVALID;

GeoExtent::GeoExtent(const SpatialReference* srs) : _srs(srs) {}

GeoExtent::GeoExtent(const SpatialReference* srs, double west, double south, double east, double north)
    : _srs(srs), _west(west), _south(south), _east(east), _north(north)
{
    if (!srs || !srs->isGeographic() || !std::isfinite(west) || !std::isfinite(east))
        return;
    if (east - west >= 360.0 - kEpsilon) {
        _west = -180.0;
        _east = 180.0;
    } else {
        if (_west < -180.0 || _west >= 180.0)
            _west = wrap180(_west) == 180.0 ? -180.0 : wrap180(_west);
        if (_east <= -180.0 || _east > 180.0)
            _east = wrap180(_east) == -180.0 ? 180.0 : wrap180(_east);
    }
}

GeoExtent::GeoExtent(const SpatialReference* srs, const Bounds& bounds) : _srs(srs)
{
    if (bounds.isValid())
        *this = GeoExtent(srs, bounds.xMin(), bounds.yMin(), bounds.xMax(), bounds.yMax());
}

bool GeoExtent::isValid() const
{
    return _srs.valid() && _north >= _south && std::isfinite(_west + _east + _south + _north) &&
           (_east >= _west || _srs->isGeographic());
}

bool GeoExtent::operator==(const GeoExtent& rhs) const
{
    if (!isValid() || !rhs.isValid())
        return isValid() == rhs.isValid();
    return _west == rhs._west && _east == rhs._east && _south == rhs._south && _north == rhs._north &&
           _srs->isEquivalentTo(rhs._srs.get());
}

bool GeoExtent::crossesAntimeridian() const
{
    return isValid() && _east < _west;
}

double GeoExtent::width() const
{
    return crossesAntimeridian() ? _east - _west + 360.0 : _east - _west;
}

bool GeoExtent::getCentroid(double& out_x, double& out_y) const
{
    if (!isValid())
        return false;
    out_y = (_south + _north) / 2.0;
    out_x = _west + width() / 2.0;
    if (_srs->isGeographic())
        out_x = wrap180(out_x);
    return true;
}

bool GeoExtent::getCentroid(GeoPoint& output) const
{
    double cx, cy;
    if (!getCentroid(cx, cy))
        return false;
    output.set(_srs.get(), cx, cy, 0.0, ALTMODE_ABSOLUTE);
    return true;
}

osg::Vec3d GeoExtent::getCentroid() const
{
    osg::Vec3d out;
    getCentroid(out.x(), out.y());
    return out;
}

bool GeoExtent::splitAcrossAntimeridian(GeoExtent& first, GeoExtent& second) const
{
    if (!crossesAntimeridian())
        return false;
    const GeoExtent whole = *this;
    first = GeoExtent(whole.getSRS(), whole._west, whole._south, 180.0, whole._north);
    second = GeoExtent(whole.getSRS(), -180.0, whole._south, whole._east, whole._north);
    return true;
}

GeoExtent GeoExtent::transform(const SpatialReference* to_srs) const
{
    if (!isValid() || !to_srs)
        return {};
    if (_srs->isEquivalentTo(to_srs))
        return *this;
    double xmin = _west, ymin = _south, xmax = _west + width(), ymax = _north;
    if (!_srs->transformExtentToMBR(to_srs, xmin, ymin, xmax, ymax))
        return {};
    return {to_srs, xmin, ymin, xmax, ymax};
}

bool GeoExtent::transform(const SpatialReference* to_srs, GeoExtent& output) const
{
    GeoExtent out = transform(to_srs);
    if (!out.isValid())
        return false;
    output = out;
    return true;
}

bool GeoExtent::contains(double x, double y, const SpatialReference* srs) const
{
    if (!isValid())
        return false;
    if (srs && !_srs->isEquivalentTo(srs) && !srs->transform2D(x, y, _srs.get(), x, y))
        return false;
    if (y < _south || y > _north)
        return false;
    if (!_srs->isGeographic())
        return x >= _west && x <= _east;
    const double east = _west + width();
    return (x >= _west && x <= east) || (x + 360.0 >= _west && x + 360.0 <= east) ||
           (x - 360.0 >= _west && x - 360.0 <= east);
}

bool GeoExtent::contains(const GeoPoint& rhs) const
{
    return rhs.isValid() && contains(rhs.x(), rhs.y(), rhs.getSRS());
}

bool GeoExtent::contains(const GeoExtent& rhs) const
{
    if (!isValid() || !rhs.isValid())
        return false;
    const GeoExtent other = rhs.transform(_srs.get());
    if (!other.isValid() || other._south < _south || other._north > _north)
        return false;
    if (!_srs->isGeographic())
        return other._west >= _west && other._east <= _east;
    if (width() >= 360.0 - kEpsilon)
        return true;
    double west = other._west;
    while (west < _west - kEpsilon)
        west += 360.0;
    return west + other.width() <= _west + width() + kEpsilon;
}

bool GeoExtent::intersects(const GeoExtent& rhs, bool checkSRS) const
{
    if (!isValid() || !rhs.isValid())
        return false;
    const GeoExtent other =
        checkSRS && !_srs->isEquivalentTo(rhs._srs.get()) ? rhs.transform(_srs.get()) : rhs;
    if (!other.isValid() || other._south >= _north || other._north <= _south)
        return false;
    if (!_srs->isGeographic())
        return other._west < _east && other._east > _west;
    for (double shift : {-360.0, 0.0, 360.0})
        if (other._west + shift < _west + width() && other._west + shift + other.width() > _west)
            return true;
    return false;
}

GeoExtent GeoExtent::intersectionSameSRS(const GeoExtent& rhs) const
{
    if (!intersects(rhs, false))
        return {};
    for (double shift : {0.0, -360.0, 360.0}) {
        if (shift != 0.0 && !_srs->isGeographic())
            break;
        const double west = std::max(_west, rhs._west + shift);
        const double east = std::min(_west + width(), rhs._west + shift + rhs.width());
        if (east > west)
            return {_srs.get(), west, std::max(_south, rhs._south), east, std::min(_north, rhs._north)};
    }
    return {};
}

void GeoExtent::expandToInclude(double x, double y)
{
    if (!_srs.valid())
        return;
    if (!isValid()) {
        *this = GeoExtent(_srs.get(), x, y, x, y);
        return;
    }
    const double south = std::min(_south, y), north = std::max(_north, y);
    double west = _west, east = _west + width();
    if (!contains(x, (_south + _north) / 2.0)) {
        if (_srs->isGeographic()) {
            // Towards the side that makes the extent grow less.
            const double toEast = x - east - 360.0 * std::floor((x - east) / 360.0);
            const double toWest = west - x - 360.0 * std::floor((west - x) / 360.0);
            if (toEast <= toWest)
                east += toEast;
            else
                west -= toWest;
        } else {
            west = std::min(west, x);
            east = std::max(east, x);
        }
    }
    *this = GeoExtent(_srs.get(), west, south, east, north);
}

bool GeoExtent::expandToInclude(const GeoExtent& rhs)
{
    if (!rhs.isValid())
        return false;
    if (!_srs.valid()) {
        *this = rhs;
        return true;
    }
    const GeoExtent other = rhs.transform(_srs.get());
    if (!other.isValid())
        return false;
    if (!isValid()) {
        *this = other;
        return true;
    }
    if (contains(other))
        return true;
    if (other.contains(*this)) {
        *this = other;
        return true;
    }
    expandToInclude(other._west, other._south);
    expandToInclude(other._west + other.width(), other._north);
    return true;
}

void GeoExtent::scale(double x_scale, double y_scale)
{
    if (isValid())
        expand(width() * (x_scale - 1.0), height() * (y_scale - 1.0));
}

void GeoExtent::expand(double x, double y)
{
    if (!isValid())
        return;
    double south = _south - y / 2.0, north = _north + y / 2.0;
    if (_srs->isGeographic()) {
        south = std::max(south, -90.0);
        north = std::min(north, 90.0);
    }
    *this = GeoExtent(_srs.get(), _west - x / 2.0, south, _west + width() + x / 2.0, north);
}

Bounds GeoExtent::bounds() const
{
    return {_west, _south, _east, _north};
}

void GeoExtent::getBounds(double& xmin, double& ymin, double& xmax, double& ymax) const
{
    xmin = _west;
    ymin = _south;
    xmax = _east;
    ymax = _north;
}

std::string GeoExtent::toString() const
{
    if (!isValid())
        return "INVALID";
    return Stringify() << "SW=" << _west << "," << _south << " NE=" << _east << "," << _north;
}
} // namespace osgEarth
