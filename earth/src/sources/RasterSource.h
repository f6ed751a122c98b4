#pragma once
#include <osgEarth/GeoData>
#include <osgEarth/Profile>
#include <osgEarth/Progress>
#include <osgEarth/Status>
#include <osgEarth/TileSource>

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace osgEarth {
// A window of more samples than this is a request gone wrong, not a tile.
constexpr long long kMaxWindowPixels = 4096LL * 4096LL;

class HeightGrid;
class HeightWindow;
enum class Resampling;
struct PixelBox;

/// A raster of heights as a whole, kept in memory: coarse grids, each half the one before.
struct HeightOverview
{
    /// Of the raster, of the first grid.
    int firstLevel = 0;
    std::vector<std::shared_ptr<const HeightGrid>> grids;
    /// Whether its lowest and highest heights are those of the samples and not of means.
    bool exact = false;
};

/// What the layer tells the source it opens.
struct RasterRequest
{
    std::string layerName;
    bool heights = false;
    std::string cachePath;
    bool cacheOnly = false;
};

/// A raster's full-resolution grid on the map. Columns and rows count from the
/// corner of the first pixel, which is an area.
struct RasterGrid
{
    int width = 0, height = 0;
    double toSrs[6] = {0, 1, 0, 0, 0, 1};
    double fromSrs[6] = {0, 1, 0, 0, 0, 1};
    osg::ref_ptr<const SpatialReference> srs;
    bool wraps = false; ///< the last column's neighbour is the first (whole circle of longitudes)

    bool northUp() const { return toSrs[2] == 0.0 && toSrs[4] == 0.0; }
    /// Columns and rows at level n: each level halves, rounding up.
    int widthAt(int level) const { return std::max(1, ((width - 1) >> level) + 1); }
    int heightAt(int level) const { return std::max(1, ((height - 1) >> level) + 1); }
    /// Coarsest level that still has more than one pixel.
    int levels() const;
};

/// A raster that pictures or heights come from: a pyramid of levels, each half
/// the one before, of which rectangles of pixels are read and resampled here.
/// Because every read is cut from the same pyramid, neighbouring tiles meet
/// without a seam. All reading may be done by several threads at once.
class RasterSource
{
public:
    enum class Answer
    {
        Data,
        Nothing, ///< no data there
        Failed   ///< asked in vain; may work later
    };

    /// Null, with the reason in `out_status`, when it cannot be opened. Waits
    /// for no network.
    static std::shared_ptr<RasterSource> open(const TileSourceOptions& options, const RasterRequest& request,
                                              Status& out_status);
    virtual ~RasterSource();

    const RasterGrid& grid() const { return _grid; }
    const Profile* profile() const { return _profile.get(); }
    const GeoExtent& geographicExtent() const { return _geographicExtent; }
    double resolutionDegrees() const { return _resolutionDegrees; }

    /// A square picture of a rectangle: RGBA bytes, row 0 south.
    Answer readImage(const GeoExtent& extent, int size, osg::ref_ptr<osg::Image>& out,
                     ProgressCallback* progress);
    /// See osgEarth::readHeightWindow.
    std::shared_ptr<const HeightWindow> readHeights(const GeoExtent& geographicExtent,
                                                    double wantedCellDegrees, double reachDegrees,
                                                    ProgressCallback* progress);
    /// Made at the first call, which reads the raster through; null when that fails.
    std::shared_ptr<const HeightOverview> heightOverview(ProgressCallback* progress);
    /// The rectangle of the raster that holds a geographic one; false where its projection has none.
    bool pixelBoxOf(const GeoExtent& geographicExtent, PixelBox& out) const;

protected:
    RasterSource();
    /// Whether the colours of the layer's pictures may not mix.
    static bool isNearest(const TileSourceOptions& options);
    /// Derives the rest from `_grid`; false when it lies nowhere on the map.
    bool describe();

public:
    /// Pixels of one level, rows from the north, RGBA bytes not premultiplied.
    /// The rectangle lies within the level.
    virtual Answer readRgba(int level, int x, int y, int w, int h, unsigned char* rgba,
                            ProgressCallback* progress) = 0;
    /// The same for heights in metres, NaN for none.
    virtual Answer readFloats(int level, int x, int y, int w, int h, float* heights,
                              ProgressCallback* progress) = 0;

protected:
    RasterGrid _grid;
    osg::ref_ptr<const Profile> _profile;
    /// At most this many samples are read for the overview.
    long long _overviewPixels = 2048LL * 2048LL;

private:
    std::shared_ptr<const HeightGrid> readGrid(int level, int x0, int y0, int w, int h,
                                               ProgressCallback* progress);
    std::vector<std::shared_ptr<const HeightGrid>>
    readOutward(const PixelBox& box, int level, double reachDegrees, ProgressCallback* progress);
    // Reads a rectangle that may reach over the antimeridian of a wrapping raster.
    template <typename T, int N, typename Read>
    Answer readWrapped(int level, int x, int w, int h, std::vector<T>& out, Read read);
    Answer readFloatsWrapped(int level, int x, int y, int w, int h, std::vector<float>& out,
                             ProgressCallback* progress);

    Resampling _resampling;
    GeoExtent _geographicExtent;
    double _resolutionDegrees = 0.0;
    std::mutex _overviewMutex;
    std::shared_ptr<const HeightOverview> _overview;
};
} // namespace osgEarth
