#include "base/Gdal.h"

#include <cpl_conv.h>
#include <cstring>
#include <gdal.h>
#include <mutex>

namespace osgEarth {
namespace gdal {
namespace {
// Size of GDAL's cache of decoded blocks. Tiles are composed once and kept as textures: half as much costs 1
// % more work on a tour over small blocks, but large ones (1024 x 1024 heights are 4 MB) would drive each
// other out.
constexpr GIntBig kBlockCacheBytes = 8 * 1024 * 1024;
} // namespace

void initialize()
{
    static std::once_flag once;
    std::call_once(once, [] {
        GDALAllRegister();
        GDALSetCacheMax64(kBlockCacheBytes);
        // Time limits in seconds for requests to the web, unless the host has set its own.
        if (!CPLGetConfigOption("GDAL_HTTP_CONNECTTIMEOUT", nullptr))
            CPLSetConfigOption("GDAL_HTTP_CONNECTTIMEOUT", "3");
        if (!CPLGetConfigOption("GDAL_HTTP_TIMEOUT", nullptr))
            CPLSetConfigOption("GDAL_HTTP_TIMEOUT", "4");
    });
}

ErrorCapture::ErrorCapture()
{
    CPLPushErrorHandlerEx(&ErrorCapture::receive, this);
}

ErrorCapture::~ErrorCapture()
{
    CPLPopErrorHandler();
}

void CPL_STDCALL ErrorCapture::receive(CPLErr level, CPLErrorNum, const char* text)
{
    if (level < CE_Failure || !text)
        return;
    auto* self = static_cast<ErrorCapture*>(CPLGetErrorHandlerUserData());
    // GDAL first reports that its cache lacks the file. What the server answered
    // comes in a later message, on one of several lines.
    if (const char* web = std::strstr(text, "HTTP status code")) {
        self->_message.assign(web, std::strcspn(web, "\r\n"));
        return;
    }
    if (!self->_message.empty())
        return;
    for (const char* c = text; *c; ++c)
        self->_message += (*c == '\n' || *c == '\r' || *c == '\t') ? ' ' : *c;
}
} // namespace gdal
} // namespace osgEarth
