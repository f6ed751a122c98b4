#pragma once
#include <osgEarth/GeoData>

#include <vector>

namespace osgEarth {
struct RasterGrid;

/// Where the pixel centres of a square output tile lie in a raster, in columns
/// and rows of its full resolution.
class PixelMap
{
public:
    /// `size` pixels on a side, row 0 in the south. Points that cannot be
    /// expressed in the raster's system are NaN.
    PixelMap(const GeoExtent& extent, int size, const RasterGrid& grid);

    /// Whether column depends on the output column only, and row on the row only.
    bool separable() const { return _separable; }
    const std::vector<double>& columns() const { return _columns; } ///< size, or size * size
    const std::vector<double>& rows() const { return _rows; }

    /// Raster pixels an output pixel covers, the finer direction.
    double step() const { return _step; }
    /// Bounds of all finite positions; false when there is none.
    bool bounds(double& c0, double& r0, double& c1, double& r1) const;

private:
    void mapSeparably(const GeoExtent& extent, const RasterGrid& grid);
    void mapGrid(const GeoExtent& extent, const RasterGrid& grid);
    void measureStep();

    int _size;
    bool _separable = false;
    std::vector<double> _columns, _rows;
    double _step = 1.0;
};

/// A rectangle of RGBA pixels of one pyramid level, rows from the north.
struct PixelWindow
{
    std::vector<unsigned char> rgba;
    int x = 0, y = 0, width = 0, height = 0;
};

/// How pixels are made of those of a raster.
enum class Resampling
{
    Bilinear, ///< colour weighted by alpha
    Nearest   ///< for classes and the like, whose colours may not mix
};

/// Draws the window through the map.
/// `scaleX`, `scaleY`: full-resolution pixels a window pixel. Positions outside of
/// [0, columns] x [0, rows] of the raster become transparent. Returns whether
/// anything visible was drawn.
bool drawWindow(const PixelMap& map, int size, const PixelWindow& window, double scaleX, double scaleY,
                const RasterGrid& grid, Resampling resampling, unsigned char* out);
} // namespace osgEarth
