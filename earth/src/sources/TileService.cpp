#include "sources/TileService.h"

#include "sources/GdalRaster.h"
#include "sources/TileFolder.h"

#include <osgEarth/Notify>
#include <osgEarth/Registry>
#include <osgEarth/StringUtils>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace osgEarth {
namespace {
using Clock = std::chrono::steady_clock;

// An answer that takes longer is as good as none: the pager's threads wait for it.
constexpr int kTimeoutSeconds = 4;
constexpr std::chrono::milliseconds kFirstPause{2000};
constexpr std::chrono::milliseconds kLongestPause{60000};
// What a tile of heights that does not exist is filled with.
constexpr float kNoHeight = -32768.0f;
constexpr unsigned kCacheBytes = 512u * 1024 * 1024;

std::string escape(const std::string& text)
{
    std::string out;
    for (char c : text) {
        if (c == '&')
            out += "&amp;";
        else if (c == '<')
            out += "&lt;";
        else if (c == '>')
            out += "&gt;";
        else
            out += c;
    }
    return out;
}

void replaceAll(std::string& text, const std::string& what, const std::string& with)
{
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size()))
        text.replace(at, what.size(), with);
}

// The address as GDAL's own template. "[abc]" names interchangeable hosts; one does.
std::string addressTemplate(const TileSourceOptions& options, const std::string& format)
{
    std::string url = options.url().value().full();
    const size_t open = url.find('['), close = url.find(']');
    if (open != std::string::npos && close != std::string::npos && close > open + 1)
        url.replace(open, close - open + 1, url.substr(open + 1, 1));
    if (endsWith(url, "tms.xml", false))
        url = url.substr(0, url.find_last_of('/'));
    if (url.find("{z}") == std::string::npos && url.find("${z}") == std::string::npos) {
        while (!url.empty() && url.back() == '/')
            url.pop_back();
        url += "/{z}/{x}/{y}." + format;
    }
    replaceAll(url, "{-y}", "{y}");
    for (const char* name : {"{x}", "{y}", "{z}"}) {
        replaceAll(url, std::string("$") + name, name);
        replaceAll(url, name, std::string("$") + name);
    }
    return url;
}

std::string describeService(const TileSourceOptions& options, const RasterRequest& request,
                            const Profile& profile, bool rowsFromSouth, bool offline)
{
    const Config conf = options.getConfig();
    const std::string format = conf.hasValue("format") ? conf.value("format") : std::string("png");
    const GeoExtent& e = profile.getExtent();
    unsigned wide, high;
    profile.getNumTiles(0, wide, high);
    const unsigned level = std::min(options.maxDataLevel().value(), 22u);
    const int tile = std::clamp(options.tileSize().value(), 16, 4096);
    const SpatialReference* srs = profile.getSRS();

    Stringify xml;
    xml << "<GDAL_WMS><Service name=\"TMS\"><ServerUrl>" << escape(addressTemplate(options, format))
        << "</ServerUrl></Service><DataWindow><UpperLeftX>" << toString(e.west())
        << "</UpperLeftX><UpperLeftY>" << toString(e.north()) << "</UpperLeftY><LowerRightX>"
        << toString(e.east()) << "</LowerRightX><LowerRightY>" << toString(e.south())
        << "</LowerRightY><TileLevel>" << level << "</TileLevel><TileCountX>" << wide
        << "</TileCountX><TileCountY>" << high << "</TileCountY><YOrigin>"
        << (rowsFromSouth ? "bottom" : "top") << "</YOrigin></DataWindow><Projection>"
        << (srs->isSphericalMercator() ? std::string("EPSG:3857") : escape(srs->getWKT()))
        << "</Projection><BlockSizeX>" << tile << "</BlockSizeX><BlockSizeY>" << tile << "</BlockSizeY>";
    if (request.heights)
        xml << "<BandsCount>1</BandsCount><DataType>Float32</DataType><DataValues NoData=\""
            << options.noDataValue().getOrUse(kNoHeight) << "\"/>";
    else
        xml << "<BandsCount>4</BandsCount>";
    xml << "<MaxConnections>2</MaxConnections><Timeout>" << kTimeoutSeconds
        << "</Timeout><ZeroBlockHttpCodes>204,404</ZeroBlockHttpCodes>"
        << "<UserAgent>AxEarthViewer</UserAgent><OfflineMode>" << (offline ? "true" : "false")
        << "</OfflineMode>";
    if (!request.cachePath.empty())
        xml << "<Cache><Path>" << escape(request.cachePath) << "</Path><MaxSize>" << kCacheBytes
            << "</MaxSize></Cache>";
    xml << "</GDAL_WMS>";
    return xml;
}

