#pragma once
#include <osgEarth/SpatialReference>

#include "globe/Ellipsoid.h"
#include "globe/Wgs84.h"

#include <mutex>
#include <ogr_spatialref.h>
#include <string>

namespace osgEarth {
/// What a system is made of: filled once by describe, constant after that but for `geocentric`.
struct SpatialReference::Impl
{
    /// Geographic, geocentric and spherical Mercator systems have closed formulas; PROJ does the others.
    enum class Kind
    {
        Geographic,
        Geocentric,
        SphericalMercator,
        Other
    };

    OGRSpatialReference ogr;
    Kind kind = Kind::Other;
    bool plateCarre = false, mercator = false, northPolar = false, southPolar = false;
    std::string name, wkt, init, vertical, datum;
    Units units = Units::METERS;
    Ellipsoid ellipsoid{wgs84::kEquatorialRadius, wgs84::kPolarRadius};
    osg::ref_ptr<osg::EllipsoidModel> model;
    osg::ref_ptr<SpatialReference> geographic; ///< null when the system is its own
    std::mutex mutex;
    osg::ref_ptr<SpatialReference> geocentric;

    /// Fills all from `ogr`, which was read from the words `asked`; false when it has no use here.
    bool describe(const std::string& asked);
};
} // namespace osgEarth
