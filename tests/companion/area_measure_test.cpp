#include <AxAlgorthm/AxAreaMeasure.h>

#include <GeographicLib/Geodesic.hpp>
#include <GeographicLib/PolygonArea.hpp>

#include <gtest/gtest.h>

#include <cmath>

namespace {
using Ring = std::vector<CAxVector3D>;
const double radian = std::acos(-1.0) / 180.0;
constexpr double areaOfEarth = 510065621724088.44; // square metres, WGS 84

// A plane in degrees: so many metres higher with each metre to the east and to the north, around a place.
AxPathGround Tilted(double longitude, double latitude, double east, double north)
{
    AxPathGround ground;
    ground.height = [=](double lng, double lat) -> std::optional<double> {
        const double metres = 6371000.0 * radian;
        return 1000.0 + east * (lng - longitude) * metres * std::cos(latitude * radian) +
               north * (lat - latitude) * metres;
    };
    return ground;
}
} // namespace

TEST(AreaMeasure, AgreesOnTheEllipsoid)
{
    const struct
    {
        const char* what;
        Ring ring;
        double area;
    } rows[] = {
        {"octant", {{0, 0, 0}, {90, 0, 0}, {0, 90, 0}}, areaOfEarth / 8.0},
        {"octant over the antimeridian, clockwise",
         {{0, -90, 0}, {135, 0, 0}, {-135, 0, 0}},
         areaOfEarth / 8.0},
        {"half", {{0, 0, 0}, {90, 0, 0}, {180, 0, 0}, {-90, 0, 0}}, areaOfEarth / 2.0},
    };
    for (const auto& row : rows) {
        const AxAreaFigures figures = AxMeasureArea(row.ring);
        EXPECT_NEAR(figures.area, row.area, 1e-9 * row.area) << row.what;
        EXPECT_FALSE(figures.isCrossed) << row.what;
    }
    // Around the north pole, and an ordinary field.
    for (const Ring& ring :
         {Ring{{10, 85, 0}, {100, 86, 0}, {-160, 84.5, 0}, {-80, 85, 0}},
          Ring{{179.99, 10, 0}, {-179.98, 10.01, 0}, {-179.99, 10.02, 0}, {179.995, 10.015, 0}}}) {
        GeographicLib::PolygonArea polygon(GeographicLib::Geodesic::WGS84());
        for (const CAxVector3D& place : ring)
            polygon.AddPoint(place.y(), place.x());
        double perimeter = 0.0;
        double area = 0.0;
        polygon.Compute(false, true, perimeter, area);
        const AxAreaFigures figures = AxMeasureArea(ring);
        EXPECT_NEAR(figures.area, area, 1e-9 * area);
        EXPECT_NEAR(figures.perimeter, perimeter, 1e-9 * perimeter);
        EXPECT_FALSE(figures.isCrossed);
    }
}

TEST(AreaMeasure, TellsOutlinesThatCross)
{
    for (const double longitude : {-105.0, 179.995}) {
        const Ring ring{{longitude, 37, 0},
                        {longitude + 0.01, 37.01, 0},
                        {longitude + 0.01, 37, 0},
                        {longitude, 37.01, 0}};
        const AxAreaFigures figures = AxMeasureArea(ring, Tilted(longitude, 37, 0, 0));
        EXPECT_TRUE(figures.isCrossed);
        EXPECT_TRUE(std::isnan(figures.area));
        EXPECT_TRUE(std::isnan(figures.overGround));
        EXPECT_GT(figures.perimeter, 0.0);
    }
    EXPECT_TRUE(std::isnan(AxMeasureArea({{0, 0, 0}, {1, 0, 0}}).area));
    EXPECT_TRUE(std::isnan(AxMeasureArea({}).perimeter));
}

