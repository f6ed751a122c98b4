// What is seen from where: lines over made-up ground, and viewsheds against lines.
#include "analysis/AxLineOfSight.h"
#include "analysis/AxSightText.h"
#include "analysis/AxViewshed.h"

#include <AxData/planner/AxPlanPlane.h>

#include <osgEarth/ImageLayer>
#include <osgEarth/Registry>
#include <osgEarthDrivers/gdal/GDALOptions>

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <cmath>
#include <random>

namespace {
const std::atomic<bool> goesOn{false};

/// Level ground with a wall and a strip without heights, each so many metres from a place.
struct Ground
{
    double wallAt = 0.0; // 0: none
    double wallHeight = 0.0;
    double unknownAt = 0.0; // 0: none

    AxPlanGround Around(const QPointF& middle) const
    {
        const AxPlanPlane plane({middle});
        return [plane, *this](double longitude, double latitude) -> std::optional<double> {
            const CAxPoint2D at = plane.ToPlane(QPointF(longitude, latitude));
            const double away = std::hypot(at.x(), at.y());
            if (unknownAt > 0.0 && away > unknownAt && away < unknownAt + 300.0)
                return {};
            return wallAt > 0.0 && std::abs(away - wallAt) < 20.0 ? wallHeight : 0.0;
        };
    }
};

AxSightLine LookNorthward(const QPointF& from, double metres, double fromUp, double toUp, double refraction,
                          const Ground& ground, double azimuth = 0.0)
{
    const QPointF to = AxPlanPlane({from}).ToLngLat({metres * std::sin(azimuth), metres * std::cos(azimuth)});
    AxSightOptions options;
    options.refraction = refraction;
    return AxLineOfSight({from, fromUp}, {to, toUp}, ground.Around(from), options, goesOn);
}

double HorizonAt(double height, double radius, double refraction)
{
    const double larger = radius / (1.0 - refraction);
    return larger * std::acos(larger / (larger + height));
}
} // namespace

TEST(Sight, FindsWhatStandsInTheWayOfALine)
{
    const QPointF lowlands(10.0, 45.0), pole(0.0, 89.99), dateLine(179.99, 10.0);
    const double east = 1.5707963267948966;
    // Of the ellipsoid at 45 degrees to the north, at 10 degrees to the east.
    const double meridian = 6367381.8, across = 6378780.8;
    const Ground level, wall{2000.0, 50.0, 0.0}, gap{0.0, 0.0, 1000.0}, gapBehindWall{800.0, 50.0, 1000.0};
    const struct
    {
        const char* what;
        QPointF from;
        double metres, fromUp, toUp, refraction;
        Ground ground;
        double azimuth;
        AxSeen seen;
        double blockedAt; // NaN: nowhere
        double needed;    // metres above the ground of the target; NaN: not known
    } rows[] = {
        {"level", lowlands, 1000.0, 2.0, 2.0, 0.13, level, 0.0, AxSeen::Visible, NAN, 0.0},
        {"no length", lowlands, 0.0, 0.0, 0.0, 0.13, level, 0.0, AxSeen::Visible, NAN, 0.0},
        {"before the horizon", lowlands, HorizonAt(100.0, meridian, 0.0) - 30.0, 100.0, 0.0, 0.0, level, 0.0,
         AxSeen::Visible, NAN, 0.0},
        {"behind it", lowlands, 40000.0, 100.0, 0.0, 0.0, level, 0.0, AxSeen::Hidden, NAN,
         0.5 * std::pow(40000.0 - HorizonAt(100.0, meridian, 0.0), 2) / meridian},
        {"air bends it nearer", lowlands, HorizonAt(100.0, meridian, 0.13) - 30.0, 100.0, 0.0, 0.13, level,
         0.0, AxSeen::Visible, NAN, 0.0},
        {"and ends, too", lowlands, 40000.0, 100.0, 0.0, 0.13, level, 0.0, AxSeen::Hidden, NAN,
         0.5 * std::pow(40000.0 - HorizonAt(100.0, meridian, 0.13), 2) * 0.87 / meridian},
        {"a wall", lowlands, 5000.0, 10.0, 10.0, 0.0, wall, 0.0, AxSeen::Hidden, 1980.0,
         10.0 + 40.0 * 5000.0 / 1980.0 + 5000.0 * 3020.0 / (2.0 * meridian)},
        {"over the wall", lowlands, 5000.0, 10.0, 120.0, 0.0, wall, 0.0, AxSeen::Visible, NAN,
         10.0 + 40.0 * 5000.0 / 1980.0 + 5000.0 * 3020.0 / (2.0 * meridian)},
        {"a wall beyond the date line", dateLine, 5000.0, 10.0, 10.0, 0.0, wall, east, AxSeen::Hidden, 1980.0,
         10.0 + 40.0 * 5000.0 / 1980.0 + 5000.0 * 3020.0 / (2.0 * across)},
        {"a wall beyond the pole", pole, 5000.0, 10.0, 10.0, 0.0, wall, 0.0, AxSeen::Hidden, 1980.0, 111.6},
        {"a gap is not taken for visible", lowlands, 5000.0, 10.0, 10.0, 0.13, gap, 0.0, AxSeen::Unknown, NAN,
         NAN},
        {"nor for known behind a wall", lowlands, 5000.0, 10.0, 10.0, 0.13, gapBehindWall, 0.0,
         AxSeen::Hidden, 780.0, NAN},
        {"an end without ground", lowlands, 1100.0, 10.0, 10.0, 0.13, gap, 0.0, AxSeen::Unknown, NAN, NAN},
        {"too long", lowlands, 600000.0, 10.0, 10.0, 0.13, level, 0.0, AxSeen::Unknown, NAN, NAN},
        {"no place", {10.0, 91.0}, 1000.0, 10.0, 10.0, 0.13, level, 0.0, AxSeen::Unknown, NAN, NAN},
        {"no height", lowlands, 1000.0, NAN, 10.0, 0.13, level, 0.0, AxSeen::Unknown, NAN, NAN},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        const AxSightLine line = LookNorthward(row.from, row.metres, row.fromUp, row.toUp, row.refraction,
                                               row.ground, row.azimuth);
        EXPECT_EQ(line.seen, row.seen);
        EXPECT_EQ(line.blockedAt.has_value(), row.seen == AxSeen::Hidden);
        if (line.blockedAt && !std::isnan(row.blockedAt)) {
            EXPECT_NEAR(line.blockedAt->distance, row.blockedAt, 10.0);
        }
        if (std::isnan(row.needed)) {
            EXPECT_TRUE(std::isnan(line.neededAboveGround)) << line.neededAboveGround;
        } else {
            EXPECT_NEAR(line.neededAboveGround, row.needed, 0.02 * row.needed + 0.01);
        }
        if (line.tightest && line.seen != AxSeen::Unknown) {
            EXPECT_EQ(line.seen == AxSeen::Hidden, line.tightest->clearance < 0.0);
        }
        EXPECT_FALSE(AxSightText(line).isEmpty());
    }
}

