#include "globe/SpatialReferenceImpl.h"

#include "base/Gdal.h"
#include "globe/Projector.h"

#include <osgEarth/Notify>
#include <osgEarth/StringUtils>

#include <algorithm>
#include <cmath>
#include <map>

namespace osgEarth {
namespace {
// All systems of the process. Definitions that mean the same share one
// instance, so that comparing pointers is nearly always enough.
struct Pool
{
    std::recursive_mutex mutex;
    std::map<std::string, osg::ref_ptr<SpatialReference>> byInit;
    std::vector<osg::ref_ptr<SpatialReference>> all;
    std::map<std::pair<const SpatialReference*, const SpatialReference*>, bool> same;
};

Pool& pool()
{
    static Pool* instance = new Pool; // outlives every static that still holds a system
    return *instance;
}

// The pool must be locked while either system is a shared one.
bool sameSystem(const OGRSpatialReference& a, const OGRSpatialReference& b)
{
    static const char* const options[] = {"IGNORE_DATA_AXIS_TO_SRS_AXIS_MAPPING=YES",
                                          "CRITERION=EQUIVALENT_EXCEPT_AXIS_ORDER_GEOGCRS", nullptr};
    return a.IsSame(&b, options) != 0;
}

std::string expandName(const std::string& init)
{
    const std::string name = toLower(trim(init));
    if (name == "wgs84" || name == "wgs-84" || name == "geodetic" || name == "global-geodetic" ||
        name == "plate-carre" || name == "plate-carree" || name == "plate_carre" || name == "eqc-wgs84")
        return "EPSG:4326";
    if (name == "spherical-mercator" || name == "global-mercator" || name == "web-mercator" ||
        name == "google-mercator" || name == "epsg:900913" || name == "epsg:3785")
        return "EPSG:3857";
    if (name == "geocentric" || name == "ecef")
        return "EPSG:4978";
    return trim(init);
}

bool isWgs84(const OGRSpatialReference& ogr)
{
    const char* datum = ogr.GetAttrValue("DATUM");
    return datum && EQUAL(datum, "WGS_1984");
}

bool isPlateCarreName(const std::string& init)
{
    const std::string name = toLower(trim(init));
    return startsWith(name, "plate-carre") || name == "plate_carre" || name == "eqc-wgs84";
}
} // namespace

std::recursive_mutex& projector::handleMutex()
{
    return pool().mutex;
}

bool SpatialReference::Impl::describe(const std::string& asked)
{
    ogr.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    if (ogr.IsCompound())
        ogr.StripVertical();
    if (ogr.GetAxesCount() == 3 && !ogr.IsGeocentric())
        ogr.DemoteTo2D(nullptr);
    if (!ogr.IsGeographic() && !ogr.IsProjected() && !ogr.IsGeocentric())
        return false;

    const double a = ogr.GetSemiMajor(), b = ogr.GetSemiMinor();
    ellipsoid = Ellipsoid(a, b);
    model = new osg::EllipsoidModel(a, b);
    init = asked;
    const char* text = ogr.GetName();
    name = text ? text : "";
    text = ogr.GetAttrValue("DATUM");
    datum = text ? text : "";
    char* raw = nullptr;
    if (ogr.exportToWkt(&raw) == OGRERR_NONE && raw)
        wkt = raw;
    CPLFree(raw);

    if (ogr.IsGeocentric())
        kind = Kind::Geocentric;
    else if (ogr.IsGeographic()) {
        kind = Kind::Geographic;
        units = Units::DEGREES;
    } else {
        const char* projection = ogr.GetAttrValue("PROJECTION");
        const std::string method = projection ? projection : "";
        mercator =
            startsWith(method, "Mercator") || method.find("Popular_Visualisation") != std::string::npos;
        northPolar =
            method.find("Polar") != std::string::npos && ogr.GetProjParm(SRS_PP_LATITUDE_OF_ORIGIN) > 0.0;
        southPolar =
            method.find("Polar") != std::string::npos && ogr.GetProjParm(SRS_PP_LATITUDE_OF_ORIGIN) < 0.0;
        const double factor = ogr.GetLinearUnits();
        if (std::abs(factor - 0.3048) < 1e-9)
            units = Units::FEET;
        else if (std::abs(factor - 1200.0 / 3937.0) < 1e-9)
            units = Units::FEET_US_SURVEY;
        OGRSpatialReference web;
        web.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
        if (web.importFromEPSG(3857) == OGRERR_NONE && sameSystem(ogr, web))
            kind = Kind::SphericalMercator;
    }
    return true;
}

SpatialReference::SpatialReference(std::unique_ptr<Impl> impl) : osg::Referenced(true), _impl(std::move(impl))
{
}

SpatialReference::~SpatialReference() = default;

SpatialReference* SpatialReference::share(std::unique_ptr<Impl> impl)
{
    Pool& p = pool();
    for (const auto& known : p.all)
        if (known->_impl->plateCarre == impl->plateCarre && known->_impl->kind == impl->kind &&
            sameSystem(known->_impl->ogr, impl->ogr))
            return known.get();

    osg::ref_ptr<SpatialReference> srs = new SpatialReference(std::move(impl));
    p.all.push_back(srs);
    Impl& i = *srs->_impl;
    if (!i.geographic.valid() && (i.kind != Impl::Kind::Geographic || i.plateCarre)) {
        auto geographic = std::make_unique<Impl>();
        // Spherical Mercator's latitudes are WGS 84's; other systems carry their own.
        const bool wgs84 =
            i.kind == Impl::Kind::SphericalMercator || (i.kind == Impl::Kind::Geocentric && isWgs84(i.ogr));
        if (wgs84)
            geographic->ogr.SetWellKnownGeogCS("WGS84");
        else if (i.kind == Impl::Kind::Geocentric)
            geographic->ogr.SetGeogCS(i.name.c_str(), i.datum.c_str(), i.ogr.GetAttrValue("SPHEROID"),
                                      i.ogr.GetSemiMajor(), i.ogr.GetInvFlattening());
        else
            geographic->ogr.CopyGeogCSFrom(&i.ogr);
        if (geographic->describe(""))
            i.geographic = share(std::move(geographic));
    }
    return srs.get();
}

SpatialReference* SpatialReference::create(const std::string& init, const std::string& vinit)
{
    const std::string key = toLower(trim(init));
    if (key.empty())
        return nullptr;
    Pool& p = pool();
    std::lock_guard<std::recursive_mutex> lock(p.mutex);
    const auto found = p.byInit.find(key);
    if (found != p.byInit.end())
        return found->second.get();

    gdal::initialize();
    gdal::ErrorCapture errors;
    auto impl = std::make_unique<Impl>();
    impl->plateCarre = isPlateCarreName(init);
    impl->vertical = vinit;
    if (impl->ogr.SetFromUserInput(expandName(init).c_str()) != OGRERR_NONE || !impl->describe(init)) {
        notifyLine(osg::WARN, "Spatial reference \"" + trim(init) + "\" is not understood" +
                                  (errors.failed() ? ": " + errors.message() : std::string()));
        return nullptr;
    }
    SpatialReference* srs = share(std::move(impl));
    p.byInit[key] = srs;
    return srs;
}

SpatialReference* SpatialReference::createFromHandle(void* ogrHandle, bool xferOwnership)
{
    auto* given = static_cast<OGRSpatialReference*>(ogrHandle);
    if (!given)
        return nullptr;
    gdal::initialize();
    const gdal::ErrorCapture quiet;
    auto impl = std::make_unique<Impl>();
    impl->ogr = *given;
    if (xferOwnership)
        given->Release();
    if (!impl->describe(""))
        return nullptr;
    std::lock_guard<std::recursive_mutex> lock(pool().mutex);
    return share(std::move(impl));
}

bool SpatialReference::isEquivalentTo(const SpatialReference* rhs) const
{
    if (this == rhs)
        return true;
    if (!rhs || _impl->kind != rhs->_impl->kind || _impl->plateCarre != rhs->_impl->plateCarre)
        return false;
    Pool& p = pool();
    std::lock_guard<std::recursive_mutex> lock(p.mutex);
    const std::pair<const SpatialReference*, const SpatialReference*> key(std::min(this, rhs),
                                                                          std::max(this, rhs));
    const auto found = p.same.find(key);
    if (found != p.same.end())
        return found->second;
    return p.same[key] = sameSystem(_impl->ogr, rhs->_impl->ogr);
}

const SpatialReference* SpatialReference::getGeographicSRS() const
{
    return _impl->geographic.valid() ? _impl->geographic.get() : this;
}

const SpatialReference* SpatialReference::getECEF() const
{
    if (isECEF())
        return this;
    const SpatialReference* geographic = getGeographicSRS();
    Impl& i = *geographic->_impl;
    std::lock_guard<std::mutex> lock(i.mutex);
    if (!i.geocentric.valid()) {
        const gdal::ErrorCapture quiet;
        auto impl = std::make_unique<Impl>();
        std::lock_guard<std::recursive_mutex> poolLock(pool().mutex);
        impl->ogr.SetGeocCS("geocentric");
        impl->ogr.CopyGeogCSFrom(&i.ogr);
        impl->ogr.SetLinearUnits(SRS_UL_METER, 1.0);
        // OGR copies no geographic system out of a geocentric one.
        impl->geographic = const_cast<SpatialReference*>(geographic);
        if (impl->describe("geocentric"))
            i.geocentric = share(std::move(impl));
    }
    return i.geocentric.get();
}

// ---- derived systems

const SpatialReference* SpatialReference::createTransMercFromLongitude(const Angle& lon) const
{
    return create(Stringify() << "+proj=tmerc +lat_0=0 +lon_0=" << lon.as(Units::DEGREES)
                              << " +k=1 +x_0=0 +y_0=0 +datum=WGS84 +units=m +no_defs");
}

const SpatialReference* SpatialReference::createUTMFromLonLat(const Angle& lon, const Angle& lat) const
{
    const double east = lon.as(Units::DEGREES) + 180.0;
    const double fromDateLine = east - 360.0 * std::floor(east / 360.0);
    const int zone = std::clamp(static_cast<int>(std::floor(fromDateLine / 6.0)) + 1, 1, 60);
    const int epsg = (lat.as(Units::DEGREES) >= 0.0 ? 32600 : 32700) + zone;
    return create(Stringify() << "EPSG:" << epsg);
}

const SpatialReference* SpatialReference::createEquirectangularSRS() const
{
    return create("+proj=eqc +units=m +no_defs +datum=WGS84");
}

osg::CoordinateSystemNode* SpatialReference::createCoordinateSystemNode() const
{
    auto* csn = new osg::CoordinateSystemNode;
    populateCoordinateSystemNode(csn);
    return csn;
}

bool SpatialReference::populateCoordinateSystemNode(osg::CoordinateSystemNode* csn) const
{
    if (!csn)
        return false;
    csn->setFormat("WKT");
    csn->setCoordinateSystem(_impl->wkt);
    csn->setEllipsoidModel(isGeographic() || isECEF() ? new osg::EllipsoidModel(*_impl->model) : nullptr);
    return true;
}

// ---- properties

bool SpatialReference::isGeographic() const
{
    return _impl->kind == Impl::Kind::Geographic;
}
bool SpatialReference::isProjected() const
{
    return _impl->kind == Impl::Kind::SphericalMercator || _impl->kind == Impl::Kind::Other;
}
bool SpatialReference::isECEF() const
{
    return _impl->kind == Impl::Kind::Geocentric;
}
bool SpatialReference::isMercator() const
{
    return _impl->mercator || isSphericalMercator();
}
bool SpatialReference::isSphericalMercator() const
{
    return _impl->kind == Impl::Kind::SphericalMercator;
}
bool SpatialReference::isPlateCarre() const
{
    return _impl->plateCarre;
}
bool SpatialReference::isNorthPolar() const
{
    return _impl->northPolar;
}
bool SpatialReference::isSouthPolar() const
{
    return _impl->southPolar;
}
const std::string& SpatialReference::getName() const
{
    return _impl->name;
}
const osg::EllipsoidModel* SpatialReference::getEllipsoid() const
{
    return _impl->model.get();
}
const std::string& SpatialReference::getWKT() const
{
    return _impl->wkt;
}
const std::string& SpatialReference::getHorizInitString() const
{
    return _impl->init;
}
const std::string& SpatialReference::getVertInitString() const
{
    return _impl->vertical;
}
const std::string& SpatialReference::getDatumName() const
{
    return _impl->datum;
}
const Units& SpatialReference::getUnits() const
{
    return _impl->units;
}
void* SpatialReference::getHandle() const
{
    return &_impl->ogr;
}
} // namespace osgEarth
