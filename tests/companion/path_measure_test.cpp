#include <AxAlgorthm/AxMath.h>
#include <AxAlgorthm/AxPathMeasure.h>

#include <GeographicLib/Geodesic.hpp>

#include <gtest/gtest.h>

#include <cmath>

namespace path_measure {
namespace {
using Places = std::vector<CAxVector3D>;

/// Rises by `slope` metres a metre to the east and falls by half of that to the north of 46 E 10 N.
AxHeightAt Plane(double slope)
{
    return [slope](double longitude, double latitude) -> std::optional<double> {
        constexpr double degree = 111320.0;
        return 1000.0 + slope * degree *
                            ((longitude - 46.0) * std::cos(DegreeToRadians(10.0)) - 0.5 * (latitude - 10.0));
    };
}

AxPathGround Over(const AxHeightAt& height, double step = 10.0, std::size_t most = 20000)
{
    return {height, step, most};
}
} // namespace

TEST(PathMeasure, LegsAreGeodesics)
{
    struct Case
    {
        const char* what;
        CAxVector3D from, to;
    };
    const Case cases[] = {
        {"some kilometres", {-105.0, 37.4, 0.0}, {-104.9, 37.3, 0.0}},
        {"over the antimeridian", {179.9, -17.0, 0.0}, {-179.8, -17.1, 0.0}},
        {"counted past it", {179.9, -17.0, 0.0}, {180.2, -17.1, 0.0}},
        {"over the pole", {10.0, 89.9, 0.0}, {-170.0, 89.8, 0.0}},
        {"from the pole", {0.0, -90.0, 0.0}, {77.0, -80.0, 0.0}},
        {"nearly half around", {0.0, 0.5, 0.0}, {179.7, -0.4, 0.0}},
        {"a millimetre", {46.0, 10.0, 0.0}, {46.0, 10.00000001, 0.0}},
    };
    for (const Case& one : cases) {
        double length = 0.0, azimuth = 0.0, end = 0.0;
        GeographicLib::Geodesic::WGS84().Inverse(one.from.y(), one.from.x(), one.to.y(), one.to.x(), length,
                                                 azimuth, end);
        const AxPathFigures figures = AxMeasurePath({one.from, one.to});
        ASSERT_EQ(figures.legs.size(), 1u) << one.what;
        EXPECT_NEAR(figures.legs[0].length, length, 1e-9 * length) << one.what;
        EXPECT_NEAR(std::remainder(figures.legs[0].bearing - azimuth, 360.0), 0.0, 1e-9) << one.what;
        EXPECT_GE(figures.legs[0].bearing, 0.0) << one.what;
        // Walking it in pieces comes to the same, and no piece is longer than asked for.
        const auto places = AxPlacesAlong({one.from, one.to}, 5000.0, 100000);
        EXPECT_NEAR(places.back().along, length, 1e-9 * length) << one.what;
        double sum = 0.0;
        for (std::size_t i = 1; i < places.size(); ++i) {
            double piece = 0.0;
            GeographicLib::Geodesic::WGS84().Inverse(places[i - 1].latitude, places[i - 1].longitude,
                                                     places[i].latitude, places[i].longitude, piece);
            EXPECT_LE(piece, 5000.001) << one.what;
            sum += piece;
        }
        EXPECT_NEAR(sum, length, 1e-9 * length + 1e-7) << one.what;
    }
}

TEST(PathMeasure, PathOverATiltedPlane)
{
    const Places path{{46.0, 10.0, 0.0}, {46.05, 10.02, 0.0}, {46.05, 10.02, 0.0}, {46.02, 10.06, 0.0}};
    for (const double slope : {0.0, 0.02, 0.3}) {
        const AxHeightAt plane = Plane(slope);
        const AxPathFigures figures = AxMeasurePath(path, Over(plane));
        ASSERT_EQ(figures.legs.size(), 3u);
        // Summed finely, by the rule of Pythagoras on the ellipsoid that is as high as the ground.
        double length = 0.0, sum = 0.0, ascent = 0.0, descent = 0.0;
        const auto places = AxPlacesAlong(path, 1.0, 1000000);
        for (std::size_t i = 1; i < places.size(); ++i) {
            const double along = places[i].along - places[i - 1].along;
            const double height = *plane(places[i].longitude, places[i].latitude);
            const double rise = height - *plane(places[i - 1].longitude, places[i - 1].latitude);
            length += along;
            sum += std::hypot(along * (1.0 + height / 6371000.0), rise);
            ascent += std::max(rise, 0.0);
            descent += std::max(-rise, 0.0);
        }
        EXPECT_NEAR(figures.total.length, length, 1e-9 * length) << slope;
        EXPECT_NEAR(figures.total.overGround, sum, 1e-3 * sum) << slope;
        EXPECT_NEAR(figures.total.ascent, ascent, 1e-3 * ascent + 1e-6) << slope;
        EXPECT_NEAR(figures.total.descent, descent, 1e-3 * descent + 1e-6) << slope;
        EXPECT_NEAR(figures.total.rise, *plane(46.02, 10.06) - 1000.0, 1e-6) << slope;
        EXPECT_TRUE(std::isnan(figures.legs[1].bearing)) << "without a length";
        EXPECT_TRUE(std::isnan(figures.legs[1].Slope()));
        EXPECT_EQ(figures.legs[1].overGround, 0.0);
        EXPECT_NEAR(figures.legs[0].Slope(),
                    RadiansToDegree(std::atan2(figures.legs[0].rise, figures.legs[0].length)), 1e-12);
    }
}

TEST(PathMeasure, TellsWhatIsNotKnown)
{
    const Places path{{46.0, 10.0, 5.0}, {46.05, 10.0, 25.0}, {46.1, 10.0, 15.0}};
    const AxHeightAt withGap = [](double longitude, double) {
        return longitude > 46.06 && longitude < 46.07 ? std::nullopt : std::make_optional(100.0);
    };
    const AxPathFigures gap = AxMeasurePath(path, Over(withGap));
    EXPECT_FALSE(std::isnan(gap.legs[0].overGround));
    EXPECT_TRUE(std::isnan(gap.legs[1].overGround)) << "a length with a hole in it is none";
    EXPECT_TRUE(std::isnan(gap.total.overGround));
    EXPECT_EQ(gap.legs[1].rise, 0.0) << "both ends are known";

    const AxPathFigures without = AxMeasurePath(path);
    EXPECT_TRUE(std::isnan(without.total.overGround));
    EXPECT_EQ(without.total.rise, 10.0);
    EXPECT_EQ(without.step, 0.0);

    // Long paths are looked at so many times and no more.
    int looks = 0;
    const AxHeightAt counting = [&looks](double, double) { return ++looks, std::make_optional(0.0); };
    const AxPathFigures far = AxMeasurePath({{0.0, 0.0, 0.0}, {90.0, 0.0, 0.0}}, Over(counting, 10.0, 500));
    EXPECT_LE(looks, 502);
    EXPECT_NEAR(far.step, far.total.length / 500.0, 1e-6);

    const double nan = std::nan("");
    EXPECT_TRUE(AxMeasurePath({}).legs.empty());
    EXPECT_TRUE(AxMeasurePath({{46.0, 10.0, 0.0}}, Over(withGap)).legs.empty());
    EXPECT_TRUE(AxMeasurePath({{46.0, 91.0, 0.0}, {nan, 10.0, 0.0}, {1.0, 2.0, 0.0}}).legs.empty());

    const std::atomic<bool> isOff = true;
    looks = 0;
    AxMeasurePath({{0.0, 0.0, 0.0}, {90.0, 0.0, 0.0}}, Over(counting), &isOff);
    EXPECT_LE(looks, 2);

    EXPECT_NEAR(AxSlantDistance({0.0, 0.0, 0.0}, {0.0, 0.0, 30.0}), 30.0, 1e-6);
    EXPECT_NEAR(AxSlantDistance({0.0, 0.0, 0.0}, {180.0, 0.0, 0.0}), 2.0 * 6378137.0, 1e-6);
}
} // namespace path_measure
