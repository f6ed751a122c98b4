// Cut and fill of solids whose volumes are known.
#include "analysis/AxMapHeights.h"
#include "analysis/volume/AxVolume.h"
#include "analysis/volume/AxVolumeText.h"

#include <AxAlgorthm/AxUnits.h>
#include <AxData/planner/AxPlanPlane.h>

#include <osgEarth/ElevationLayer>
#include <osgEarth/Map>
#include <osgEarthDrivers/gdal/GDALOptions>

#include <gtest/gtest.h>

#include <QBuffer>
#include <QTemporaryDir>

#include <cmath>

namespace {
constexpr double pi = 3.14159265358979323846;
using Base = AxVolumeBase;
using Height = double (*)(double x, double y); // NaN: not known

AxHeightAt GroundOf(Height height, const QPointF& middle)
{
    return
        [plane = AxPlanPlane({middle}), height](double longitude, double latitude) -> std::optional<double> {
            const CAxPoint2D at = plane.ToPlane(QPointF(longitude, latitude));
            const double value = height(at.x(), at.y());
            return std::isnan(value) ? std::nullopt : std::make_optional(value);
        };
}

QList<QPointF> RingOf(const std::vector<CAxPoint2D>& corners, const QPointF& middle)
{
    QList<QPointF> ring;
    for (const CAxPoint2D& corner : corners)
        ring += AxPlanPlane({middle}).ToLngLat(corner);
    return ring;
}

std::vector<CAxPoint2D> Square(double half)
{
    return {{-half, -half}, {half, -half}, {half, half}, {-half, half}};
}

std::vector<CAxPoint2D> Corridor(double length, double width, double degrees)
{
    const double east = std::cos(degrees * pi / 180.0), north = std::sin(degrees * pi / 180.0);
    std::vector<CAxPoint2D> corners;
    for (const auto& [along, across] :
         {std::pair(-0.5, -0.5), std::pair(0.5, -0.5), std::pair(0.5, 0.5), std::pair(-0.5, 0.5)})
        corners.emplace_back(along * length * east - across * width * north,
                             along * length * north + across * width * east);
    return corners;
}

std::vector<CAxPoint2D> Circle(double radius)
{
    std::vector<CAxPoint2D> corners;
    corners.reserve(360);
    for (int degree = 0; degree < 360; ++degree)
        corners.emplace_back(radius * std::cos(degree * pi / 180.0), radius * std::sin(degree * pi / 180.0));
    return corners;
}

double Cone(double x, double y)
{
    return 50.0 + std::max(0.0, 30.0 - 0.3 * std::hypot(x, y)); // 100 m around
}
double Tilted(double x, double y)
{
    return 20.0 + 0.1 * x + 0.05 * y;
}
double ConeOnTilted(double x, double y)
{
    return Tilted(x, y) + Cone(x, y) - 50.0;
}
double Bowl(double x, double y)
{
    return 500.0 - std::sqrt(std::max(0.0, 80.0 * 80.0 - x * x - y * y));
}
double Ridge(double x, double)
{
    return 0.2 * std::abs(x);
}
double KnownInTheWest(double x, double)
{
    return x < 0.0 ? 10.0 : NAN;
}
double KnownOnTheRim(double x, double y)
{
    return std::hypot(x, y) > 99.0 ? 10.0 : NAN;
}
double Bank(double, double y)
{
    return std::max(0.0, 2.0 - 0.4 * std::abs(y)); // 10 m wide
}
double BankAskew(double x, double y)
{
    return Bank(0.0, (y - x) / std::sqrt(2.0));
}
double Nothing(double, double)
{
    return NAN;
}

AxVolume VolumeOf(const AxVolumeQuestion& question, const AxHeightAt& ground)
{
    return AxVolumeOf(question, std::make_shared<AxVolumeGrid>(AxVolumeGridOf(question, ground)));
}
} // namespace