/// A service that may be away. After a failure it is left alone for a while,
/// longer each time, and only the disk cache answers meanwhile.
class ServiceRaster : public RasterSource
{
public:
    static std::shared_ptr<RasterSource> open(const TileSourceOptions& options, const RasterRequest& request,
                                              const Profile* profile, bool rowsFromSouth, Status& out_status)
    {
        const std::shared_ptr<ServiceRaster> self(new ServiceRaster);
        GdalRaster::Description d;
        d.title = options.url().value().full();
        d.layerName = request.layerName;
        d.heights = request.heights;
        self->_title = std::string(request.heights ? "Elevation" : "Image") + " layer \"" +
                       request.layerName + "\": tile service \"" + d.title + "\"";
        if (options.noDataValue().isSet())
            d.options.noDataValue() = options.noDataValue().value();
        if (!request.cacheOnly) {
            d.connection = describeService(options, request, *profile, rowsFromSouth, false);
            self->_online = GdalRaster::open(d, out_status);
            if (!self->_online)
                return nullptr;
            self->_online->setQuiet();
        }
        if (!request.cachePath.empty() || request.cacheOnly) {
            d.connection = describeService(options, request, *profile, rowsFromSouth, true);
            self->_offline = GdalRaster::open(d, out_status);
            if (!self->_offline)
                return nullptr;
            self->_offline->setQuiet();
        }
        self->_grid = (self->_online ? self->_online : self->_offline)->grid();
        // The first tile waits for the overview: four tiles of the service, not 64.
        self->_overviewPixels = 512LL * 512LL;
        self->_profile = profile;
        if (!self->describe()) {
            out_status = Status(Status::ConfigurationError, "its profile lies nowhere on the globe");
            return nullptr;
        }
        return self;
    }

    Answer readRgba(int level, int x, int y, int w, int h, unsigned char* rgba,
                    ProgressCallback* progress) override
    {
        const size_t pixels = static_cast<size_t>(w) * static_cast<size_t>(h);
        return ask(
            progress, [&](GdalRaster& raster) { return raster.readRgba(level, x, y, w, h, rgba, progress); },
            [&] {
                for (size_t i = 0; i < pixels; ++i)
                    if (rgba[i * 4 + 3] == 0)
                        return false;
                return true;
            });
    }

    Answer readFloats(int level, int x, int y, int w, int h, float* heights,
                      ProgressCallback* progress) override
    {
        const size_t pixels = static_cast<size_t>(w) * static_cast<size_t>(h);
        return ask(
            progress,
            [&](GdalRaster& raster) { return raster.readFloats(level, x, y, w, h, heights, progress); },
            [&] { return std::none_of(heights, heights + pixels, [](float v) { return std::isnan(v); }); });
    }

private:
    // The cache gives tiles it lacks as empty ones, so `complete` tells whether
    // asking again may give more.
    template <typename Read, typename Complete>
    Answer ask(ProgressCallback* progress, Read read, Complete complete)
    {
        if (_online && Clock::now() >= pauseEnd()) {
            const auto asked = Clock::now();
            const Answer answer = read(*_online);
            if (answer != Answer::Failed) {
                succeeded();
                return answer;
            }
            failed(asked, GdalRaster::lastError());
        }
        const Answer answer = _offline ? read(*_offline) : Answer::Failed;
        if (progress && _online && (answer != Answer::Data || !complete()))
            progress->setNeedsRetry(true);
        return answer;
    }

    Clock::time_point pauseEnd() const
    {
        std::lock_guard<std::mutex> lock(_mutex);
        return _pauseEnd;
    }

    void succeeded()
    {
        std::lock_guard<std::mutex> lock(_mutex);
        _pause = kFirstPause;
    }

    void failed(Clock::time_point asked, const std::string& cause)
    {
        bool first = false;
        {
            std::lock_guard<std::mutex> lock(_mutex);
            // Several threads may have asked the same dead server at once; that is one failure.
            if (asked >= _pauseEnd) {
                _pauseEnd = Clock::now() + _pause;
                _pause = std::min(_pause * 2, kLongestPause);
            }
            first = !_reported;
            _reported = true;
        }
        if (first)
            notifyLine(osg::WARN, _title + " fails, it is asked again later: " + cause);
    }

    std::string _title;
    std::shared_ptr<GdalRaster> _online, _offline;
    mutable std::mutex _mutex;
    Clock::time_point _pauseEnd{};
    std::chrono::milliseconds _pause = kFirstPause;
    bool _reported = false;
};
} // namespace

std::shared_ptr<RasterSource> openTileService(const TileSourceOptions& options, const RasterRequest& request,
                                              Status& out_status)
{
    if (!options.url().isSet() || options.url().value().empty()) {
        out_status = Status(Status::ConfigurationError, "no url is given");
        return nullptr;
    }
    const Config conf = options.getConfig();
    const bool tms = options.getDriver() == "tms";
    const std::string url = options.url().value().full();
    osg::ref_ptr<const Profile> profile;
    if (options.profile().isSet()) {
        profile = Profile::create(options.profile().value());
        if (!profile.valid()) {
            out_status =
                Status(Status::ConfigurationError, "\"" + url + "\" has a profile that is not understood");
            return nullptr;
        }
    }
    const bool inverted = tms ? toLower(conf.value("tms_type")) == "google"
                              : conf.value<bool>("invert_y", false) || url.find("{-y}") != std::string::npos;
    const bool rowsFromSouth = tms != inverted;
    if (!options.url().value().isRemote())
        return TileFolder::open(options, request, profile.get(), rowsFromSouth, out_status);
    if (!profile.valid())
        profile = tms ? Registry::instance()->getGlobalGeodeticProfile()
                      : Registry::instance()->getSphericalMercatorProfile();
    return ServiceRaster::open(options, request, profile.get(), rowsFromSouth, out_status);
}
} // namespace osgEarth
