#pragma once
#include "sources/HeightGrid.h"

#include <memory>
#include <optional>
#include <osgEarth/SpatialReference>
#include <vector>

namespace osgEarth {
struct RasterGrid;

/// A copy in memory of what a raster of heights has in and around a rectangle:
/// its samples, and beyond the edge of its valid cells ever coarser means of
/// them, out of which a step to other ground is blended. Immutable, so any
/// thread may ask.
class HeightWindow
{
public:
    /// `samples` may be empty, and are `whole` where they fill the rectangle without a hole. `outward` comes
    /// finest first.
    HeightWindow(HeightGrid samples, bool whole, std::vector<std::shared_ptr<const HeightGrid>> outward,
                 const RasterGrid& raster, double cellSizeDegrees, double fullCellSizeDegrees);

    /// Bilinear between sample centres in the source's own projection, metres;
    /// within half a sample of the raster's rim the rim sample counts. Empty
    /// outside and where a sample that matters has no data. WGS 84 degrees.
    std::optional<double> heightAt(double lonDeg, double latDeg) const;

    /// Column and row of a place in the raster; false where its projection has none.
    bool locate(double lonDeg, double latDeg, double& column, double& row) const;
    /// The samples there; within a cell beyond the valid ones their cover falls from 1 to 0.
    HeightSample at(double column, double row) const
    {
        return _samples.empty() ? HeightSample() : _samples.atWithRim(column, row);
    }
    /// Heights on a grid, a row for each latitude; false, with nothing written, where the window is not whole
    /// or its columns and rows are not meridians and parallels. Much faster than to ask for each place.
    bool sample(const std::vector<double>& lonsDeg, const std::vector<double>& latsDeg, float* heights) const;
    const std::vector<std::shared_ptr<const HeightGrid>>& outward() const { return _outward; }

    /// Whether there is a height everywhere in the rectangle.
    bool isWhole() const { return _isWhole; }
    /// Degrees a sample on the ground, of the copy.
    double cellSizeDegrees() const { return _cellSizeDegrees; }
    /// The same of the raster.
    double fullCellSizeDegrees() const { return _degreesPerPixel; }
    /// Degrees a cell on the ground, of one of the grids in `outward`.
    double cellSizeOf(const HeightGrid& grid) const { return _degreesPerPixel * grid.place().cellWidth; }
    /// Whether the copy has the raster's own samples.
    bool isFullResolution() const { return _cellSizeDegrees <= 1.001 * _degreesPerPixel; }

private:
    HeightGrid _samples;
    bool _isWhole;
    std::vector<std::shared_ptr<const HeightGrid>> _outward;
    double _fromSource[6];
    osg::ref_ptr<const SpatialReference> _srs;
    bool _geographic;
    double _centreLongitude;
    double _cellSizeDegrees;
    double _degreesPerPixel;
};
} // namespace osgEarth