TEST(Volume, OfSolidsIsWithinHalfAPercentOnAGridOfTwoHundred)
{
    const QPointF lowlands(10.0, 45.0), dateLine(180.0, -30.0), nearPole(20.0, 84.0), pole(0.0, 89.999);
    const double cone = pi * 100.0 * 100.0 * 30.0 / 3.0, bowl = 2.0 / 3.0 * pi * 80.0 * 80.0 * 80.0;
    const double square = 200.0 * 200.0;
    const std::vector<CAxPoint2D> hook = {{-100, -100}, {100, -100}, {100, -40},
                                          {-40, -40},   {-40, 100},  {-100, 100}};
    const struct
    {
        const char* what;
        Height ground;
        std::vector<CAxPoint2D> ring;
        QPointF middle;
        Base base;
        double height, cut, fill, area, unknown;
    } rows[] = {
        {"cone", Cone, Square(150), lowlands, Base::PlaneOfRim, 0, cone, 0, 9e4, 0},
        {"cone in its own rim", Cone, Circle(100), lowlands, Base::SurfaceOfRim, 0, cone, 0, 1e4 * pi, 0},
        {"cone on the date line", Cone, Square(150), dateLine, Base::LowestOfRim, 0, cone, 0, 9e4, 0},
        {"cone where lines of longitude meet", Cone, Square(150), nearPole, Base::MeanOfRim, 0, cone, 0, 9e4,
         0},
        {"cone on the pole", Cone, Square(150), pole, Base::HighestOfRim, 0, cone, 0, 9e4, 0},
        {"cone below a ceiling", Cone, Square(150), lowlands, Base::Height, 80, 0, 9e4 * 30 - cone, 9e4, 0},
        {"cone on a slope, plane", ConeOnTilted, Circle(120), lowlands, Base::PlaneOfRim, 0, cone, 0,
         120 * 120 * pi, 0},
        {"cone on a slope, surface", ConeOnTilted, Square(150), lowlands, Base::SurfaceOfRim, 0, cone, 0, 9e4,
         0},
        {"bowl", Bowl, Square(100), lowlands, Base::PlaneOfRim, 0, 0, bowl, square, 0},
        {"slope and its middle", Tilted, Square(100), lowlands, Base::Height, 20, 108333.33, 108333.33,
         square, 0},
        {"slope and its mean", Tilted, Square(100), lowlands, Base::MeanOfRim, 0, 108333.33, 108333.33,
         square, 0},
        {"slope and its foot", Tilted, Square(100), lowlands, Base::LowestOfRim, 0, 15 * square, 0, square,
         0},
        {"slope and its head", Tilted, Square(100), lowlands, Base::HighestOfRim, 0, 0, 15 * square, square,
         0},
        {"slope in a hook", Tilted, hook, lowlands, Base::SurfaceOfRim, 0, 0, 0, 20400, 0},
        {"a surface follows a fold", Ridge, Square(100), lowlands, Base::SurfaceOfRim, 0, 0, 0, square, 0},
        {"a plane does not", Ridge, Square(100), lowlands, Base::PlaneOfRim, 0, 25000, 225000, square, 0},
        {"the east is not known", KnownInTheWest, Square(100), lowlands, Base::Height, 0, 2e5, 0, square,
         2e4},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        AxVolumeQuestion question;
        question.ring = RingOf(row.ring, row.middle);
        question.base = row.base;
        question.height = row.height;
        // The last row is one of many cells that the ring cuts.
        question.cell = 300.0 / 200.0;
        const AxVolume found = VolumeOf(question, GroundOf(row.ground, row.middle));
        ASSERT_EQ(found.fault, AxVolumeFault::None);
        const double tolerance = 0.005 * std::max({row.cut, row.fill, 1000.0});
        EXPECT_NEAR(found.cut, row.cut, tolerance);
        EXPECT_NEAR(found.fill, row.fill, tolerance);
        EXPECT_NEAR(found.area, row.area, 1e-4 * row.area);
        EXPECT_NEAR(found.unknown, row.unknown, 0.01 * row.area * (row.unknown > 0.0));
        EXPECT_NEAR(found.mean, (row.cut - row.fill) / (row.area - row.unknown), 0.06);
    }
}

TEST(Volume, OfABankAlongACorridorIsWithinTheErrorThatIsTold)
{
    const QPointF middle(10.0, 45.0);
    const struct
    {
        double length, degrees;
        Height ground;
    } rows[] = {{10000.0, 0.0, Bank}, {1000.0, 45.0, BankAskew}, {3000.0, 45.0, BankAskew}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.length);
        AxVolumeQuestion question;
        question.ring = RingOf(Corridor(row.length, 10.0, row.degrees), middle);
        question.base = Base::Height;
        const AxVolume found = VolumeOf(question, GroundOf(row.ground, middle));
        ASSERT_EQ(found.fault, AxVolumeFault::None);
        const double exact = 10.0 * row.length;
        EXPECT_LT(std::abs(found.cut - exact), found.cellError + 1e-4 * exact);
        EXPECT_LT(found.cellError, 0.1 * exact);
    }
}

