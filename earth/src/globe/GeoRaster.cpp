#include <osgEarth/GeoData>

#include <algorithm>
#include <cmath>

namespace osgEarth {
namespace {
/// Shares of the corners [row][column] of a cell in the height at (x, y) within it, both 0..1.
void weigh(double x, double y, ElevationInterpolation interp, double (&weights)[2][2])
{
    if (interp == INTERP_NEAREST) {
        x = std::round(x);
        y = std::round(y);
    }
    // A cell of two triangles is cut from its south-western to its north-eastern corner.
    const double both = interp == INTERP_TRIANGULATE ? std::min(x, y) : x * y;
    weights[0][0] = 1.0 - x - y + both;
    weights[0][1] = x - both;
    weights[1][0] = y - both;
    weights[1][1] = both;
}
} // namespace

const GeoImage GeoImage::INVALID;
const GeoHeightField GeoHeightField::INVALID;

double GeoImage::getUnitsPerPixel() const
{
    return valid() && _image->t() > 0 ? _extent.height() / _image->t() : 0.0;
}

GeoHeightField::GeoHeightField(osg::HeightField* heightField, const GeoExtent& extent)
    : _heightField(heightField), _extent(extent)
{
    if (!heightField || heightField->getNumColumns() < 2 || heightField->getNumRows() < 2)
        return;
    heightField->setOrigin(
        osg::Vec3(static_cast<float>(extent.west()), static_cast<float>(extent.south()), 0.0f));
    heightField->setXInterval(static_cast<float>(getXInterval()));
    heightField->setYInterval(static_cast<float>(getYInterval()));
}

double GeoHeightField::getXInterval() const
{
    return valid() ? _extent.width() / (_heightField->getNumColumns() - 1) : 0.0;
}

double GeoHeightField::getYInterval() const
{
    return valid() ? _extent.height() / (_heightField->getNumRows() - 1) : 0.0;
}

bool GeoHeightField::getElevation(const SpatialReference* inputSRS, double x, double y,
                                  ElevationInterpolation interp, const SpatialReference*, float& out) const
{
    if (!valid() || !inputSRS || !_extent.contains(x, y, inputSRS))
        return false;
    if (!inputSRS->transform2D(x, y, _extent.getSRS(), x, y))
        return false;
    double dx = x - _extent.west();
    if (_extent.getSRS()->isGeographic() && dx < 0.0)
        dx += 360.0;
    const double column = dx / getXInterval(), row = (y - _extent.south()) / getYInterval();
    const unsigned columns = _heightField->getNumColumns(), rows = _heightField->getNumRows();
    const auto c0 = static_cast<unsigned>(std::clamp(std::floor(column), 0.0, columns - 2.0));
    const auto r0 = static_cast<unsigned>(std::clamp(std::floor(row), 0.0, rows - 2.0));
    double weights[2][2];
    weigh(column - c0, row - r0, interp, weights);
    double sum = 0.0;
    for (unsigned r = 0; r < 2; ++r)
        for (unsigned c = 0; c < 2; ++c) {
            const double weight = weights[r][c];
            if (weight <= 0.0)
                continue;
            const float height = _heightField->getHeight(c0 + c, r0 + r);
            if (height == NO_DATA_VALUE)
                return false;
            sum += weight * height;
        }
    out = static_cast<float>(sum);
    return true;
}
} // namespace osgEarth
