#include <osgEarth/SpatialReference>

#include "core/Ellipsoid.h"
#include "core/Gdal.h"
#include "core/Projector.h"

#include <osgEarth/Notify>
#include <osgEarth/StringUtils>

#include <algorithm>
#include <cmath>
#include <map>
#include <mutex>
#include <ogr_spatialref.h>

namespace osgEarth {
namespace {
constexpr double kRad = 3.14159265358979323846 / 180.0;
constexpr double kDeg = 1.0 / kRad;
// Where spherical Mercator's square ends.
constexpr double kMercatorLatitude = 85.05112877980659;
// Spherical Mercator's radius, and the equator's.
constexpr double kRadius = 6378137.0;
constexpr double kPlateCarreMetres = kRadius * kRad;

enum class Kind
{
    Geographic,
    Geocentric,
    SphericalMercator,
    Other
};

double wrapLongitude(double lon, double centre)
{
    return lon + 360.0 * std::round((centre - lon) / 360.0);
}
} // namespace

struct SpatialReference::Impl
{
    OGRSpatialReference ogr;
    Kind kind = Kind::Other;
    bool plateCarre = false, mercator = false, northPolar = false, southPolar = false;
    std::string name, wkt, init, vertical, datum;
    Units units = Units::METERS;
    Ellipsoid ellipsoid{osg::WGS_84_RADIUS_EQUATOR, osg::WGS_84_RADIUS_POLAR};
    osg::ref_ptr<osg::EllipsoidModel> model;
    osg::ref_ptr<SpatialReference> geographic; // null when the system is its own
    std::mutex mutex;
    osg::ref_ptr<SpatialReference> geocentric;

