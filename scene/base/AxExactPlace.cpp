#include "scene/base/AxExactPlace.h"
#include "scene/base/AxLongitudes.h"

#include <osg/CoordinateSystemNode>
#include <osg/Math>

#include <cmath>
#include <limits>

namespace {
// Whether the float is what the value was rounded to, by a conversion that may differ in the last digits.
bool IsRoundingOf(double rounded, double value)
{
    const auto single = static_cast<float>(rounded);
    constexpr float infinity = std::numeric_limits<float>::infinity();
    const double step = static_cast<double>(std::nextafter(std::abs(single), infinity) - std::abs(single));
    constexpr double share = 0.501;
    return static_cast<double>(single) == rounded && std::abs(value - rounded) <= share * step;
}

// What was no rounding at all stays to the last digit.
double Exact(double rounded, double value)
{
    constexpr double same = 1e-9; // degrees
    return std::abs(value - rounded) < same ? rounded : value;
}

thread_local std::optional<osg::Vec3d> placeOnModel;
} // namespace

void AxTellExactPlace(const std::optional<osg::Vec3d>& onModel)
{
    placeOnModel = onModel;
}

osg::Vec3d AxExactPlace(const osg::Vec3d& lngLatPos, const osg::Vec3d& worldCoordPos)
{
    static const osg::ref_ptr<const osg::EllipsoidModel> earth = new osg::EllipsoidModel;
    if (placeOnModel && IsRoundingOf(lngLatPos.x(), placeOnModel->x()) &&
        IsRoundingOf(lngLatPos.y(), placeOnModel->y()))
        return {Exact(lngLatPos.x(), placeOnModel->x()), Exact(lngLatPos.y(), placeOnModel->y()),
                lngLatPos.z()};
    if (!worldCoordPos.valid() || worldCoordPos == osg::Vec3d())
        return lngLatPos;
    double latitude = 0.0;
    double longitude = 0.0;
    double altitude = 0.0;
    earth->convertXYZToLatLongHeight(worldCoordPos.x(), worldCoordPos.y(), worldCoordPos.z(), latitude,
                                     longitude, altitude);
    latitude = osg::RadiansToDegrees(latitude);
    longitude = AxLongitudes::NearestTo(lngLatPos.x(), osg::RadiansToDegrees(longitude));
    if (!IsRoundingOf(lngLatPos.x(), longitude) || !IsRoundingOf(lngLatPos.y(), latitude))
        return lngLatPos;
    return {Exact(lngLatPos.x(), longitude), Exact(lngLatPos.y(), latitude), lngLatPos.z()};
}
