#include "sources/TileFolder.h"

#include "base/ConfigXml.h"
#include "base/Gdal.h"

#include <osgEarth/Notify>
#include <osgEarth/Registry>
#include <osgEarth/StringUtils>

#include <algorithm>
#include <cmath>
#include <gdal_priv.h>
#include <limits>
#include <osgDB/FileNameUtils>
#include <osgDB/FileUtils>
#include <osgDB/fstream>

namespace osgEarth {
namespace {
constexpr int kMaxLevel = 22; // 256 << 22 columns still fit an int, twice over

void put(std::string& text, const std::string& what, int value)
{
    const size_t at = text.find(what);
    if (at != std::string::npos)
        text.replace(at, what.size(), toString(value));
}

int finestFolder(const std::string& folder)
{
    int finest = -1;
    for (const std::string& name : osgDB::getDirectoryContents(folder))
        if (!name.empty() && name.find_first_not_of("0123456789") == std::string::npos)
            finest = std::max(finest, as<int>(name, -1));
    return finest;
}
} // namespace

std::shared_ptr<RasterSource> TileFolder::open(const TileSourceOptions& options, const RasterRequest& request,
                                               const Profile* profile, bool rowsFromSouth, Status& out_status)
{
    gdal::initialize();
    const std::string url = options.url().value().full();
    const auto fail = [&](const std::string& cause) {
        out_status = Status(Status::ResourceUnavailable, "\"" + url + "\" " + cause);
        return nullptr;
    };
    const std::shared_ptr<TileFolder> self(new TileFolder);
    self->_layerName = request.layerName;
    self->_rowsFromSouth = rowsFromSouth;
    self->_profile = profile;
    self->_tileSize = std::clamp(options.tileSize().value(), 16, 4096);
    if (options.noDataValue().isSet()) {
        self->_hasNoData = true;
        self->_noData = options.noDataValue().value();
    }

    const size_t brace = url.find('{');
    self->_folder = brace != std::string::npos ? url.substr(0, url.find_last_of("/\\", brace)) : url;
    std::string description = osgDB::concatPaths(self->_folder, "tms.xml");
    if (endsWith(url, ".xml", false)) {
        description = url;
        self->_folder = osgDB::getFilePath(url);
        if (!osgDB::fileExists(url))
            return fail("does not exist");
    }
    std::string cause;
    if (osgDB::fileExists(description) && !self->readDescription(description, cause))
        return fail(cause);
    if (osgDB::fileType(self->_folder) != osgDB::DIRECTORY)
        return fail("is no folder");

    const Config conf = options.getConfig();
    if (conf.hasValue("format"))
        self->_format = conf.value("format");
    self->_template =
        brace != std::string::npos ? url : osgDB::concatPaths(self->_folder, "{z}/{x}/{y}." + self->_format);
    if (options.maxDataLevel().isSet())
        self->_maxLevel = static_cast<int>(options.maxDataLevel().value());
    else if (self->_maxLevel < 0)
        self->_maxLevel = finestFolder(self->_folder);
    if (self->_maxLevel < 0)
        return fail("holds no tiles");
    self->_maxLevel = std::min(self->_maxLevel, kMaxLevel);
    if (!self->_profile.valid())
        self->_profile = options.getDriver() == "tms" ? Registry::instance()->getGlobalGeodeticProfile()
                                                      : Registry::instance()->getSphericalMercatorProfile();

    unsigned wide, high;
    self->_profile->getNumTiles(static_cast<unsigned>(self->_maxLevel), wide, high);
    RasterGrid& g = self->_grid;
    const double columns = static_cast<double>(wide) * self->_tileSize,
                 rows = static_cast<double>(high) * self->_tileSize;
    if (columns > std::numeric_limits<int>::max() || rows > std::numeric_limits<int>::max())
        return fail("has too many levels");
    g.width = static_cast<int>(columns);
    g.height = static_cast<int>(rows);
    g.srs = self->_profile->getSRS();
    const GeoExtent& e = self->_profile->getExtent();
    const double to[6] = {e.west(), e.width() / g.width, 0.0, e.north(), 0.0, -e.height() / g.height};
    std::copy(to, to + 6, g.toSrs);
    if (!self->describe())
        return fail("has a profile that lies nowhere on the globe");
    return self;
}

bool TileFolder::readDescription(const std::string& file, std::string& out_cause)
{
    osgDB::ifstream in(file.c_str(), std::ios::binary);
    Config map;
    std::string error;
    if (!in || !readXml(in, map, error) || map.key() != "tilemap") {
        out_cause = "is no tile map description" + (error.empty() ? std::string() : ": " + error);
        return false;
    }
    const Config format = map.child("tileformat");
    _tileSize = std::clamp(format.value<int>("width", _tileSize), 16, 4096);
    if (format.hasValue("extension"))
        _format = format.value("extension");
    const Config sets = map.child("tilesets");
    for (const Config& set : sets.children("tileset"))
        _maxLevel = std::max(_maxLevel, set.value<int>("order", -1));
    if (!_profile.valid()) {
        const std::string name = toLower(sets.value("profile"));
        if (name == "mercator" || name == "global-mercator")
            _profile = Registry::instance()->getSphericalMercatorProfile();
        else if (name != "geodetic" && name != "global-geodetic" && map.hasValue("srs"))
            _profile = Profile::create(map.value("srs"));
    }
    return true;
}

std::string TileFolder::tilePath(int z, int column, int row) const
{
    std::string path = _template;
    put(path, "{z}", z);
    put(path, "{x}", column);
    put(path, "{y}", row);
    put(path, "{-y}", row);
    return path;
}

void TileFolder::reportOnce(const std::string& path, const std::string& cause)
{
    if (!_reported.exchange(true))
        notifyLine(osg::WARN, "Layer \"" + _layerName + "\": tile \"" + path + "\" cannot be read: " + cause);
}

bool TileFolder::loadRgba(const std::string& path, std::vector<unsigned char>& rgba)
{
    gdal::ErrorCapture errors;
    const std::unique_ptr<GDALDataset> tile(
        GDALDataset::Open(path.c_str(), GDAL_OF_RASTER | GDAL_OF_VERBOSE_ERROR));
    if (!tile || tile->GetRasterCount() < 1) {
        reportOnce(path, errors.message());
        return false;
    }
    const int n = _tileSize, bands = tile->GetRasterCount();
    const size_t pixels = static_cast<size_t>(n) * static_cast<size_t>(n);
    rgba.assign(pixels * 4, 255);
    const auto read = [&](int band, int channel) {
        return tile->GetRasterBand(band)->RasterIO(
                   GF_Read, 0, 0, tile->GetRasterXSize(), tile->GetRasterYSize(), rgba.data() + channel, n, n,
                   GDT_Byte, 4, static_cast<GSpacing>(4) * n, nullptr) == CE_None;
    };
    bool good = true;
    for (int c = 0; c < 3; ++c)
        good = good && read(bands >= 3 ? c + 1 : 1, c);
    if (bands == 2 || bands == 4)
        good = good && read(bands, 3);
    if (const GDALColorTable* table = tile->GetRasterBand(1)->GetColorTable())
        for (size_t i = 0; good && i < pixels; ++i) {
            GDALColorEntry entry{};
            table->GetColorEntryAsRGB(rgba[i * 4], &entry);
            const short channels[4] = {entry.c1, entry.c2, entry.c3, entry.c4};
            for (size_t c = 0; c < 4; ++c)
                rgba[i * 4 + c] = static_cast<unsigned char>(channels[c]);
        }
    if (!good)
        reportOnce(path, errors.message());
    return good;
}

bool TileFolder::loadFloats(const std::string& path, std::vector<float>& heights)
{
    gdal::ErrorCapture errors;
    const std::unique_ptr<GDALDataset> tile(
        GDALDataset::Open(path.c_str(), GDAL_OF_RASTER | GDAL_OF_VERBOSE_ERROR));
    const int n = _tileSize;
    heights.resize(static_cast<size_t>(n) * static_cast<size_t>(n));
    if (!tile || tile->GetRasterCount() < 1 ||
        tile->GetRasterBand(1)->RasterIO(GF_Read, 0, 0, tile->GetRasterXSize(), tile->GetRasterYSize(),
                                         heights.data(), n, n, GDT_Float32, 0, 0, nullptr) != CE_None) {
        reportOnce(path, errors.message());
        return false;
    }
    int has = 0;
    const auto own = static_cast<float>(tile->GetRasterBand(1)->GetNoDataValue(&has));
    for (float& v : heights)
        if ((has && v == own) || (_hasNoData && v == _noData) || !(std::abs(v) <= 32000.0f))
            v = std::numeric_limits<float>::quiet_NaN();
    return true;
}

template <typename T, int N, typename Load>
RasterSource::Answer TileFolder::assemble(int level, int x, int y, int w, int h, T* out, T empty, Load load)
{
    std::fill(out, out + static_cast<size_t>(w) * static_cast<size_t>(h) * N, empty);
    const int z = _maxLevel - level;
    if (z < 0)
        return Answer::Nothing;
    unsigned wide, high;
    _profile->getNumTiles(static_cast<unsigned>(z), wide, high);
    const int n = _tileSize;
    bool any = false;
    std::vector<T> tile;
    for (int row = y / n; row <= (y + h - 1) / n; ++row)
        for (int column = x / n; column <= (x + w - 1) / n; ++column) {
            const std::string path =
                tilePath(z, column, _rowsFromSouth ? static_cast<int>(high) - 1 - row : row);
            if (!osgDB::fileExists(path) || !load(path, tile))
                continue;
            any = true;
            const int x0 = std::max(x, column * n), x1 = std::min(x + w, (column + 1) * n);
            const int y0 = std::max(y, row * n), y1 = std::min(y + h, (row + 1) * n);
            for (int r = y0; r < y1; ++r)
                std::copy_n(tile.data() +
                                (static_cast<std::ptrdiff_t>(r - row * n) * n + (x0 - column * n)) * N,
                            (x1 - x0) * N, out + (static_cast<std::ptrdiff_t>(r - y) * w + (x0 - x)) * N);
        }
    return any ? Answer::Data : Answer::Nothing;
}

RasterSource::Answer TileFolder::readRgba(int level, int x, int y, int w, int h, unsigned char* rgba,
                                          ProgressCallback* progress)
{
    if (progress && progress->isCanceled())
        return Answer::Nothing;
    return assemble<unsigned char, 4>(
        level, x, y, w, h, rgba, static_cast<unsigned char>(0),
        [this](const std::string& path, std::vector<unsigned char>& tile) { return loadRgba(path, tile); });
}

RasterSource::Answer TileFolder::readFloats(int level, int x, int y, int w, int h, float* heights,
                                            ProgressCallback* progress)
{
    if (progress && progress->isCanceled())
        return Answer::Nothing;
    return assemble<float, 1>(
        level, x, y, w, h, heights, std::numeric_limits<float>::quiet_NaN(),
        [this](const std::string& path, std::vector<float>& tile) { return loadFloats(path, tile); });
}
} // namespace osgEarth