TEST(Volume, TellsItsCellErrorAndWritesEachCellOnce)
{
    const QPointF middle(10.0, 45.0);
    AxVolumeQuestion question;
    question.ring = RingOf(Circle(100.0), middle);
    double before = 0.0;
    const double exact = pi * 100.0 * 100.0 * 30.0 / 3.0;
    for (const double cell : {1.0, 4.0, 16.0}) {
        question.cell = cell;
        const AxVolume found = VolumeOf(question, GroundOf(Cone, middle));
        EXPECT_LT(std::abs(found.cut - exact), found.cellError + 0.001 * exact) << cell;
        EXPECT_GT(found.cellError, before) << cell;
        before = found.cellError;
    }
    AxVolume found;
    for (const auto& [ring, cell] : {std::pair(Square(0.5), 0.011), std::pair(Circle(100.0), 16.0)}) {
        question.ring = RingOf(ring, middle);
        question.cell = cell;
        found = VolumeOf(question, GroundOf(Cone, middle));
        QBuffer table;
        table.open(QIODevice::ReadWrite);
        const std::atomic<bool> isOff = false;
        ASSERT_TRUE(AxWriteVolumeTable(table, found, isOff));
        const QList<QByteArray> lines = table.data().split('\n');
        double area = 0.0, cut = 0.0;
        for (int i = 1; i + 1 < lines.size(); ++i) {
            const QList<QByteArray> cells = lines[i].trimmed().split(',');
            ASSERT_EQ(cells.size(), 6) << i;
            area += cells[2].toDouble();
            cut += cells[2].toDouble() * std::max(0.0, cells[5].toDouble());
        }
        EXPECT_NEAR(area, found.area, 1e-5 * found.area);
        EXPECT_NEAR(cut, found.cut, 0.01 * found.cut) << "heights have millimetres";
    }
    EXPECT_TRUE(AxVolumeReport(found).contains(AxUnits::Volume(found.cut)));
    const AxGeoRaster raster = AxVolumeRaster(found);
    EXPECT_EQ(raster.values.front(), 0);
    ASSERT_EQ(raster.values[raster.values.size() / 2], 3);
    EXPECT_TRUE(raster.classes[2].name.startsWith("20 to 30")) << raster.classes[2].name.toStdString();
}

namespace {
osg::ref_ptr<osgEarth::Map> MapOf(const QString& file)
{
    osgEarth::Drivers::GDALOptions driver;
    driver.connection() = file.toStdString();
    osg::ref_ptr<osgEarth::Map> map = new osgEarth::Map;
    map->addElevationLayer(
        new osgEarth::ElevationLayer(osgEarth::ElevationLayerOptions("differences", driver)));
    return map;
}
} // namespace

TEST(Volume, OfAConeOnTheMapIsTheConesOwn)
{
    const QPointF middle(10.0, 45.0);
    AxVolumeQuestion around;
    around.ring = RingOf(Square(120.0), middle);
    around.base = Base::Height;
    around.height = 50.0;
    around.cell = 1.0;
    const QTemporaryDir folder;
    const QString file = folder.filePath("cone.tif");
    ASSERT_EQ(AxWriteGeoField(file, AxVolumeField(VolumeOf(around, GroundOf(Cone, middle)))), QString());
    AxVolumeQuestion question;
    question.ring = RingOf(Circle(100.0), middle);
    question.base = Base::Height;
    question.cell = 1.0;
    const AxVolume found = VolumeOf(question, AxMapHeights(MapOf(file)));
    const double exact = pi * 100.0 * 100.0 * 30.0 / 3.0;
    EXPECT_NEAR(found.cut, exact, 0.005 * exact);
    EXPECT_EQ(found.unknown, 0.0);
}

TEST(Volume, TheFileOfTheDifferencesLiesWhereTheyAre)
{
    const QPointF middle(10.0, 45.0);
    AxVolumeQuestion question;
    question.ring = RingOf({{-100, -60}, {140, -60}, {140, 60}, {-100, 60}}, middle);
    question.cell = 2.0;
    const AxVolume found = VolumeOf(question, GroundOf(ConeOnTilted, middle));
    const QTemporaryDir folder;
    const QString file = folder.filePath("differences.tif");
    ASSERT_EQ(AxWriteGeoField(file, AxVolumeField(found)), QString());
    const AxMapHeights heights(MapOf(file));
    const auto at = [&](double x, double y) {
        const QPointF place = AxPlanPlane({middle}).ToLngLat({x, y});
        return heights(place.x(), place.y()).value_or(NAN);
    };
    // The base is a plane, so differences differ as the cone and what is left of the slope do.
    const double slope = (at(130.0, 50.0) - at(110.0, 50.0)) / 20.0;
    EXPECT_NEAR(at(0.0, 0.0), found.highest, 1.0);
    EXPECT_NEAR(at(50.0, 0.0) - at(0.0, 0.0), -15.0 + 50.0 * slope, 0.5);
    EXPECT_NEAR(at(0.0, 50.0) - at(0.0, -50.0), at(130.0, 50.0) - at(130.0, -50.0), 0.5);
}

