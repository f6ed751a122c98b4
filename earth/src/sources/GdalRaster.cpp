#include "sources/GdalRaster.h"

#include "base/Gdal.h"

#include <osgEarth/Notify>
#include <osgEarth/StringUtils>

#include <algorithm>
#include <cmath>
#include <limits>

namespace osgEarth {
namespace {
// Heights beyond these are fill values that nobody declared.
constexpr double kLowestHeight = -32000.0;
constexpr double kHighestHeight = 32000.0;
// Formats that can only be decoded whole are kept decoded up to this size.
constexpr long long kMaxDecodedBytes = 64LL * 1024 * 1024;
// Averaging more pixels than this without overviews would take seconds a tile.
constexpr double kMaxAveragedPixels = 64e6;

thread_local std::string lastErrorText;

double feetFactor(const char* unit)
{
    const std::string u = toLower(unit ? unit : "");
    return u == "ft" || u == "foot" || u == "feet" || u == "us-ft" || u == "ft us" ? 0.3048 : 1.0;
}

bool identity(const double* g)
{
    return g[0] == 0.0 && g[1] == 1.0 && g[2] == 0.0 && g[3] == 0.0 && g[4] == 0.0 && std::abs(g[5]) == 1.0;
}
} // namespace

void GdalRaster::CloseDataset::operator()(GDALDataset* dataset) const
{
    const gdal::ErrorCapture quiet;
    GDALClose(dataset);
}

GdalRaster::~GdalRaster() = default;

const std::string& GdalRaster::lastError()
{
    return lastErrorText;
}

std::shared_ptr<RasterSource> GdalRaster::openFile(const TileSourceOptions& options,
                                                   const RasterRequest& request, Status& out_status)
{
    const Config conf = options.getConfig();
    Description d;
    d.options = options;
    d.layerName = request.layerName;
    d.heights = request.heights;
    d.connection = options.url().isSet() ? options.url().value().full() : conf.value("connection");
    d.title = d.connection;
    if (d.connection.empty()) {
        out_status = Status(Status::ConfigurationError, "no url is given");
        return nullptr;
    }
    if (options.url().isSet() && options.url().value().isRemote())
        d.connection = "/vsicurl/" + d.connection;
    const int subdataset = conf.value<int>("subdataset", 0);
    if (subdataset > 0) {
        gdal::initialize();
        const gdal::ErrorCapture quiet;
        const Handle container(GDALDataset::Open(d.connection.c_str(), GDAL_OF_RASTER | GDAL_OF_READONLY));
        const std::string key = "SUBDATASET_" + toString(subdataset) + "_NAME";
        const char* name = nullptr;
        if (container)
            name = CSLFetchNameValue(container->GetMetadata("SUBDATASETS"), key.c_str());
        if (!name) {
            out_status = Status(Status::ResourceUnavailable,
                                "\"" + d.title + "\" has no subdataset " + toString(subdataset));
            return nullptr;
        }
        d.connection = name;
    }
    return open(d, out_status);
}

std::shared_ptr<GdalRaster> GdalRaster::open(const Description& description, Status& out_status)
{
    const std::shared_ptr<GdalRaster> raster(new GdalRaster(description));
    return raster->openFirst(out_status) ? raster : nullptr;
}

GdalRaster::Handle GdalRaster::openHandle() const
{
    return Handle(GDALDataset::Open(_description.connection.c_str(),
                                    GDAL_OF_RASTER | GDAL_OF_READONLY | GDAL_OF_VERBOSE_ERROR));
}

bool GdalRaster::openFirst(Status& out_status)
{
    gdal::initialize();
    gdal::ErrorCapture errors;
    const auto fail = [&](const std::string& cause) {
        out_status = Status(Status::ResourceUnavailable, "\"" + _description.title + "\" " + cause);
        return false;
    };
    Handle handle = openHandle();
    if (!handle)
        return fail("cannot be opened: " +
                    (errors.failed() ? errors.message() : std::string("unknown format")));
    if (handle->GetRasterCount() < 1 || handle->GetRasterXSize() < 1 || handle->GetRasterYSize() < 1)
        return fail("holds no raster");
    std::string cause;
    if (!placeOnMap(*handle, cause))
        return fail(cause);

    GDALRasterBand* band = handle->GetRasterBand(1);
    const char* driver = handle->GetDriver() ? handle->GetDriver()->GetDescription() : "";
    if (EQUAL(driver, "GTiff")) {
        // A file that was cut off lacks its last block.
        float last;
        errors.clear();
        if (band->RasterIO(GF_Read, _grid.width - 1, _grid.height - 1, 1, 1, &last, 1, 1, GDT_Float32, 0, 0,
                           nullptr) != CE_None)
            return fail("is damaged: " + errors.message());
    }
    if (_description.heights)
        describeHeights(*handle);
    else
        describeChannels(*handle);
    const long long bytes = static_cast<long long>(_grid.width) * _grid.height * handle->GetRasterCount() *
                            GDALGetDataTypeSizeBytes(band->GetRasterDataType());
    _shouldDecode =
        (EQUAL(driver, "JPEG") || EQUAL(driver, "PNG") || EQUAL(driver, "GIF") || EQUAL(driver, "WEBP")) &&
        band->GetOverviewCount() == 0 && bytes <= kMaxDecodedBytes;
    _free.push_back(std::move(handle));
    return true;
}

bool GdalRaster::placeOnMap(GDALDataset& dataset, std::string& out_cause)
{
    _grid.width = dataset.GetRasterXSize();
    _grid.height = dataset.GetRasterYSize();
    osg::ref_ptr<const Profile> stated;
    const optional<ProfileOptions>& profile = _description.options.profile();
    if (profile.isSet()) {
        stated = Profile::create(profile.value());
        _grid.srs = stated.valid() ? stated->getSRS()
                                   : SpatialReference::create(profile.value().srsString().getOrUse(
                                         profile.value().namedProfile().value()));
    } else if (const OGRSpatialReference* srs = dataset.GetSpatialRef())
        _grid.srs = SpatialReference::createFromHandle(const_cast<OGRSpatialReference*>(srs));
    if (!_grid.srs.valid()) {
        out_cause = dataset.GetSpatialRef() || profile.isSet() ? "has a projection that cannot be read"
                                                               : "states no projection";
        return false;
    }
    const bool placed = dataset.GetGeoTransform(_grid.toSrs) == CE_None && !identity(_grid.toSrs);
    if (!placed && stated.valid()) {
        // A picture without georeference covers the profile that the map file gives it.
        const GeoExtent& e = stated->getExtent();
        const double g[6] = {e.west(), e.width() / _grid.width,   0.0, e.north(),
                             0.0,      -e.height() / _grid.height};
        std::copy(g, g + 6, _grid.toSrs);
    } else if (!placed) {
        out_cause = "states no position";
        return false;
    }
    if (!describe()) {
        out_cause = "has a projection or position that leads nowhere on the globe";
        return false;
    }
    return true;
}

void GdalRaster::describeChannels(GDALDataset& dataset)
{
    Channels& c = _channels;
    GDALRasterBand* first = dataset.GetRasterBand(1);
    const int count = dataset.GetRasterCount();
    if (const GDALColorTable* table = first->GetColorTable()) {
        for (int i = 0; i < table->GetColorEntryCount(); ++i) {
            GDALColorEntry entry;
            table->GetColorEntryAsRGB(i, &entry);
            for (short v : {entry.c1, entry.c2, entry.c3, entry.c4})
                c.palette.push_back(static_cast<unsigned char>(std::clamp<int>(v, 0, 255)));
        }
    } else {
        int byRole[3] = {0, 0, 0};
        for (int b = 1; b <= count; ++b) {
            const GDALColorInterp role = dataset.GetRasterBand(b)->GetColorInterpretation();
            if (role == GCI_AlphaBand)
                c.alpha = b;
            else if (role >= GCI_RedBand && role <= GCI_BlueBand)
                byRole[role - GCI_RedBand] = b;
        }
        const int colours = c.alpha ? count - 1 : count;
        if (byRole[0] && byRole[1] && byRole[2]) {
            c.red = byRole[0];
            c.green = byRole[1];
            c.blue = byRole[2];
        } else if (colours >= 3) {
            c.green = 2;
            c.blue = 3;
        }
    }
    const optional<float>& stated = _description.options.noDataValue();
    int has = 0;
    const double own = first->GetNoDataValue(&has);
    const int flags = first->GetMaskFlags();
    if (stated.isSet()) {
        c.noData = true;
        c.noDataValue = static_cast<double>(stated.value());
    } else if (has) {
        c.noData = true;
        c.noDataValue = own;
    } else if (!c.alpha && (flags & GMF_PER_DATASET) && !(flags & GMF_ALPHA))
        c.mask = true;
    if (c.palette.empty() && first->GetRasterDataType() != GDT_Byte) {
        c.stretch = true;
        measureStretch(dataset);
    }
}

void GdalRaster::measureStretch(GDALDataset& dataset)
{
    constexpr int kSample = 256;
    const int w = std::min(kSample, _grid.width), h = std::min(kSample, _grid.height);
    std::vector<float> values(static_cast<size_t>(w) * static_cast<size_t>(h));
    const int bands[3] = {_channels.red, _channels.green, _channels.blue};
    for (int i = 0; i < 3; ++i) {
        GDALRasterBand* band = dataset.GetRasterBand(bands[i]);
        if (band->RasterIO(GF_Read, 0, 0, _grid.width, _grid.height, values.data(), w, h, GDT_Float32, 0, 0,
                           nullptr) != CE_None)
            continue;
        std::vector<float> valid;
        for (float v : values)
            if (std::isfinite(v) && !(_channels.noData && static_cast<double>(v) == _channels.noDataValue))
                valid.push_back(v);
        if (valid.empty())
            continue;
        // The darkest and the brightest 1 % of the values may clip.
        const auto rank = [&](double share) {
            const auto n = static_cast<std::ptrdiff_t>(share * static_cast<double>(valid.size() - 1));
            std::nth_element(valid.begin(), valid.begin() + n, valid.end());
            return static_cast<double>(valid[static_cast<size_t>(n)]);
        };
        _channels.low[i] = rank(0.01);
        _channels.high[i] = rank(0.99);
        // Files of 16 or 32 bits a value may still use values from 0 to 255 only.
        if (_channels.low[i] >= 0.0 && _channels.high[i] <= 255.0 &&
            band->GetRasterDataType() != GDT_Float32 && band->GetRasterDataType() != GDT_Float64) {
            _channels.low[i] = 0.0;
            _channels.high[i] = 255.0;
        }
        if (_channels.high[i] <= _channels.low[i])
            _channels.high[i] = _channels.low[i] + 1.0;
    }
}

void GdalRaster::describeHeights(GDALDataset& dataset)
{
    GDALRasterBand* band = dataset.GetRasterBand(1);
    int has = 0;
    const double own = band->GetNoDataValue(&has);
    const TileSourceOptions& o = _description.options;
    _heightNoData = has || o.noDataValue().isSet();
    _heightNoDataValue = o.noDataValue().isSet() ? static_cast<double>(o.noDataValue().value()) : own;
    _mapNoData = o.noDataValue().isSet() && !(has && own == _heightNoDataValue);
    _heightMin = o.minValidValue().isSet() ? static_cast<double>(o.minValidValue().value()) : kLowestHeight;
    _heightMax = o.maxValidValue().isSet() ? static_cast<double>(o.maxValidValue().value()) : kHighestHeight;
    _heightScale = band->GetScale(&has);
    if (!has)
        _heightScale = 1.0;
    _heightOffset = band->GetOffset(&has);
    if (!has)
        _heightOffset = 0.0;
    const double feet = feetFactor(band->GetUnitType());
    _heightScale *= feet;
    _heightOffset *= feet;
}

// ---- handles

void GdalRaster::decodeOnce()
{
    const gdal::ErrorCapture quiet;
    GDALDriver* memory = GetGDALDriverManager()->GetDriverByName("MEM");
    std::lock_guard<std::mutex> lock(_mutex);
    if (!memory || _free.empty())
        return;
    Handle copy(memory->CreateCopy("", _free.front().get(), FALSE, nullptr, nullptr, nullptr));
    if (!copy)
        return;
    std::vector<int> factors;
    for (int level = 1;
         level < _grid.levels() && std::max(_grid.widthAt(level), _grid.heightAt(level)) >= 128; ++level)
        factors.push_back(1 << level);
    if (!factors.empty())
        copy->BuildOverviews(_channels.palette.empty() && !_nearest ? "AVERAGE" : "NEAREST",
                             static_cast<int>(factors.size()), factors.data(), 0, nullptr, nullptr, nullptr,
                             nullptr);
    _free.clear();
    _free.push_back(std::move(copy));
    _single = true;
}

GdalRaster::Lease::Lease(GdalRaster& owner) : _owner(owner)
{
    if (owner._shouldDecode) {
        std::call_once(owner._decodeOnce, [&] { owner.decodeOnce(); });
        if (owner._single)
            _turn = std::unique_lock<std::mutex>(owner._turns);
    }
    {
        std::lock_guard<std::mutex> lock(owner._mutex);
        if (!owner._free.empty()) {
            _handle = std::move(owner._free.back());
            owner._free.pop_back();
        }
    }
    if (!_handle)
        _handle = owner.openHandle();
}

GdalRaster::Lease::~Lease()
{
    if (!_handle)
        return;
    std::lock_guard<std::mutex> lock(_owner._mutex);
    _owner._free.push_back(std::move(_handle));
}

RasterSource::Answer GdalRaster::failed(const std::string& cause)
{
    lastErrorText = cause.empty() ? "reading failed" : cause;
    if (!_reported.exchange(true))
        notifyLine(osg::WARN, std::string(_description.heights ? "Elevation" : "Image") + " layer \"" +
                                  _description.layerName + "\": \"" + _description.title +
                                  "\" cannot be read everywhere: " + lastErrorText);
    return Answer::Failed;
}

// ---- reading

bool GdalRaster::readBand(GDALRasterBand& full, int level, int x, int y, int w, int h, void* out,
                          GDALDataType type, int pixelSpace, bool average, bool mask) const
{
    const int levelWidth = _grid.widthAt(level), levelHeight = _grid.heightAt(level);
    GDALRasterBand* band = level == 0 ? &full : nullptr;
    for (int i = 0; !band && i < full.GetOverviewCount(); ++i) {
        GDALRasterBand* overview = full.GetOverview(i);
        if (overview && overview->GetXSize() == levelWidth && overview->GetYSize() == levelHeight)
            band = overview;
    }
    const GSpacing line = static_cast<GSpacing>(pixelSpace) * w;
    if (band) {
        if (mask)
            band = band->GetMaskBand();
        return band->RasterIO(GF_Read, x, y, w, h, out, w, h, type, pixelSpace, line, nullptr) == CE_None;
    }
    band = mask ? full.GetMaskBand() : &full;
    const double sx = static_cast<double>(_grid.width) / levelWidth;
    const double sy = static_cast<double>(_grid.height) / levelHeight;
    GDALRasterIOExtraArg extra;
    INIT_RASTERIO_EXTRA_ARG(extra);
    extra.bFloatingPointWindowValidity = TRUE;
    extra.dfXOff = x * sx;
    extra.dfYOff = y * sy;
    extra.dfXSize = w * sx;
    extra.dfYSize = h * sy;
    const bool affordable =
        full.GetOverviewCount() > 0 || extra.dfXSize * extra.dfYSize <= kMaxAveragedPixels;
    extra.eResampleAlg = average && affordable && !_nearest ? GRIORA_Average : GRIORA_NearestNeighbour;
    const int x0 = static_cast<int>(std::floor(extra.dfXOff + 1e-9));
    const int y0 = static_cast<int>(std::floor(extra.dfYOff + 1e-9));
    const int x1 = std::min(_grid.width, static_cast<int>(std::ceil(extra.dfXOff + extra.dfXSize - 1e-9)));
    const int y1 = std::min(_grid.height, static_cast<int>(std::ceil(extra.dfYOff + extra.dfYSize - 1e-9)));
    return band->RasterIO(GF_Read, x0, y0, x1 - x0, y1 - y0, out, w, h, type, pixelSpace, line, &extra) ==
           CE_None;
}

bool GdalRaster::readBytes(GDALDataset& dataset, int level, int x, int y, int w, int h,
                           unsigned char* rgba) const
{
    const Channels& c = _channels;
    const size_t pixels = static_cast<size_t>(w) * static_cast<size_t>(h);
    if (!c.palette.empty()) {
        std::vector<uint16_t> index(pixels);
        if (!readBand(*dataset.GetRasterBand(1), level, x, y, w, h, index.data(), GDT_UInt16, 2, false))
            return false;
        for (size_t i = 0; i < pixels; ++i) {
            const size_t entry = static_cast<size_t>(index[i]) * 4;
            const bool valid = entry < c.palette.size() && !(c.noData && index[i] == c.noDataValue);
            for (size_t k = 0; k < 4; ++k)
                rgba[i * 4 + k] = valid ? c.palette[entry + k] : static_cast<unsigned char>(0);
        }
        return true;
    }
    const int bands[3] = {c.red, c.green, c.blue};
    for (int k = 0; k < 3; ++k) {
        if (k > 0 && bands[k] == bands[0]) {
            for (size_t i = 0; i < pixels; ++i)
                rgba[i * 4 + static_cast<size_t>(k)] = rgba[i * 4];
            continue;
        }
        if (!readBand(*dataset.GetRasterBand(bands[k]), level, x, y, w, h, rgba + k, GDT_Byte, 4, true))
            return false;
    }
    if (c.alpha || c.mask)
        return readBand(*dataset.GetRasterBand(c.alpha ? c.alpha : 1), level, x, y, w, h, rgba + 3, GDT_Byte,
                        4, true, c.mask);
    for (size_t i = 0; i < pixels; ++i) {
        const unsigned char* p = rgba + i * 4;
        const bool hole = c.noData && p[0] == c.noDataValue && p[1] == c.noDataValue && p[2] == c.noDataValue;
        rgba[i * 4 + 3] = hole ? 0 : 255;
    }
    return true;
}

bool GdalRaster::readStretched(GDALDataset& dataset, int level, int x, int y, int w, int h,
                               unsigned char* rgba) const
{
    const Channels& c = _channels;
    const size_t pixels = static_cast<size_t>(w) * static_cast<size_t>(h);
    std::vector<float> values(pixels);
    const int bands[3] = {c.red, c.green, c.blue};
    for (size_t i = 0; i < pixels; ++i)
        rgba[i * 4 + 3] = c.noData ? 0 : 255;
    for (int k = 0; k < 3; ++k) {
        if ((k == 0 || bands[k] != bands[k - 1]) && !readBand(*dataset.GetRasterBand(bands[k]), level, x, y,
                                                              w, h, values.data(), GDT_Float32, 4, true))
            return false;
        const double factor = 255.0 / (c.high[k] - c.low[k]);
        for (size_t i = 0; i < pixels; ++i) {
            const double v = static_cast<double>(values[i]);
            unsigned char* p = rgba + i * 4;
            if (std::isnan(v)) {
                p[0] = p[1] = p[2] = p[3] = 0;
                continue;
            }
            p[k] = static_cast<unsigned char>(std::clamp((v - c.low[k]) * factor + 0.5, 0.0, 255.0));
            // Visible as soon as one channel has data.
            if (c.noData && v != c.noDataValue)
                p[3] = 255;
        }
    }
    if (c.alpha) {
        GDALRasterBand* alpha = dataset.GetRasterBand(c.alpha);
        const double full = alpha->GetRasterDataType() == GDT_Byte ? 255.0 : 65535.0;
        if (!readBand(*alpha, level, x, y, w, h, values.data(), GDT_Float32, 4, true))
            return false;
        for (size_t i = 0; i < pixels; ++i)
            rgba[i * 4 + 3] = static_cast<unsigned char>(
                std::clamp(static_cast<double>(values[i]) / full * 255.0 + 0.5, 0.0, 255.0));
    }
    if (c.mask)
        return readBand(*dataset.GetRasterBand(1), level, x, y, w, h, rgba + 3, GDT_Byte, 4, true, true);
    return true;
}

RasterSource::Answer GdalRaster::readRgba(int level, int x, int y, int w, int h, unsigned char* rgba,
                                          ProgressCallback* progress)
{
    if (progress && progress->isCanceled())
        return Answer::Nothing;
    gdal::ErrorCapture errors;
    const Lease lease(*this);
    if (!lease.get())
        return failed(errors.message());
    const bool good = _channels.stretch ? readStretched(*lease.get(), level, x, y, w, h, rgba)
                                        : readBytes(*lease.get(), level, x, y, w, h, rgba);
    return good ? Answer::Data : failed(errors.message());
}

RasterSource::Answer GdalRaster::readFloats(int level, int x, int y, int w, int h, float* heights,
                                            ProgressCallback* progress)
{
    if (progress && progress->isCanceled())
        return Answer::Nothing;
    gdal::ErrorCapture errors;
    const Lease lease(*this);
    if (!lease.get())
        return failed(errors.message());
    // GDAL's average leaves out the band's own no-data value, but not one that
    // only the map file knows.
    if (!readBand(*lease.get()->GetRasterBand(1), level, x, y, w, h, heights, GDT_Float32, 4, !_mapNoData))
        return failed(errors.message());
    const size_t pixels = static_cast<size_t>(w) * static_cast<size_t>(h);
    const auto noData = static_cast<float>(_heightNoDataValue);
    for (size_t i = 0; i < pixels; ++i) {
        const float raw = heights[i];
        const double v = static_cast<double>(raw) * _heightScale + _heightOffset;
        const bool hole = (_heightNoData && raw == noData) || !(v >= _heightMin && v <= _heightMax);
        heights[i] = hole ? std::numeric_limits<float>::quiet_NaN() : static_cast<float>(v);
    }
    return Answer::Data;
}
} // namespace osgEarth