    bool describe(const std::string& asked);
};

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

// Shared systems only with the pool locked.
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
    if (!i.geographic.valid() && (i.kind != Kind::Geographic || i.plateCarre)) {
        auto geographic = std::make_unique<Impl>();
        // Spherical Mercator's latitudes are WGS 84's; other systems carry their own.
        const bool wgs84 =
            i.kind == Kind::SphericalMercator || (i.kind == Kind::Geocentric && isWgs84(i.ogr));
        if (wgs84)
            geographic->ogr.SetWellKnownGeogCS("WGS84");
        else if (i.kind == Kind::Geocentric)
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

// ---- transformations

namespace {
void mercatorToGeographic(osg::Vec3d& p)
{
    p.x() = p.x() / kRadius * kDeg;
    p.y() = std::atan(std::sinh(p.y() / kRadius)) * kDeg;
}

bool geographicToMercator(osg::Vec3d& p)
{
    // At the poles themselves the projection is infinite.
    if (std::abs(p.y()) >= 90.0 - 1e-9)
        return false;
    p.x() = p.x() * kRad * kRadius;
    p.y() = std::asinh(std::tan(p.y() * kRad)) * kRadius;
    return true;
}

void geocentricToGeographic(const Ellipsoid& ellipsoid, osg::Vec3d& p)
{
    double lat, lon, height;
    ellipsoid.toGeodetic(p, lat, lon, height);
    p.set(lon * kDeg, lat * kDeg, height);
}

void geographicToGeocentric(const Ellipsoid& ellipsoid, osg::Vec3d& p)
{
    p = ellipsoid.toGeocentric(p.y() * kRad, p.x() * kRad, p.z());
}

bool finite(const osg::Vec3d& p)
{
    return std::isfinite(p.x()) && std::isfinite(p.y()) && std::isfinite(p.z());
}
} // namespace

bool SpatialReference::transform(std::vector<osg::Vec3d>& points, const SpatialReference* out) const
{
    if (!out)
        return false;
    if (this == out || points.empty())
        return true;

    const Impl& a = *_impl;
    const Impl& b = *out->_impl;
    const SpatialReference* fromGeo = getGeographicSRS();
    const SpatialReference* toGeo = out->getGeographicSRS();
    const bool sameDatum = fromGeo == toGeo || fromGeo->isEquivalentTo(toGeo);

    // Closed formulas lead from and to the geographic system; PROJ does what is left between.
    const bool firstClosed = a.kind == Kind::Geocentric || (sameDatum && a.kind != Kind::Other);
    const bool lastClosed = b.kind == Kind::Geocentric || (sameDatum && b.kind != Kind::Other);
    const SpatialReference* midFrom = firstClosed ? fromGeo : this;
    const SpatialReference* midTo = lastClosed ? toGeo : out;
    const bool needsProj = midFrom != midTo && !(firstClosed && lastClosed && sameDatum);

    const std::vector<osg::Vec3d> original = points;
    std::vector<char> good(points.size(), 1);
    for (size_t i = 0; i < points.size(); ++i) {
        if (!finite(points[i]))
            good[i] = 0;
        else if (a.kind == Kind::Geocentric)
            geocentricToGeographic(a.ellipsoid, points[i]);
        else if (a.kind == Kind::SphericalMercator && firstClosed)
            mercatorToGeographic(points[i]);
    }
    if (needsProj) {
        const size_t n = points.size();
        std::vector<double> x(n), y(n), z(n);
        std::vector<int> ok(n, 0);
        for (size_t i = 0; i < n; ++i) {
            x[i] = points[i].x();
            y[i] = points[i].y();
            z[i] = points[i].z();
        }
        if (!projector::transform(midFrom, midTo, n, x.data(), y.data(), z.data(), ok.data())) {
            points = original;
            return false;
        }
        for (size_t i = 0; i < n; ++i) {
            points[i].set(x[i], y[i], z[i]);
            if (!ok[i] || !finite(points[i]))
                good[i] = 0;
        }
    }
    bool all = true;
    for (size_t i = 0; i < points.size(); ++i) {
        if (good[i] && b.kind == Kind::Geocentric)
            geographicToGeocentric(b.ellipsoid, points[i]);
        else if (good[i] && b.kind == Kind::SphericalMercator && lastClosed)
            good[i] = geographicToMercator(points[i]);
        if (!good[i]) {
            points[i] = original[i];
            all = false;
        }
    }
    return all;
}

bool SpatialReference::transform(const osg::Vec3d& input, const SpatialReference* out,
                                 osg::Vec3d& output) const
{
    if (!out)
        return false;
    if (this == out) {
        output = input;
        return true;
    }
    // The per-frame case, without the detour over a vector.
    if (getGeographicSRS() == out->getGeographicSRS() && _impl->kind != Kind::Other &&
        out->_impl->kind != Kind::Other && finite(input)) {
        osg::Vec3d p = input;
        if (_impl->kind == Kind::Geocentric)
            geocentricToGeographic(_impl->ellipsoid, p);
        else if (_impl->kind == Kind::SphericalMercator)
            mercatorToGeographic(p);
        if (out->_impl->kind == Kind::Geocentric)
            geographicToGeocentric(out->_impl->ellipsoid, p);
        else if (out->_impl->kind == Kind::SphericalMercator && !geographicToMercator(p))
            return false;
        output = p;
        return true;
    }
    std::vector<osg::Vec3d> one(1, input);
    if (!transform(one, out))
        return false;
    output = one[0];
    return true;
}

bool SpatialReference::transform2D(double x, double y, const SpatialReference* out, double& out_x,
                                   double& out_y) const
{
    osg::Vec3d p;
    if (!transform(osg::Vec3d(x, y, 0.0), out, p))
        return false;
    out_x = p.x();
    out_y = p.y();
    return true;
}

double SpatialReference::transformUnits(double distance, const SpatialReference* out, double latitude) const
{
    if (!out)
        return distance;
    if (isGeographic() == out->isGeographic())
        return getUnits().convertTo(out->getUnits(), distance);
    const double metresPerDegree = kRad * _impl->ellipsoid.semiMajor() * std::cos(latitude * kRad);
    if (isGeographic())
        return Units::METERS.convertTo(out->getUnits(), distance * metresPerDegree);
    return getUnits().convertTo(Units::METERS, distance) / metresPerDegree;
}

double SpatialReference::transformUnits(const Distance& distance, const SpatialReference* out,
                                        double latitude)
{
    if (!out)
        return distance.getValue();
    if (!out->isGeographic())
        return distance.as(out->getUnits());
    return distance.as(Units::METERS) /
           (kRad * out->_impl->ellipsoid.semiMajor() * std::cos(latitude * kRad));
}

bool SpatialReference::transformToWorld(const osg::Vec3d& input, osg::Vec3d& out_world) const
{
    if (isPlateCarre()) {
        out_world.set(input.x() * kPlateCarreMetres, input.y() * kPlateCarreMetres, input.z());
        return true;
    }
    if (isGeographic()) {
        osg::Vec3d p = input;
        if (!finite(p))
            return false;
        geographicToGeocentric(_impl->ellipsoid, p);
        out_world = p;
        return true;
    }
    out_world = input;
    return true;
}

bool SpatialReference::transformFromWorld(const osg::Vec3d& world, osg::Vec3d& out_local,
                                          double* out_geodeticZ) const
{
    if (!finite(world))
        return false;
    if (isPlateCarre())
        out_local.set(world.x() / kPlateCarreMetres, world.y() / kPlateCarreMetres, world.z());
    else if (isGeographic()) {
        osg::Vec3d p = world;
        geocentricToGeographic(_impl->ellipsoid, p);
        out_local = p;
    } else
        out_local = world;
    if (out_geodeticZ)
        *out_geodeticZ = out_local.z();
    return true;
}

bool SpatialReference::transformExtentToMBR(const SpatialReference* to, double& xmin, double& ymin,
                                            double& xmax, double& ymax) const
{
    if (!to)
        return false;
    if (this == to)
        return true;
    double south = ymin, north = ymax;
    if (isGeographic() && to->isSphericalMercator()) {
        south = std::clamp(south, -kMercatorLatitude, kMercatorLatitude);
        north = std::clamp(north, -kMercatorLatitude, kMercatorLatitude);
    }
    // Edges bulge between their corners, and a pole may lie inside.
    constexpr int n = 20;
    std::vector<osg::Vec3d> points;
    for (int row = 0; row <= n; ++row)
        for (int col = 0; col <= n; ++col)
            if (row % 5 == 0 || col % 5 == 0)
                points.emplace_back(xmin + (xmax - xmin) * col / n, south + (north - south) * row / n, 0.0);
    std::vector<osg::Vec3d> moved = points;
    transform(moved, to);
    // Failed points came back unchanged; try each alone to know which.
    double out[4] = {0, 0, 0, 0};
    bool any = false;
    double centre = 0.0;
    for (size_t i = 0; i < points.size(); ++i) {
        if (moved[i] == points[i]) {
            osg::Vec3d again;
            if (!transform(points[i], to, again))
                continue;
        }
        osg::Vec3d p = moved[i];
        if (!any)
            centre = p.x();
        // Neighbours across the antimeridian stay neighbours.
        if (to->isGeographic() && !isGeographic() && !isSphericalMercator())
            p.x() = wrapLongitude(p.x(), centre);
        if (!any) {
            out[0] = out[2] = p.x();
            out[1] = out[3] = p.y();
            any = true;
            continue;
        }
        out[0] = std::min(out[0], p.x());
        out[1] = std::min(out[1], p.y());
        out[2] = std::max(out[2], p.x());
        out[3] = std::max(out[3], p.y());
    }
    if (!any)
        return false;
    xmin = out[0];
    ymin = out[1];
    xmax = out[2];
    ymax = out[3];
    return true;
}

bool SpatialReference::createLocalToWorld(const osg::Vec3d& point, osg::Matrixd& out) const
{
    if (!finite(point))
        return false;
    if (!isECEF() && (!isGeographic() || isPlateCarre())) {
        osg::Vec3d world;
        transformToWorld(point, world);
        out.makeTranslate(world);
        return true;
    }
    osg::Vec3d world = point, geodetic = point;
    if (isECEF())
        geocentricToGeographic(_impl->ellipsoid, geodetic);
    else
        geographicToGeocentric(_impl->ellipsoid, world);
    const double lon = geodetic.x() * kRad, lat = geodetic.y() * kRad;
    const double sl = std::sin(lon), cl = std::cos(lon), sp = std::sin(lat), cp = std::cos(lat);
    // Rows: east, north, up, origin.
    out.set(-sl, cl, 0.0, 0.0, -sp * cl, -sp * sl, cp, 0.0, cp * cl, cp * sl, sp, 0.0, world.x(), world.y(),
            world.z(), 1.0);
    return true;
}

bool SpatialReference::createWorldToLocal(const osg::Vec3d& point, osg::Matrixd& out) const
{
    osg::Matrixd local2world;
    if (!createLocalToWorld(point, local2world))
        return false;
    out.invert(local2world);
    return true;
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
    return _impl->kind == Kind::Geographic;
}
bool SpatialReference::isProjected() const
{
    return _impl->kind == Kind::SphericalMercator || _impl->kind == Kind::Other;
}
bool SpatialReference::isECEF() const
{
    return _impl->kind == Kind::Geocentric;
}
bool SpatialReference::isMercator() const
{
    return _impl->mercator || isSphericalMercator();
}
bool SpatialReference::isSphericalMercator() const
{
    return _impl->kind == Kind::SphericalMercator;
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