TEST(Sight, AViewshedAgreesWithLinesToItsCells)
{
    const struct
    {
        const char* what;
        QPointF observer;
        double targetUp;
        bool hasHole;
    } rows[] = {{"hills", {-104.9, 37.4}, 0.0, false},
                {"something tall is looked for", {-104.9, 37.4}, 40.0, false},
                {"a part without heights", {10.0, 60.0}, 0.0, true},
                {"over the date line", {179.98, -17.0}, 2.0, false},
                {"around the pole", {30.0, 89.98}, 0.0, false}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        AxViewshedQuestion question;
        question.observer = row.observer;
        question.targetAboveGround = row.targetUp;
        question.radius = 6000.0;
        const AxPlanPlane plane({row.observer});
        const auto heightAt = [&](double x, double y) -> std::optional<double> {
            if (row.hasHole && std::hypot(x - 1500.0, y + 800.0) < 700.0)
                return {};
            return 300.0 * std::sin(x / 900.0) * std::cos(y / 1300.0) +
                   80.0 * std::sin((x + 2.0 * y) / 310.0) + 15.0 * std::sin(x / 70.0) * std::sin(y / 85.0);
        };
        const AxSightGrid grid = AxSightGridOf(question, [&](double longitude, double latitude) {
            const CAxPoint2D at = plane.ToPlane(QPointF(longitude, latitude));
            return heightAt(at.x(), at.y());
        });
        const AxViewshed found = AxViewshedOf(question, grid);
        ASSERT_EQ(found.fault, AxViewshedFault::None);
        EXPECT_NEAR(found.Cells(), 3.14159 * 200.0 * 200.0, 800.0);
        EXPECT_GT(std::min(found.visible, found.hidden), found.Cells() / 20);
        EXPECT_EQ(found.unknown > 0, row.hasHole);

        // Ground between the cells' middles as a surface, of which lines see each quarter of a cell.
        const AxPlanGround surface = [&](double longitude, double latitude) -> std::optional<double> {
            const CAxPoint2D at = plane.ToPlane(QPointF(longitude, latitude));
            const double column = at.x() / question.cell + grid.half,
                         line = at.y() / question.cell + grid.half;
            const int c = static_cast<int>(std::floor(column + 1e-6)),
                      r = static_cast<int>(std::floor(line + 1e-6));
            double sum = 0.0;
            for (const int i : {0, 1})
                for (const int j : {0, 1}) {
                    const double weight = (1.0 - std::abs(column - c - i)) * (1.0 - std::abs(line - r - j));
                    if (weight > 1e-5)
                        sum += weight * static_cast<double>(grid.heights[grid.At(c + i, r + j)]);
                }
            return std::isnan(sum) ? std::nullopt : std::make_optional(sum);
        };
        AxSightOptions options;
        options.step = question.cell / 4.0;
        std::mt19937 random(20);
        std::uniform_int_distribution<int> any(1, grid.Side() - 2);
        int looked = 0, same = 0;
        while (looked < 500) {
            const int column = any(random), line = any(random);
            const int cell = found.cells[grid.At(column, line)];
            if (cell == AxViewshed::Outside)
                continue;
            const QPointF to =
                plane.ToLngLat({(column - grid.half) * question.cell, (line - grid.half) * question.cell});
            const AxSeen seen = AxLineOfSight({row.observer, question.aboveGround}, {to, row.targetUp},
                                              surface, options, goesOn)
                                    .seen;
            ++looked;
            same += cell == 1 + static_cast<int>(seen) ? 1 : 0;
        }
        EXPECT_GE(same, 0.99 * looked);
    }
}