TEST(AreaMeasure, MeasuresTheGroundOfATiltedPlane)
{
    const double longitude = -105.0;
    const double latitude = 37.4;
    // A wide one, a small one, a narrow one along the diagonal, and one with a dent.
    const Ring rings[] = {{{0, 0, 0}, {0.1, 0, 0}, {0.1, 0.08, 0}, {0, 0.08, 0}},
                          {{0, 0, 0}, {0.00005, 0, 0}, {0.00002, 0.00006, 0}},
                          {{0, 0, 0}, {0.1, 0.1, 0}, {0.0999, 0.1001, 0}},
                          {{0, 0, 0}, {0.02, 0, 0}, {0.02, 0.02, 0}, {0.01, 0.002, 0}, {0, 0.02, 0}}};
    for (Ring ring : rings) {
        for (CAxVector3D& place : ring)
            place = CAxVector3D(longitude + place.x(), latitude + place.y(), 0);
        for (const auto& [east, north] : {std::pair{0.0, 0.0}, {0.3, 0.0}, {0.2, -0.5}}) {
            const AxPathGround ground = Tilted(longitude, latitude, east, north);
            const AxAreaFigures figures = AxMeasureArea(ring, ground);
            // What a plane of these slopes has at the height of its middle.
            double middle = 0.0;
            for (const CAxVector3D& place : ring)
                middle += *ground.height(place.x(), place.y()) / double(ring.size());
            const double expected = figures.area * std::sqrt(1.0 + east * east + north * north) *
                                    std::pow(1.0 + middle / 6371000.0, 2.0);
            EXPECT_NEAR(figures.overGround, expected, 1e-3 * expected)
                << ring.size() << ' ' << east << ' ' << north;
        }
    }
    AxPathGround torn = Tilted(longitude, latitude, 0.1, 0.1);
    torn.height = [height = torn.height](double lng, double lat) -> std::optional<double> {
        return lng < -104.99 ? height(lng, lat) : std::nullopt;
    };
    const Ring half{{-105, 37.4, 0}, {-104.98, 37.4, 0}, {-104.98, 37.42, 0}, {-105, 37.42, 0}};
    EXPECT_TRUE(std::isnan(AxMeasureArea(half, torn).overGround));
    EXPECT_GT(AxMeasureArea(half, torn).area, 0.0);
}

TEST(PlaneMeasure, FitsThePlane)
{
    const CAxVector3D from(-105.0, 37.4, 0);
    const CAxVector3D to(-104.99, 37.405, 0);
    for (const double bearing : {90.0, 30.0}) {
        const auto corners = AxRectangleOver(from, to, bearing);
        double azimuth = 0.0;
        double end = 0.0;
        double width = 0.0;
        GeographicLib::Geodesic::WGS84().Inverse(corners[0].y(), corners[0].x(), corners[1].y(),
                                                 corners[1].x(), width, azimuth, end);
        EXPECT_NEAR(std::remainder(azimuth - bearing, 180.0), 0.0, 1e-6);
        const struct
        {
            double east, north, dip, aspect;
        } rows[] = {{0.0, 0.0, 0.0, NAN},
                    {0.1, 0.0, 5.710593, 270.0},
                    {0.0, -1.0, 45.0, 0.0},
                    {-0.3, -0.4, 26.565051, 36.869898}};
        for (const auto& row : rows) {
            const AxPlaneFigures figures =
                AxMeasurePlane(corners, Tilted(-104.995, 37.4025, row.east, row.north));
            EXPECT_NEAR(figures.width, width, 1e-6);
            // The made-up ground counts degrees on a sphere.
            EXPECT_NEAR(figures.dip, row.dip, 0.15);
            EXPECT_NEAR(figures.onPlane, figures.area / std::cos(row.dip * radian), 4e-3 * figures.area);
            EXPECT_NEAR(figures.roughness, 0.0, 0.05);
            if (std::isnan(row.aspect))
                EXPECT_TRUE(std::isnan(figures.aspect));
            else
                EXPECT_NEAR(std::remainder(figures.aspect - row.aspect, 360.0), 0.0, 0.3);
        }
    }
    AxPathGround rough;
    rough.height = [](double lng, double) { return std::optional<double>(lng < -104.995 ? 99.0 : 101.0); };
    EXPECT_NEAR(AxMeasurePlane(AxRectangleOver(from, to, 90.0), rough).roughness, 0.5, 0.01);
}
