#pragma once
#include "sources/RasterSource.h"

#include <gdal_priv.h>
#include <mutex>

namespace osgEarth {
/// A raster that GDAL opens. A GDAL handle is for one thread at a time, so
/// there is a pool of them: as many as threads have read at once.
class GdalRaster : public RasterSource
{
public:
    /// How to open a handle, and how to call it in messages.
    struct Description
    {
        std::string connection;
        std::string title;
        std::string layerName;
        bool heights = false;
        TileSourceOptions options;
    };

    static std::shared_ptr<RasterSource> openFile(const TileSourceOptions& options,
                                                  const RasterRequest& request, Status& out_status);
    /// Null, with the reason in `out_status`, when GDAL does not open it.
    static std::shared_ptr<GdalRaster> open(const Description& description, Status& out_status);
    ~GdalRaster() override;

    Answer readRgba(int level, int x, int y, int w, int h, unsigned char* rgba,
                    ProgressCallback* progress) override;
    Answer readFloats(int level, int x, int y, int w, int h, float* heights,
                      ProgressCallback* progress) override;

    /// GDAL's words for the last failed read of this thread.
    static const std::string& lastError();
    /// Failed reads are logged (once) unless the owner does that.
    void setQuiet() { _reported = true; }

private:
    struct CloseDataset
    {
        void operator()(GDALDataset* dataset) const;
    };
    using Handle = std::unique_ptr<GDALDataset, CloseDataset>;

    /// A handle for the time of one read.
    class Lease
    {
    public:
        explicit Lease(GdalRaster& owner);
        ~Lease();
        Lease(const Lease&) = delete;
        Lease& operator=(const Lease&) = delete;
        GDALDataset* get() const { return _handle.get(); }

    private:
        GdalRaster& _owner;
        std::unique_lock<std::mutex> _turn;
        Handle _handle;
    };

    struct Channels
    {
        int red = 1, green = 1, blue = 1; ///< band numbers
        int alpha = 0;                    ///< 0 for none
        bool mask = false;                ///< band 1's mask tells what is valid
        bool noData = false;
        double noDataValue = 0.0;
        bool stretch = false; ///< not 8 bits: low to high becomes 0 to 255
        double low[3] = {0, 0, 0}, high[3] = {255, 255, 255};
        std::vector<unsigned char> palette; ///< RGBA an index; empty for none
    };

    explicit GdalRaster(const Description& description)
        : _description(description), _nearest(!description.heights && isNearest(description.options))
    {
    }
    bool openFirst(Status& out_status);
    Handle openHandle() const;
    bool placeOnMap(GDALDataset& dataset, std::string& out_cause);
    void describeChannels(GDALDataset& dataset);
    void measureStretch(GDALDataset& dataset);
    void describeHeights(GDALDataset& dataset);
    void decodeOnce();

    bool readBand(GDALRasterBand& band, int level, int x, int y, int w, int h, void* out, GDALDataType type,
                  int pixelSpace, bool average, bool mask = false) const;
    bool readBytes(GDALDataset& dataset, int level, int x, int y, int w, int h, unsigned char* rgba) const;
    bool readStretched(GDALDataset& dataset, int level, int x, int y, int w, int h,
                       unsigned char* rgba) const;
    Answer failed(const std::string& cause);

    const Description _description;
    const bool _nearest;
    Channels _channels;
    bool _heightNoData = false;
    bool _mapNoData = false; ///< the map file states the no-data value, GDAL does not know it
    double _heightNoDataValue = 0.0;
    double _heightScale = 1.0, _heightOffset = 0.0;
    double _heightMin = 0.0, _heightMax = 0.0;

    std::mutex _mutex;
    std::vector<Handle> _free;
    std::once_flag _decodeOnce;
    bool _shouldDecode = false;
    bool _single = false; ///< only one handle exists, readers take turns
    std::mutex _turns;
    std::atomic<bool> _reported{false};
};
} // namespace osgEarth