TEST(Sight, AViewshedThatCannotBeSaysWhy)
{
    const AxPlanGround level = [](double, double) { return std::make_optional(5.0); };
    AxViewshedQuestion good;
    good.observer = {10.0, 50.0};
    good.radius = 3000.0;
    const auto with = [&good](auto change) {
        AxViewshedQuestion question = good;
        change(question);
        return question;
    };
    const struct
    {
        AxViewshedQuestion question;
        AxPlanGround ground;
        AxViewshedFault fault;
    } rows[] = {
        {good, level, AxViewshedFault::None},
        {good, [](double, double) { return std::optional<double>(); }, AxViewshedFault::NoGround},
        {with([](auto& q) { q.observer.setY(NAN); }), level, AxViewshedFault::NoPlace},
        {with([](auto& q) { q.refraction = 1.0; }), level, AxViewshedFault::NoPlace},
        {with([](auto& q) { q.radius = 60000.0; }), level, AxViewshedFault::WrongSize},
        {with([](auto& q) { q.cell = 0.0; }), level, AxViewshedFault::WrongSize},
        {with([](auto& q) { q.cell = 1.0; }), level, AxViewshedFault::TooFine},
    };
    for (const auto& row : rows) {
        const AxViewshed found = AxViewshedOf(row.question, AxSightGridOf(row.question, row.ground));
        EXPECT_EQ(found.fault, row.fault);
        EXPECT_EQ(AxSightFaultText(found.fault).isEmpty(), row.fault == AxViewshedFault::None);
    }
    EXPECT_EQ(AxViewshedOf(good, AxSightGridOf(good, level, [](double) { return false; })).fault,
              AxViewshedFault::Interrupted);
}

TEST(Sight, TheFileAndThePictureOfAViewshedLieWhereItWasSeen)
{
    // A wall to the north: beyond it nothing is seen.
    AxViewshedQuestion question;
    question.observer = {179.99, 50.0};
    question.radius = 3000.0;
    const AxPlanPlane plane({question.observer});
    const AxViewshed found =
        AxViewshedOf(question, AxSightGridOf(question, [&](double longitude, double latitude) {
                         const double north = plane.ToPlane(QPointF(longitude, latitude)).y();
                         return std::make_optional(north > 900.0 && north < 1100.0 ? 60.0 : 0.0);
                     }));
    const QTemporaryDir folder;
    const QString file = folder.filePath(QString::fromUtf8("\xe8\xa7\x86\xe5\x9f\x9f.tif"));
    EXPECT_EQ(AxWriteGeoRaster(file, AxSightRaster(found)), QString());
    EXPECT_NE(AxWriteGeoRaster(folder.filePath("none/file.tif"), AxSightRaster(found)), QString());
    const AxGeoPicture picture(AxSightRaster(found), 3);
    for (const std::string& source : {file.toStdString(), picture.Name().toStdString()}) {
        SCOPED_TRACE(source);
        osgEarth::Drivers::GDALOptions driver;
        driver.connection() = source;
        const osg::ref_ptr<osgEarth::ImageLayer> layer = new osgEarth::ImageLayer("seen", driver);
        ASSERT_TRUE(layer->open().isOK()) << layer->getStatus().message();
        const struct
        {
            double east, north;
            bool isThere, isGreen;
        } places[] = {{0.0, -1000.0, true, true},
                      {500.0, 700.0, true, true},
                      {300.0, 2000.0, true, false},
                      {1500.0, -300.0, true, true},
                      {2500.0, 2500.0, false, false}};
        for (const auto& place : places) {
            const QPointF at = plane.ToLngLat({place.east, place.north});
            const osgEarth::TileKey key =
                osgEarth::Registry::instance()->getGlobalGeodeticProfile()->createTileKey(at.x(), at.y(), 13);
            const osgEarth::GeoImage image = layer->createImage(key);
            ASSERT_TRUE(image.valid());
            const osgEarth::GeoExtent& extent = key.getExtent();
            const auto pixel = [](double share) { return static_cast<unsigned>(share * 256.0); };
            const unsigned char* rgba =
                image.getImage()->data(pixel((at.x() - extent.west()) / extent.width()),
                                       pixel((at.y() - extent.south()) / extent.height()));
            EXPECT_EQ(rgba[3] > 127, place.isThere) << place.east << ' ' << place.north;
            if (place.isThere) {
                EXPECT_EQ(rgba[1] > rgba[0], place.isGreen) << place.east << ' ' << place.north;
            }
        }
    }
}
