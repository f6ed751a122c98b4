#include <AxData/geofiles/AxGeoSession.h>

#include <cpl_conv.h>
#include <cpl_vsi.h>
#include <gdal.h>

#include <atomic>

namespace {
constexpr int mostErrors = 20;
}

AxGeoSession::AxGeoSession()
{
    static const bool isReady = [] {
        GDALAllRegister();
        return true;
    }();
    static_cast<void>(isReady);
    static std::atomic<unsigned> count{0};
    folder = "/vsimem/axgeofile-" + QByteArray::number(count++) + '/';
    VSIMkdir(folder.chopped(1).constData(), 0700);
    CPLPushErrorHandlerEx(&AxGeoSession::receive, this);
}

AxGeoSession::~AxGeoSession()
{
    VSIRmdirRecursive(folder.constData());
    for (auto entry = former.rbegin(); entry != former.rend(); ++entry)
        CPLSetThreadLocalConfigOption(entry->first.constData(),
                                      entry->second.isNull() ? nullptr : entry->second.constData());
    CPLPopErrorHandler();
}

void AxGeoSession::Set(const char* key, const char* value)
{
    former.emplace_back(key, CPLGetThreadLocalConfigOption(key, nullptr));
    CPLSetThreadLocalConfigOption(key, value);
}

QStringList AxGeoSession::TakeErrors()
{
    return std::exchange(errors, {});
}

void CPL_STDCALL AxGeoSession::receive(CPLErr level, CPLErrorNum, const char* text)
{
    if (level < CE_Failure || !text)
        return;
    QStringList& errors = static_cast<AxGeoSession*>(CPLGetErrorHandlerUserData())->errors;
    const QString line = QString::fromUtf8(text).simplified().left(300);
    if (errors.size() < mostErrors && !errors.contains(line))
        errors += line;
}
