#pragma once
#include <memory>
#include <ogr_api.h>
#include <osgEarthSymbology/Geometry>

/// The one place where geometry goes to OGR and comes back. Coordinates are
/// copied as they are, x and y first; rings are closed there and open here.
namespace osgEarth::Features {
struct OgrGeometryDeleter
{
    void operator()(void* geometry) const { OGR_G_DestroyGeometry(static_cast<OGRGeometryH>(geometry)); }
};
typedef std::unique_ptr<void, OgrGeometryDeleter> OgrGeometryPtr;

/// Null for geometry that OGR has no counterpart of (no points at all).
OgrGeometryPtr toOgr(const Symbology::Geometry& geometry);

/// Null for a null, empty or curved geometry.
osg::ref_ptr<Symbology::Geometry> fromOgr(OGRGeometryH geometry);

/// Well-known text and back; empty or null when it cannot be done.
std::string toWkt(const Symbology::Geometry& geometry);
osg::ref_ptr<Symbology::Geometry> fromWkt(const std::string& wkt);
} // namespace osgEarth::Features
