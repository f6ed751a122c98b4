#include <osgEarth/Map>
#include <osgEarth/Registry>
#include <osgEarthDrivers/tms/TMSOptions>
#include <osgEarthDrivers/xyz/XYZOptions>

#include "LogCapture.h"
#include "LoopbackTileServer.h"
#include "RasterMaker.h"
#include "sources/HeightGrid.h"
#include "sources/RasterSource.h"

#include <chrono>
#include <fstream>
#include <gtest/gtest.h>
#include <osgEarth/ElevationLayer>
#include <thread>

using namespace osgEarth;
using Manner = LoopbackTileServer::Manner;

namespace {
osg::ref_ptr<ImageLayer> makeLayer(const TileSourceOptions& driver, const std::string& cache = {})
{
    TileSourceOptions options = driver;
    if (!cache.empty())
        options.cachePath() = cache;
    osg::ref_ptr<ImageLayer> layer = new ImageLayer("Service", options);
    EXPECT_TRUE(layer->open().isOK()) << layer->getStatus().message();
    return layer;
}

Drivers::XYZOptions xyz(const LoopbackTileServer& server)
{
    Drivers::XYZOptions options(server.address() + "/{z}/{x}/{y}.png");
    options.maxDataLevel() = 6u;
    return options;
}

Drivers::TMSOptions tms(const std::string& url)
{
    Drivers::TMSOptions options(url);
    options.maxDataLevel() = 5u;
    return options;
}

TileKey geodeticKey(unsigned lod, unsigned x, unsigned y)
{
    return {lod, x, y, Registry::instance()->getGlobalGeodeticProfile()};
}

TileKey mercatorKey(unsigned lod, unsigned x, unsigned y)
{
    return {lod, x, y, Registry::instance()->getSphericalMercatorProfile()};
}

// The tile's centre pixel is of the colour that the server gives z/x/row.
void expectColour(const GeoImage& image, int z, int x, int row)
{
    ASSERT_TRUE(image.valid());
    unsigned char rgb[3];
    LoopbackTileServer::colourOf(z, x, row, rgb);
    const unsigned char* p = image.getImage()->data(128, 128);
    EXPECT_EQ(p[0], rgb[0]) << "level";
    EXPECT_EQ(p[1], rgb[1]) << "column";
    EXPECT_EQ(p[2], rgb[2]) << "row";
    EXPECT_EQ(p[3], 255);
}
} // namespace

TEST(TileService, XyzTilesComeUpInTheirPlace)
{
    LoopbackTileServer server;
    const auto layer = makeLayer(xyz(server));
    EXPECT_EQ(server.requests(), 0) << "opening asks nothing of the network";
    EXPECT_TRUE(layer->getProfile()->isEquivalentTo(Registry::instance()->getSphericalMercatorProfile()));
    expectColour(layer->createImage(mercatorKey(4, 5, 6)), 4, 5, 6);
    expectColour(layer->createImage(mercatorKey(0, 0, 0)), 0, 0, 0);
    // Geodetic 3/4/2 has its centre at 11.25 E 33.75 N: mercator column 4 of 8 at level 3.
    const GeoImage reprojected = layer->createImage(geodeticKey(3, 8, 2));
    ASSERT_TRUE(reprojected.valid());
    EXPECT_EQ(reprojected.getImage()->s(), 256);
    EXPECT_EQ(reprojected.getImage()->data(128, 128)[3], 255);
}

TEST(TileService, LevelsBeyondTheFinestShowTheFinest)
{
    LoopbackTileServer server;
    const auto layer = makeLayer(xyz(server));
    expectColour(layer->createImage(mercatorKey(9, 5 * 8 + 3, 6 * 8 + 3)), 6, 5, 6);
}

TEST(TileService, RowsFromTheSouth)
{
    LoopbackTileServer server;
    Drivers::XYZOptions inverted = xyz(server);
    inverted.invertY() = true;
    expectColour(makeLayer(inverted)->createImage(mercatorKey(4, 5, 6)), 4, 5, 9);
    expectColour(makeLayer(tms(server.address() + "/1.0.0/world/"))->createImage(geodeticKey(3, 5, 1)), 3, 5,
                 6);
    Drivers::TMSOptions google = tms(server.address());
    google.tmsType() = "google";
    expectColour(makeLayer(google)->createImage(geodeticKey(3, 5, 1)), 3, 5, 1);
}

TEST(TileService, CacheAnswersWhenTheServerIsGone)
{
    const ScratchFolder folder;
    LoopbackTileServer server;
    const auto options = xyz(server);
    expectColour(makeLayer(options, folder.path("tiles"))->createImage(mercatorKey(4, 5, 6)), 4, 5, 6);
    server.die();

    const LogCapture log;
    const auto later = makeLayer(options, folder.path("tiles"));
    expectColour(later->createImage(mercatorKey(4, 5, 6)), 4, 5, 6);
    EXPECT_TRUE(log.lines().empty());
    EXPECT_FALSE(later->createImage(mercatorKey(4, 6, 6)).valid()) << "was never fetched";
    expectColour(later->createImage(mercatorKey(4, 5, 6)), 4, 5, 6);
    EXPECT_EQ(log.lines().size(), 1u);
    EXPECT_EQ(log.linesWith(server.address()), 1u);
}

TEST(TileService, MissingTilesAreTransparentAndNoFailure)
{
    LoopbackTileServer server;
    server.setManner(Manner::Missing);
    const auto layer = makeLayer(xyz(server));
    const LogCapture log;
    const osg::ref_ptr<ProgressCallback> progress = new ProgressCallback;
    EXPECT_FALSE(layer->createImage(mercatorKey(4, 5, 6), progress.get()).valid());
    EXPECT_FALSE(progress->needsRetry());
    EXPECT_TRUE(log.lines().empty());
    server.setManner(Manner::Pictures);
    expectColour(layer->createImage(mercatorKey(4, 6, 6)), 4, 6, 6);
}

