#include "terrain/ReliefShade.h"

#include <osg/Math>
#include <osg/Vec3f>

#include <cmath>

namespace osgEarth {
namespace {
/// Light from the north-west, 45 degrees high: the convention of relief maps.
const osg::Vec3f kLight(-0.5f, 0.5f, 0.70710678f);
/// How far shade may move a colour; beyond this the picture under it is lost.
constexpr float kStrength = 0.75f;
constexpr float kDarkest = 0.5f;
constexpr float kLightest = 1.35f;
/// Sample spacing, metres, up to which slopes are shaded as they are.
constexpr float kTrueSlopeSpacing = 250.0f;

/// Wide spacing flattens slopes; without this the Alps vanish from a view of the whole globe.
float exaggeration(float spacing)
{
    return std::clamp(std::sqrt(spacing / kTrueSlopeSpacing), 1.0f, 6.0f);
}
} // namespace

ReliefShade::ReliefShade(const TileBounds& bounds, const HeightRaster& raster)
    : ReliefShade(bounds, raster, bounds, bounds.height() / (raster.size() - 1))
{
}

ReliefShade::ReliefShade(const TileBounds& bounds, const HeightRaster& raster, const TileBounds& tile,
                         double tileStepDegrees)
    : _size(raster.size()), _factors(static_cast<std::size_t>(_size) * static_cast<std::size_t>(_size), 1.0f)
{
    const double cells = _size - 1;
    _firstColumn = static_cast<float>((tile.west - bounds.west) / bounds.width() * cells);
    _columns = static_cast<float>(tile.width() / bounds.width() * cells);
    _firstRow = static_cast<float>((tile.south - bounds.south) / bounds.height() * cells);
    _rows = static_cast<float>(tile.height() / bounds.height() * cells);
    const float stepDegrees = static_cast<float>(bounds.height()) / static_cast<float>(_size - 1);
    const float spacing = stepDegrees * static_cast<float>(kMetresPerDegree);
    const float scale = exaggeration(static_cast<float>(tileStepDegrees * kMetresPerDegree));
    const float aspect = static_cast<float>(bounds.width() / bounds.height());
    std::size_t next = 0;
    for (int row = 0; row < _size; ++row) {
        const double latitude = bounds.south + static_cast<double>(stepDegrees) * row;
        const float cosLat = std::max(0.05f, static_cast<float>(std::cos(osg::DegreesToRadians(latitude))));
        const float perEast = scale / (2.0f * spacing * aspect * cosLat);
        const float perNorth = scale / (2.0f * spacing);
        for (int column = 0; column < _size; ++column) {
            const float slopeEast = (raster.at(column + 1, row) - raster.at(column - 1, row)) * perEast;
            const float slopeNorth = (raster.at(column, row + 1) - raster.at(column, row - 1)) * perNorth;
            float& factor = _factors[next++];
            if (slopeEast == 0.0f && slopeNorth == 0.0f)
                continue;
            _level = false;
            const float length = std::sqrt(slopeEast * slopeEast + slopeNorth * slopeNorth + 1.0f);
            const float lit =
                std::max(0.0f, (-slopeEast * kLight.x() - slopeNorth * kLight.y() + kLight.z()) / length);
            factor = std::clamp(1.0f + kStrength * (lit - kLight.z()) / kLight.z(), kDarkest, kLightest);
        }
    }
}

void ReliefShade::factorsAlong(float v, std::vector<float>& factors) const
{
    const auto cellOf = [this](float position) {
        return std::clamp(static_cast<int>(position), 0, _size - 2);
    };
    const float y = _firstRow + std::clamp(v, 0.0f, 1.0f) * _rows;
    const int row = cellOf(y);
    const float fy = y - static_cast<float>(row);
    const float* south = _factors.data() + static_cast<std::size_t>(row) * static_cast<std::size_t>(_size);
    const float* north = south + _size;
    const float step = _columns / static_cast<float>(factors.size() - 1);
    for (std::size_t i = 0; i < factors.size(); ++i) {
        const float x = _firstColumn + step * static_cast<float>(i);
        const int column = cellOf(x);
        const float fx = x - static_cast<float>(column);
        const float west = south[column] + (north[column] - south[column]) * fy;
        const float east = south[column + 1] + (north[column + 1] - south[column + 1]) * fy;
        factors[i] = west + (east - west) * fx;
    }
}
} // namespace osgEarth
