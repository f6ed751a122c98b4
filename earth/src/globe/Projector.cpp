#include "globe/Projector.h"

#include "base/Gdal.h"

#include <map>
#include <memory>
#include <mutex>
#include <ogr_spatialref.h>

namespace osgEarth {
namespace projector {
namespace {
struct Free
{
    void operator()(OGRCoordinateTransformation* t) const { OGRCoordinateTransformation::DestroyCT(t); }
};

using Key = std::pair<const SpatialReference*, const SpatialReference*>;

class Cache
{
public:
    Cache()
    {
        // GDAL's own thread-local PROJ context must be born first, so that it
        // outlives the transformers when the thread ends.
        OGRSpatialReference warm;
        warm.SetWellKnownGeogCS("WGS84");
    }

    OGRCoordinateTransformation* get(const SpatialReference* from, const SpatialReference* to)
    {
        const Key key(from, to);
        const auto found = _transformers.find(key);
        if (found != _transformers.end())
            return found->second.get();
        std::lock_guard<std::recursive_mutex> lock(handleMutex());
        const gdal::ErrorCapture quiet;
        auto* created =
            OGRCreateCoordinateTransformation(static_cast<OGRSpatialReference*>(from->getHandle()),
                                              static_cast<OGRSpatialReference*>(to->getHandle()));
        _transformers[key].reset(created);
        return created;
    }

private:
    std::map<Key, std::unique_ptr<OGRCoordinateTransformation, Free>> _transformers;
};
} // namespace

bool transform(const SpatialReference* from, const SpatialReference* to, size_t count, double* x, double* y,
               double* z, int* ok)
{
    thread_local Cache cache;
    OGRCoordinateTransformation* transformer = cache.get(from, to);
    if (!transformer)
        return false;
    const gdal::ErrorCapture quiet;
    transformer->Transform(static_cast<int>(count), x, y, z, ok);
    return true;
}
} // namespace projector
} // namespace osgEarth