class FailingService : public ::testing::TestWithParam<Manner>
{
};

TEST_P(FailingService, IsOneLoggedLineAndThenLeftAlone)
{
    const ScratchFolder folder;
    LoopbackTileServer server;
    server.setManner(GetParam());
    const auto layer = makeLayer(xyz(server), folder.path("tiles"));
    const LogCapture log;
    for (unsigned x = 0; x < 8; ++x) {
        const osg::ref_ptr<ProgressCallback> progress = new ProgressCallback;
        EXPECT_FALSE(layer->createImage(mercatorKey(4, x, 6), progress.get()).valid());
        EXPECT_TRUE(progress->needsRetry());
    }
    EXPECT_EQ(log.lines().size(), 1u);
    EXPECT_EQ(log.linesWith("\"Service\""), 1u);
    EXPECT_EQ(log.linesWith(server.address()), 1u);
    // One read may take a few tiles; afterwards the service is in its pause.
    EXPECT_LE(server.requests(), 4);
    // Nothing it sent was kept: a fresh layer gets the picture once the server is well.
    server.setManner(Manner::Pictures);
    expectColour(makeLayer(xyz(server), folder.path("tiles"))->createImage(mercatorKey(4, 0, 6)), 4, 0, 6);
}

INSTANTIATE_TEST_SUITE_P(Manners, FailingService,
                         ::testing::Values(Manner::Garbage, Manner::ServerError, Manner::Silent));

TEST(TileService, ComesBackAfterItsPause)
{
    LoopbackTileServer server;
    server.setManner(Manner::ServerError);
    const auto layer = makeLayer(xyz(server));
    EXPECT_FALSE(layer->createImage(mercatorKey(4, 5, 6)).valid());
    server.setManner(Manner::Pictures);
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    GeoImage image;
    while (!image.valid() && std::chrono::steady_clock::now() < limit) {
        image = layer->createImage(mercatorKey(4, 5, 6));
        std::this_thread::yield();
    }
    expectColour(image, 4, 5, 6);
}

TEST(TileService, AnOverviewOfHeightsThatLacksTilesIsNotKept)
{
    LoopbackTileServer server;
    server.setManner(Manner::ServerError);
    const osg::ref_ptr<ElevationLayer> layer = new ElevationLayer("Service", xyz(server));
    ASSERT_TRUE(layer->open().isOK());
    const auto isWhole = [&] {
        const auto overview = layer->getSource()->heightOverview(nullptr);
        return overview && overview->grids.front()->hasData();
    };
    EXPECT_FALSE(isWhole());
    server.setManner(Manner::Pictures);
    const int failed = server.requests();
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!isWhole() && std::chrono::steady_clock::now() < limit)
        std::this_thread::yield();
    EXPECT_TRUE(isWhole());
    EXPECT_LE(server.requests() - failed, 4) << "the first tile waits for these";
}

TEST(TileService, FolderOfTilesWithItsDescription)
{
    const ScratchFolder folder;
    std::filesystem::create_directories(folder.path("tms/1/2"));
    RasterRecipe tile;
    tile.width = tile.height = 256;
    tile.bands = 3;
    tile.srs.clear();
    tile.driver = "PNG";
    tile.value = [](int band, int, int) { return 50.0 * (band + 1); };
    writeRaster(folder.path("tms/1/2/1.png"), tile);
    std::ofstream(folder.path("tms/tms.xml"))
        << "<TileMap version='1.0.0'><SRS>EPSG:4326</SRS>"
           "<TileFormat width='256' height='256' extension='png'/>"
           "<TileSets profile='global-geodetic'><TileSet href='0' order='0'/><TileSet href='1' order='1'/>"
           "</TileSets></TileMap>";

    for (const char* url : {"tms/tms.xml", "tms"}) {
        Drivers::TMSOptions options(folder.path(url));
        const auto layer = makeLayer(options);
        const GeoImage image = layer->createImage(geodeticKey(1, 2, 0)); // north-east of Greenwich
        ASSERT_TRUE(image.valid()) << url;
        const unsigned char* p = image.getImage()->data(128, 128);
        EXPECT_EQ(p[0], 50);
        EXPECT_EQ(p[2], 150);
        EXPECT_FALSE(layer->createImage(geodeticKey(1, 1, 0)).valid()) << "no such tile";
    }
}

TEST(TileService, WhatCannotBeAServiceIsAnErrorOfTheLayer)
{
    const ScratchFolder folder;
    struct
    {
        const char* driver;
        std::string url, profile;
    } const rows[] = {{"tms", folder.path("nothing/tms.xml"), ""},
                      {"tms", folder.path("nothing"), ""},
                      {"xyz", "http://127.0.0.1:1/{z}/{x}/{y}.png", "flat-earth"},
                      {"xyz", "", ""}};
    for (const auto& row : rows) {
        Config conf("image");
        conf.add("name", "Bad");
        conf.add("driver", row.driver);
        conf.add("url", row.url);
        if (!row.profile.empty())
            conf.add("profile", row.profile);
        const LogCapture log;
        const osg::ref_ptr<ImageLayer> layer = new ImageLayer(ImageLayerOptions(ConfigOptions(conf)));
        EXPECT_TRUE(layer->open().isError()) << row.url;
        EXPECT_EQ(log.linesWith("\"Bad\""), 1u);
        EXPECT_EQ(log.linesWith(row.url), 1u) << row.url;
    }
}
