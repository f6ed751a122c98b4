#include "base/Gdal.h"

#include <cpl_conv.h>
#include <cstring>
#include <gdal.h>
#include <mutex>

namespace osgEarth {
namespace gdal {
namespace {
// Decoded blocks that GDAL keeps; tiles are composed once and cached as
// textures. Four times as much would spare a twentieth of the work.
constexpr GIntBig kBlockCacheBytes = 8 * 1024 * 1024;
} // namespace

void initialize()
{
    static std::once_flag once;
    std::call_once(once, [] {
        GDALAllRegister();
        GDALSetCacheMax64(kBlockCacheBytes);
        // Bounds for whatever asks the web; a host's own settings stand.
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
    // A web service first complains of the file that its cache lacks; the
    // server's own answer comes later, on a line among others.
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
