#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Vec3d>
#include <osgEarth/Bounds>

#include <QVector>

#include <vector>

/// A ring of longitude and latitude in 8 bytes a point instead of 24: in ten-millionths of a degree from a
/// whole degree beside it. Coordinates of seven decimals come back to the bit, any others within 5.6 mm in
/// longitude and in latitude. Copies share the points; nothing changes them, so any thread may read them.
class AXEARTHVIEWER_EXPORT AxZoneRing
{
public:
    /// Whether all points are finite and no two of them are more than 400 degrees apart.
    static bool Fits(const std::vector<osg::Vec3d>& points);

    AxZoneRing() = default;
    /// Of longitude, latitude that fit; what else the points have is left out.
    explicit AxZoneRing(const std::vector<osg::Vec3d>& points);

    /// Whether it has no point.
    bool IsEmpty() const { return numbers.isEmpty(); }
    /// Longitude, latitude, 0.
    std::vector<osg::Vec3d> Points() const;
    /// Around the points, to the bit; not valid without any.
    osgEarth::Bounds Box() const;

private:
    /// The whole degree from which longitudes count, then longitude and latitude of each point.
    QVector<qint32> numbers;
};
