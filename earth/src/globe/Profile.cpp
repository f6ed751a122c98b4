#include "base/ConfigKeys.h"
#include <osgEarth/Profile>
#include <osgEarth/Registry>
#include <osgEarth/TileKey>

#include <algorithm>
#include <cmath>

namespace osgEarth {
namespace {
constexpr const char* kBoundsKeys[] = {"xmin", "ymin", "xmax", "ymax"};

void visitBounds(KeyReader& keys, optional<Bounds>& bounds)
{
    double sides[4] = {};
    for (size_t i = 0; i < 4; ++i) {
        if (!keys.config().hasValue(kBoundsKeys[i]))
            return;
        sides[i] = keys.config().value(kBoundsKeys[i], 0.0);
    }
    bounds = Bounds(sides[0], sides[1], sides[2], sides[3]);
}

void visitBounds(KeyWriter& keys, const optional<Bounds>& bounds)
{
    if (!bounds.isSet())
        return;
    const double sides[4] = {bounds->xMin(), bounds->yMin(), bounds->xMax(), bounds->yMax()};
    for (size_t i = 0; i < 4; ++i)
        keys.config().set(kBoundsKeys[i], sides[i]);
}

template <typename Options, typename Keys> void visitProfileKeys(Options& options, Keys& keys)
{
    keys.value("srs", options.srsString());
    visitBounds(keys, options.bounds());
    keys.value("num_tiles_wide_at_lod_0", options.numTilesWideAtLod0());
    keys.value("num_tiles_high_at_lod_0", options.numTilesHighAtLod0());
}
} // namespace

ProfileOptions::ProfileOptions(const ConfigOptions& options) : ConfigOptions(options)
{
    fromConfig(_conf);
}

ProfileOptions::ProfileOptions(const std::string& namedProfile)
{
    _namedProfile = namedProfile;
}

Config ProfileOptions::getConfig() const
{
    Config conf = ConfigOptions::getConfig();
    if (conf.key().empty())
        conf.key() = "profile";
    if (_namedProfile.isSet())
        conf.value() = _namedProfile.value();
    KeyWriter keys(conf);
    visitProfileKeys(*this, keys);
    return conf;
}

void ProfileOptions::mergeConfig(const Config& conf)
{
    ConfigOptions::mergeConfig(conf);
    fromConfig(conf);
}

void ProfileOptions::fromConfig(const Config& conf)
{
    if (!trim(conf.value()).empty())
        _namedProfile = trim(conf.value());
    KeyReader keys(conf);
    visitProfileKeys(*this, keys);
}

Profile::Profile(const GeoExtent& extent, const GeoExtent& latLongExtent, unsigned tilesWide,
                 unsigned tilesHigh)
    : osg::Referenced(true), _extent(extent), _latLongExtent(latLongExtent), _tilesWide(tilesWide),
      _tilesHigh(tilesHigh)
{
}

const Profile* Profile::createNamed(const std::string& name)
{
    const std::string n = toLower(trim(name));
    if (n == "global-geodetic" || n == "geodetic" || n == "wgs84" || n == "plate-carre")
        return Registry::instance()->getGlobalGeodeticProfile();
    if (n == "spherical-mercator" || n == "global-mercator" || n == "web-mercator")
        return Registry::instance()->getSphericalMercatorProfile();
    return nullptr;
}

const Profile* Profile::create(const SpatialReference* srs, double xmin, double ymin, double xmax,
                               double ymax, unsigned tilesWide, unsigned tilesHigh)
{
    if (!srs || !(xmax > xmin) || !(ymax > ymin))
        return nullptr;
    const double ratio = (xmax - xmin) / (ymax - ymin);
    if (tilesWide == 0)
        tilesWide = ratio >= 1.0 ? static_cast<unsigned>(std::max(1.0, std::floor(ratio + 0.1))) : 1;
    if (tilesHigh == 0)
        tilesHigh = ratio < 1.0 ? static_cast<unsigned>(std::max(1.0, std::floor(1.0 / ratio + 0.1))) : 1;
    const GeoExtent extent(srs, xmin, ymin, xmax, ymax);
    return new Profile(extent, extent.transform(srs->getGeographicSRS()), tilesWide, tilesHigh);
}

const Profile* Profile::create(const std::string& srs_string, double xmin, double ymin, double xmax,
                               double ymax, const std::string& vsrs_string, unsigned tilesWide,
                               unsigned tilesHigh)
{
    return create(SpatialReference::create(srs_string, vsrs_string), xmin, ymin, xmax, ymax, tilesWide,
                  tilesHigh);
}

const Profile* Profile::create(const SpatialReference* srs, double xmin, double ymin, double xmax,
                               double ymax, double geoxmin, double geoymin, double geoxmax, double geoymax,
                               unsigned tilesWide, unsigned tilesHigh)
{
    const osg::ref_ptr<const Profile> plain = create(srs, xmin, ymin, xmax, ymax, tilesWide, tilesHigh);
    return plain ? new Profile(plain->getExtent(),
                               GeoExtent(srs->getGeographicSRS(), geoxmin, geoymin, geoxmax, geoymax),
                               plain->_tilesWide, plain->_tilesHigh)
                 : nullptr;
}

const Profile* Profile::create(const std::string& srs_string, const std::string& vsrs_string,
                               unsigned tilesWide, unsigned tilesHigh)
{
    const Profile* named = tilesWide == 0 && tilesHigh == 0 ? createNamed(srs_string) : nullptr;
    if (named)
        return named;
    const SpatialReference* srs = SpatialReference::create(srs_string, vsrs_string);
    if (!srs)
        return nullptr;
    if (srs->isGeographic())
        return create(srs, -180.0, -90.0, 180.0, 90.0, tilesWide, tilesHigh);
    if (srs->isSphericalMercator())
        return create(srs, MERC_MINX, MERC_MINY, MERC_MAXX, MERC_MAXY, tilesWide, tilesHigh);
    return nullptr;
}

const Profile* Profile::create(const ProfileOptions& options)
{
    if (options.namedProfile().isSet() && !options.srsString().isSet())
        return create(options.namedProfile().value());
    if (!options.srsString().isSet())
        return nullptr;
    if (!options.bounds().isSet())
        return create(options.srsString().value());
    const Bounds& b = options.bounds().value();
    return create(SpatialReference::create(options.srsString().value()), b.xMin(), b.yMin(), b.xMax(),
                  b.yMax(), static_cast<unsigned>(std::max(0, options.numTilesWideAtLod0().value())),
                  static_cast<unsigned>(std::max(0, options.numTilesHighAtLod0().value())));
}

Profile::ProfileType Profile::getProfileType() const
{
    if (!isOK())
        return TYPE_UNKNOWN;
    return getSRS()->isGeographic() ? TYPE_GEODETIC : getSRS()->isMercator() ? TYPE_MERCATOR : TYPE_LOCAL;
}

void Profile::getRootKeys(std::vector<TileKey>& out_keys) const
{
    for (unsigned y = 0; y < _tilesHigh; ++y)
        for (unsigned x = 0; x < _tilesWide; ++x)
            out_keys.emplace_back(0, x, y, this);
}

void Profile::getTileDimensions(unsigned lod, double& out_width, double& out_height) const
{
    out_width = std::ldexp(_extent.width() / _tilesWide, -static_cast<int>(lod));
    out_height = std::ldexp(_extent.height() / _tilesHigh, -static_cast<int>(lod));
}

void Profile::getNumTiles(unsigned lod, unsigned& out_wide, unsigned& out_high) const
{
    out_wide = _tilesWide << lod;
    out_high = _tilesHigh << lod;
}

GeoExtent Profile::calculateExtent(unsigned lod, unsigned tileX, unsigned tileY)
{
    return extentOf(lod, tileX, tileY);
}

GeoExtent Profile::extentOf(unsigned lod, unsigned tileX, unsigned tileY) const
{
    double w, h;
    getTileDimensions(lod, w, h);
    // Edges from the index, so that neighbours share theirs to the last bit.
    return {getSRS(), _extent.west() + w * tileX, _extent.north() - h * (tileY + 1.0),
            _extent.west() + w * (tileX + 1.0), _extent.north() - h * tileY};
}

TileKey Profile::createTileKey(double x, double y, unsigned level) const
{
    if (!_extent.contains(x, y))
        return {};
    double w, h;
    unsigned wide, high;
    getTileDimensions(level, w, h);
    getNumTiles(level, wide, high);
    const double column = std::floor((x - _extent.west()) / w), row = std::floor((_extent.north() - y) / h);
    return {level, static_cast<unsigned>(std::clamp(column, 0.0, wide - 1.0)),
            static_cast<unsigned>(std::clamp(row, 0.0, high - 1.0)), this};
}

void Profile::getIntersectingTiles(const GeoExtent& extent, unsigned lod,
                                   std::vector<TileKey>& out_keys) const
{
    const GeoExtent here = extent.transform(getSRS());
    if (!here.isValid())
        return;
    GeoExtent first, second;
    if (here.splitAcrossAntimeridian(first, second)) {
        getIntersectingTiles(first, lod, out_keys);
        getIntersectingTiles(second, lod, out_keys);
        return;
    }
    if (!here.intersects(_extent, false))
        return;
    double w, h;
    unsigned wide, high;
    getTileDimensions(lod, w, h);
    getNumTiles(lod, wide, high);
    const auto index = [](double v, unsigned count) {
        return static_cast<unsigned>(std::clamp(v, 0.0, count - 1.0));
    };
    // An edge that lies on a tile border does not reach into the next tile.
    const unsigned x0 = index(std::floor((here.west() - _extent.west()) / w + 1e-9), wide);
    const unsigned x1 = index(std::ceil((here.east() - _extent.west()) / w - 1e-9) - 1.0, wide);
    const unsigned y0 = index(std::floor((_extent.north() - here.north()) / h + 1e-9), high);
    const unsigned y1 = index(std::ceil((_extent.north() - here.south()) / h - 1e-9) - 1.0, high);
    for (unsigned y = y0; y <= y1; ++y)
        for (unsigned x = x0; x <= x1; ++x)
            out_keys.emplace_back(lod, x, y, this);
}

unsigned Profile::getLevelOfDetailForHorizResolution(double resolution, int tileSize) const
{
    if (!(resolution > 0.0) || tileSize <= 0)
        return 23;
    double w, h;
    for (unsigned lod = 0; lod < 23; ++lod) {
        getTileDimensions(lod, w, h);
        if (w / tileSize <= resolution)
            return lod;
    }
    return 23;
}

bool Profile::isEquivalentTo(const Profile* rhs) const
{
    return this == rhs ||
           (rhs && _tilesWide == rhs->_tilesWide && _tilesHigh == rhs->_tilesHigh && _extent == rhs->_extent);
}

std::string Profile::toString() const
{
    return Stringify() << getSRS()->getName() << " " << _extent.toString() << " " << _tilesWide << "x"
                       << _tilesHigh;
}
} // namespace osgEarth