TEST(Volume, RefusesWhatIsNoQuestionAndSaysWhy)
{
    const QPointF middle(10.0, 45.0);
    const auto square = [&](double half) { return RingOf(Square(half), middle); };
    QList<QPointF> crossed = square(100.0);
    crossed.swapItemsAt(1, 2);
    QList<QPointF> noPlace = square(100.0);
    noPlace[1].setY(95.0);
    const struct
    {
        const char* what;
        QList<QPointF> ring;
        Base base;
        double height, cell;
        Height ground;
        AxVolumeFault fault;
    } rows[] = {
        {"two corners", square(100.0).mid(0, 2), Base::MeanOfRim, 0, 1, Cone, AxVolumeFault::NoArea},
        {"crossed", crossed, Base::MeanOfRim, 0, 1, Cone, AxVolumeFault::NoArea},
        {"no place", noPlace, Base::MeanOfRim, 0, 1, Cone, AxVolumeFault::NoArea},
        {"wide", square(45000.0), Base::MeanOfRim, 0, 1000, Cone, AxVolumeFault::TooLarge},
        {"no cell", square(100.0), Base::MeanOfRim, 0, -1, Cone, AxVolumeFault::WrongNumber},
        {"large cells", square(100.0), Base::MeanOfRim, 0, 25, Cone, AxVolumeFault::Coarse},
        {"large cells for a corridor", RingOf(Corridor(10000.0, 10.0, 30.0), middle), Base::MeanOfRim, 0, 3,
         Cone, AxVolumeFault::Coarse},
        {"no height", square(100.0), Base::Height, NAN, 1, Cone, AxVolumeFault::WrongNumber},
        {"many", square(1500.0), Base::MeanOfRim, 0, 1, Cone, AxVolumeFault::Many},
        {"too many", square(5000.0), Base::MeanOfRim, 0, 0.1, Cone, AxVolumeFault::TooMany},
        {"no ground", square(100.0), Base::Height, 0, 1, Nothing, AxVolumeFault::NoGround},
        {"no rim", square(100.0), Base::PlaneOfRim, 0, 1, Nothing, AxVolumeFault::NoRim},
        {"no inside", RingOf(Circle(100.0), middle), Base::PlaneOfRim, 0, 5, KnownOnTheRim,
         AxVolumeFault::None},
    };
    for (const auto& row : rows) {
        AxVolumeQuestion question;
        question.ring = row.ring;
        question.base = row.base;
        question.height = row.height;
        question.cell = row.cell;
        const AxVolume found = VolumeOf(question, GroundOf(row.ground, middle));
        EXPECT_EQ(found.fault, row.fault) << row.what;
        EXPECT_EQ(AxVolumeFaultText(found.fault, question).isEmpty(), row.fault == AxVolumeFault::None)
            << row.what;
    }
    AxVolumeQuestion question;
    question.ring = square(100.0);
    const AxVolume half = VolumeOf(question, GroundOf(KnownInTheWest, middle));
    EXPECT_NEAR(half.rimKnown, 0.5, 0.01);
    EXPECT_TRUE(AxVolumeReport(half).contains("Rim: "));
    const auto grid =
        std::make_shared<AxVolumeGrid>(AxVolumeGridOf(question, GroundOf(ConeOnTilted, middle)));
    for (const Base base : {Base::PlaneOfRim, Base::SurfaceOfRim}) {
        question.base = base;
        int asked = 0;
        EXPECT_EQ(AxVolumeOf(question, grid, [&asked](double) { return ++asked < 10; }).fault,
                  AxVolumeFault::Interrupted);
        EXPECT_EQ(asked, 10);
    }
    EXPECT_EQ(AxVolumeGridOf(question, GroundOf(Cone, middle), [](double done) { return done < 0.5; }).fault,
              AxVolumeFault::Interrupted);
}
