#include "features/OgrFeatureSource.h"
#include "base/Gdal.h"
#include "symbology/OgrGeometry.h"
#include <cmath>
#include <cpl_string.h>
#include <ogr_api.h>
#include <osgDB/FileUtils>
#include <osgEarth/StringUtils>

namespace osgEarth::Features {
namespace {
AttributeType attributeTypeOf(OGRFieldDefnH field)
{
    switch (OGR_Fld_GetType(field)) {
    case OFTInteger:
        return OGR_Fld_GetSubType(field) == OFSTBoolean ? ATTRTYPE_BOOL : ATTRTYPE_INT;
    case OFTInteger64: // beyond the range of int
    case OFTReal:
        return ATTRTYPE_DOUBLE;
    default:
        return ATTRTYPE_STRING;
    }
}

Geometry::Type geometryTypeOf(OGRwkbGeometryType type)
{
    switch (wkbFlatten(type)) {
    case wkbPoint:
    case wkbMultiPoint:
        return Geometry::TYPE_POINTSET;
    case wkbLineString:
    case wkbMultiLineString:
        return Geometry::TYPE_LINESTRING;
    case wkbPolygon:
    case wkbMultiPolygon:
        return Geometry::TYPE_POLYGON;
    default:
        return Geometry::TYPE_UNKNOWN;
    }
}

/// Index of the first of the columns, compared without case; -1 when there is none.
int findColumn(OGRFeatureDefnH definition, std::initializer_list<const char*> names)
{
    for (const char* name : names) {
        const int index = OGR_FD_GetFieldIndex(definition, name);
        if (index >= 0)
            return index;
    }
    return -1;
}

/// The reference system of a profile whose rectangle does not matter; null when it is not understood.
const SpatialReference* systemOf(const ProfileOptions& options)
{
    if (options.srsString().isSet())
        return SpatialReference::get(options.srsString().value());
    const Profile* named = Profile::createNamed(options.namedProfile().value());
    return named ? named->getSRS() : SpatialReference::get(options.namedProfile().value());
}

/// Tells OGR to detect the types of a text table's columns; without it all of them are text.
GDALDatasetH openWith(const std::string& location, const std::string& onlyDriver)
{
    const char* const drivers[] = {onlyDriver.c_str(), nullptr};
    const char* const options[] = {"AUTODETECT_TYPE=YES", "EMPTY_STRING_AS_NULL=YES", nullptr};
    const bool text = endsWith(location, ".csv", false) || endsWith(location, ".tsv", false);
    return GDALOpenEx(location.c_str(), GDAL_OF_VECTOR | GDAL_OF_READONLY | GDAL_OF_VERBOSE_ERROR,
                      onlyDriver.empty() ? nullptr : drivers, text ? options : nullptr, nullptr);
}
} // namespace

OgrFeatureSource::OgrFeatureSource(const Drivers::OGRFeatureOptions& options)
    : FeatureSource(options), _ogr(options),
      _location(options.connection().isSet() ? options.connection().value() : options.url()->full())
{
}

std::string OgrFeatureSource::lastError() const
{
    std::lock_guard<std::mutex> lock(_mutex);
    return _error;
}

Status OgrFeatureSource::initialize(const osgDB::Options*)
{
    std::lock_guard<std::mutex> lock(_mutex);
    if (_ogr.geometry().valid()) {
        const Bounds b = _ogr.geometry()->getBounds();
        setFeatureProfile(new FeatureProfile(GeoExtent(SpatialReference::get("wgs84"), b)));
        _type = _ogr.geometry()->getType();
        _count = 1;
        return Status::OK();
    }
    if (_location.empty())
        return Status(Status::ConfigurationError, "the feature source names no url");

    Status status = openDataset();
    if (status.isOK())
        status = chooseLayer();
    if (status.isError()) {
        _layer = nullptr;
        _dataset.reset();
    }
    return status;
}

Status OgrFeatureSource::openDataset()
{
    if (_ogr.url().isSet() && !_ogr.connection().isSet() && !_ogr.url()->isRemote() &&
        _location.compare(0, 4, "/vsi") != 0 && osgDB::fileType(_location) == osgDB::FILE_NOT_FOUND)
        return Status(Status::ResourceUnavailable, _location + ": no such file");

    gdal::initialize();
    gdal::ErrorCapture errors;
    _dataset.reset(openWith(_location, _ogr.ogrDriver().value()));
    if (!_dataset)
        return Status(Status::ResourceUnavailable,
                      _location + ": " +
                          (errors.failed() ? errors.message() : "not a vector format that OGR knows"));
    return Status::OK();
}

Status OgrFeatureSource::chooseLayer()
{
    gdal::ErrorCapture errors;
    const int layers = GDALDatasetGetLayerCount(_dataset.get());
    if (_ogr.layer().isSet()) {
        const std::string& wanted = _ogr.layer().value();
        _layer = GDALDatasetGetLayerByName(_dataset.get(), wanted.c_str());
        const int index = osgEarth::as<int>(wanted, -1);
        if (!_layer && index >= 0 && index < layers)
            _layer = GDALDatasetGetLayer(_dataset.get(), index);
        if (!_layer)
            return Status(Status::ConfigurationError, _location + ": no layer \"" + wanted + "\" in it");
    } else if (layers > 0)
        _layer = GDALDatasetGetLayer(_dataset.get(), 0);
    if (!_layer)
        return Status(Status::ResourceUnavailable, _location + ": no layers in it");

    readSchema();
    if (_type == Geometry::TYPE_UNKNOWN && OGR_L_GetGeomType(_layer) == wkbNone)
        return Status(Status::ResourceUnavailable,
                      _location + ": neither geometry nor lon and lat columns in it");

    osg::ref_ptr<const SpatialReference> srs;
    if (_ogr.profile().isSet())
        srs = systemOf(_ogr.profile().value());
    else if (OGRSpatialReferenceH own = _lonField < 0 ? OGR_L_GetSpatialRef(_layer) : nullptr)
        srs = SpatialReference::createFromHandle(own);
    else
        srs = SpatialReference::get("wgs84");
    if (!srs)
        return Status(Status::ResourceUnavailable, _location + ": reference system not understood");

    OGREnvelope box{};
    GeoExtent extent(srs.get());
    if (_lonField < 0 && OGR_L_GetExtent(_layer, &box, TRUE) == OGRERR_NONE)
        extent = GeoExtent(srs.get(), box.MinX, box.MinY, box.MaxX, box.MaxY);
    else if (_lonField >= 0)
        extent = GeoExtent(srs.get(), -180.0, -90.0, 180.0, 90.0);
    setFeatureProfile(new FeatureProfile(extent));
    _count = static_cast<int>(OGR_L_GetFeatureCount(_layer, TRUE));
    return Status::OK();
}

void OgrFeatureSource::readSchema()
{
    OGRFeatureDefnH definition = OGR_L_GetLayerDefn(_layer);
    for (int i = 0; i < OGR_FD_GetFieldCount(definition); ++i) {
        OGRFieldDefnH field = OGR_FD_GetFieldDefn(definition, i);
        _schema[OGR_Fld_GetNameRef(field)] = attributeTypeOf(field);
    }
    _type = geometryTypeOf(OGR_L_GetGeomType(_layer));
    if (OGR_L_GetGeomType(_layer) == wkbNone) {
        _lonField = findColumn(definition, {"lon", "longitude", "lng", "x"});
        _latField = findColumn(definition, {"lat", "latitude", "y"});
        if (_lonField >= 0 && _latField >= 0)
            _type = Geometry::TYPE_POINTSET;
        else
            _lonField = _latField = -1;
    }
}

Feature* OgrFeatureSource::convert(OGRFeatureH row) const
{
    osg::ref_ptr<Geometry> geometry;
    if (_lonField >= 0) {
        const double lon = OGR_F_GetFieldAsDouble(row, _lonField),
                     lat = OGR_F_GetFieldAsDouble(row, _latField);
        if (!OGR_F_IsFieldSetAndNotNull(row, _lonField) || !OGR_F_IsFieldSetAndNotNull(row, _latField) ||
            !(std::abs(lon) <= 360.0) || !(std::abs(lat) <= 90.0))
            return nullptr;
        geometry = new PointSet();
        geometry->push_back(lon, lat, 0.0);
    } else
        geometry = fromOgr(OGR_F_GetGeometryRef(row));
    if (!geometry)
        return nullptr;

    auto* feature =
        new Feature(geometry.get(), getFeatureProfile()->getSRS(), Style(), FeatureID(OGR_F_GetFID(row)));
    for (int i = 0; i < OGR_F_GetFieldCount(row); ++i) {
        OGRFieldDefnH field = OGR_F_GetFieldDefnRef(row, i);
        const std::string name = OGR_Fld_GetNameRef(field);
        const AttributeType type = attributeTypeOf(field);
        if (!OGR_F_IsFieldSetAndNotNull(row, i))
            feature->setNull(name, type);
        else if (type == ATTRTYPE_INT)
            feature->set(name, OGR_F_GetFieldAsInteger(row, i));
        else if (type == ATTRTYPE_BOOL)
            feature->set(name, OGR_F_GetFieldAsInteger(row, i) != 0);
        else if (type == ATTRTYPE_DOUBLE)
            feature->set(name, OGR_F_GetFieldAsDouble(row, i));
        else
            feature->set(name, std::string(OGR_F_GetFieldAsString(row, i)));
    }
    const optional<std::string>& fid = getFeatureSourceOptions().fidAttribute();
    if (fid.isSet() && feature->isSet(fid.value()))
        feature->setFID(FeatureID(feature->getInt(fid.value())));
    if (getFeatureSourceOptions().geoInterp().isSet())
        feature->geoInterp() = getFeatureSourceOptions().geoInterp().value();
    return feature;
}

FeatureCursor* OgrFeatureSource::createFeatureCursor(const Symbology::Query& query)
{
    std::lock_guard<std::mutex> lock(_mutex);
    _error.clear();
    FeatureList features;
    if (_ogr.geometry().valid()) {
        features.push_back(new Feature(_ogr.geometry()->clone(), SpatialReference::get("wgs84")));
        return new FeatureListCursor(features);
    }
    if (!_layer) {
        _error = getStatus().message();
        return nullptr;
    }

    gdal::ErrorCapture errors;
    if (query.expression().isSet() &&
        OGR_L_SetAttributeFilter(_layer, query.expression()->c_str()) != OGRERR_NONE) {
        _error =
            _location + ": query \"" + query.expression().value() + "\" not understood: " + errors.message();
        return nullptr;
    }
    if (query.bounds().isSet() && _lonField < 0)
        OGR_L_SetSpatialFilterRect(_layer, query.bounds()->xMin(), query.bounds()->yMin(),
                                   query.bounds()->xMax(), query.bounds()->yMax());
    OGR_L_ResetReading(_layer);
    while (OGRFeatureH row = OGR_L_GetNextFeature(_layer)) {
        osg::ref_ptr<Feature> feature = convert(row);
        OGR_F_Destroy(row);
        if (feature && query.bounds().isSet() && _lonField >= 0 &&
            !query.bounds()->contains(feature->getGeometry()->front().x(),
                                      feature->getGeometry()->front().y()))
            continue;
        if (feature)
            features.push_back(feature);
    }
    OGR_L_SetAttributeFilter(_layer, nullptr);
    OGR_L_SetSpatialFilter(_layer, nullptr);
    if (errors.failed() && features.empty()) {
        _error = _location + ": " + errors.message();
        return nullptr;
    }
    return new FeatureListCursor(features);
}
} // namespace osgEarth::Features
