#include <osgEarth/Map>
#include <osgEarth/Registry>
#include <osgEarthDrivers/gdal/GDALOptions>

#include "LogCapture.h"
#include "RasterMaker.h"
#include "sources/RasterSource.h"

#include <array>
#include <atomic>
#include <cmath>
#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <thread>

using namespace osgEarth;

namespace {
osg::ref_ptr<ImageLayer> openImage(const std::string& path, Drivers::GDALOptions options = {})
{
    options.url() = URI(path);
    osg::ref_ptr<ImageLayer> layer = new ImageLayer("Picture", options);
    EXPECT_TRUE(layer->open().isOK()) << layer->getStatus().message();
    return layer;
}

TileKey keyAt(double lon, double lat, unsigned lod)
{
    return Registry::instance()->getGlobalGeodeticProfile()->createTileKey(lon, lat, lod);
}

using Rgba = std::array<int, 4>;

// The pixel of a layer at a place, from the tile of that level.
Rgba pixel(ImageLayer& layer, double lon, double lat, unsigned lod)
{
    const TileKey key = keyAt(lon, lat, lod);
    const GeoImage image = layer.createImage(key);
    if (!image.valid())
        return {0, 0, 0, 0};
    const GeoExtent& e = key.getExtent();
    const int column = std::min(255, static_cast<int>((lon - e.west()) / e.width() * 256.0));
    const int row = std::min(255, static_cast<int>((lat - e.south()) / e.height() * 256.0));
    const unsigned char* p =
        image.getImage()->data(static_cast<unsigned>(column), static_cast<unsigned>(row));
    return {p[0], p[1], p[2], p[3]};
}
} // namespace

TEST(ImageSource, BandsBecomeRgba)
{
    struct
    {
        const char* name;
        int bands;
        bool alpha;
        Rgba expected;
    } const rows[] = {{"grey", 1, false, {40, 40, 40, 255}},
                      {"greyAlpha", 2, true, {40, 40, 40, 80}},
                      {"rgb", 3, false, {40, 80, 120, 255}},
                      {"rgba", 4, true, {40, 80, 120, 160}},
                      {"sixBands", 6, false, {40, 80, 120, 255}}};
    for (const auto& row : rows) {
        const ScratchFolder folder;
        RasterRecipe recipe;
        recipe.bands = row.bands;
        recipe.alpha = row.alpha;
        recipe.value = [](int band, int, int) { return 40.0 * (band + 1); };
        writeRaster(folder.path("p.tif"), recipe);
        const auto layer = openImage(folder.path("p.tif"));
        for (unsigned lod : {4u, 8u, 11u})
            EXPECT_EQ(pixel(*layer, 0.5, 0.5, lod), row.expected) << row.name << " at level " << lod;
        EXPECT_EQ(pixel(*layer, 1.3, 0.5, 8)[3], 0) << "transparent outside";
        EXPECT_FALSE(layer->createImage(keyAt(20, 20, 8)).valid());
    }
}

TEST(ImageSource, RowZeroIsInTheSouthAndPixelsAreAreas)
{
    const ScratchFolder folder;
    RasterRecipe recipe;
    recipe.width = recipe.height = 256;
    const GeoExtent e = keyAt(0.5, 0.5, 6).getExtent();
    recipe.place = {e.west(), e.width() / 256, 0, e.north(), 0, -e.height() / 256};
    recipe.bands = 3;
    recipe.value = [](int band, int column, int row) { return band == 0 ? column : band == 1 ? row : 7; };
    writeRaster(folder.path("p.tif"), recipe);
    const GeoImage image = openImage(folder.path("p.tif"))->createImage(keyAt(0.5, 0.5, 6));
    ASSERT_TRUE(image.valid());
    // Pixel for pixel the same picture, upside down.
    for (unsigned row : {0u, 1u, 100u, 255u})
        for (unsigned column : {0u, 1u, 130u, 255u}) {
            const unsigned char* p = image.getImage()->data(column, row);
            EXPECT_EQ(p[0], column);
            EXPECT_EQ(p[1], 255 - row);
            EXPECT_EQ(p[3], 255);
        }
}

TEST(ImageSource, PaletteKeepsItsColoursAndTransparency)
{
    const ScratchFolder folder;
    RasterRecipe recipe;
    recipe.palette = {{10, 20, 30, 255}, {200, 100, 50, 255}, {0, 0, 0, 0}};
    recipe.value = [](int, int column, int) { return column < 20 ? 0.0 : column < 40 ? 1.0 : 2.0; };
    recipe.driver = "PNG";
    recipe.options = {"WORLDFILE=YES"};
    writeRaster(folder.path("p.png"), recipe);
    Drivers::GDALOptions options;
    options.profile() = ProfileOptions("global-geodetic");
    const auto layer = openImage(folder.path("p.png"), options);
    EXPECT_EQ(pixel(*layer, 0.15, 0.5, 10), (Rgba{10, 20, 30, 255}));
    EXPECT_EQ(pixel(*layer, 0.45, 0.5, 10), (Rgba{200, 100, 50, 255}));
    EXPECT_EQ(pixel(*layer, 0.85, 0.5, 10)[3], 0);
}

TEST(ImageSource, ColoursOfClassesMixOnlyWhereTheMapFileLetsThem)
{
    const ScratchFolder folder;
    RasterRecipe recipe;
    recipe.value = [](int, int column, int) { return column % 2 ? 200.0 : 50.0; };
    writeRaster(folder.path("classes.tif"), recipe);
    for (const bool isNearest : {false, true}) {
        Drivers::GDALOptions options;
        if (isNearest)
            options.interpolation() = INTERP_NEAREST;
        const auto layer = openImage(folder.path("classes.tif"), options);
        // Enlarged, and halved once, where means are read.
        for (const unsigned lod : {9u, 4u}) {
            std::set<int> seen;
            for (double longitude = 0.3; longitude < 0.7; longitude += 0.001)
                seen.insert(pixel(*layer, longitude, 0.5, lod)[0]);
            EXPECT_EQ(seen.size() > 2 || *seen.begin() == 125, !isNearest) << lod;
        }
    }
}

TEST(ImageSource, WideWordsAreStretchedToBytes)
{
    for (GDALDataType type : {GDT_UInt16, GDT_Int16, GDT_Float32}) {
        const ScratchFolder folder;
        RasterRecipe recipe;
        recipe.type = type;
        recipe.hasNoData = true;
        recipe.noData = -1.0;
        if (type == GDT_UInt16)
            recipe.noData = 65535.0;
        recipe.value = [&](int, int column, int row) {
            return row < 8 ? recipe.noData : column < 32 ? 1000.0 : 9000.0;
        };
        writeRaster(folder.path("p.tif"), recipe);
        const auto layer = openImage(folder.path("p.tif"));
        const Rgba dark = pixel(*layer, 0.25, 0.5, 9), bright = pixel(*layer, 0.75, 0.5, 9);
        EXPECT_EQ(dark, (Rgba{0, 0, 0, 255})) << GDALGetDataTypeName(type);
        EXPECT_EQ(bright, (Rgba{255, 255, 255, 255})) << GDALGetDataTypeName(type);
        EXPECT_EQ(pixel(*layer, 0.5, 0.97, 9)[3], 0) << "no data";
    }
}

TEST(ImageSource, NoDataEdgesAreTransparentWithoutADarkFringe)
{
    const ScratchFolder folder;
    RasterRecipe recipe;
    recipe.bands = 3;
    recipe.hasNoData = true;
    recipe.noData = 0.0;
    recipe.value = [](int, int column, int) { return column < 32 ? 0.0 : 200.0; };
    writeRaster(folder.path("p.tif"), recipe);
    const auto layer = openImage(folder.path("p.tif"));
    EXPECT_EQ(pixel(*layer, 0.2, 0.5, 9)[3], 0);
    const GeoImage image = layer->createImage(keyAt(0.5, 0.5, 9));
    ASSERT_TRUE(image.valid());
    for (unsigned column = 0; column < 256; ++column) {
        const unsigned char* p = image.getImage()->data(column, 128);
        if (p[3] > 0) {
            EXPECT_EQ(p[0], 200) << "column " << column;
        }
    }
}

TEST(ImageSource, UtmPictureLiesWhereItBelongs)
{
    const ScratchFolder folder;
    RasterRecipe recipe;
    recipe.srs = "EPSG:32613";
    recipe.width = recipe.height = 200;
    recipe.place = {490000, 100, 0, 4150000, 0, -100};
    recipe.bands = 3;
    recipe.value = [](int band, int column, int row) { return band == 0 ? column : band == 1 ? row : 99.0; };
    writeRaster(folder.path("utm.tif"), recipe);
    const auto layer = openImage(folder.path("utm.tif"));
    const SpatialReference *wgs84 = SpatialReference::get("wgs84"),
                           *utm = SpatialReference::get("epsg:32613");
    for (int column : {20, 100, 180})
        for (int row : {15, 90, 185}) {
            osg::Vec3d p;
            ASSERT_TRUE(utm->transform(
                osg::Vec3d(490000 + (column + 0.5) * 100, 4150000 - (row + 0.5) * 100, 0), wgs84, p));
            for (unsigned lod : {10u, 13u}) {
                const Rgba found = pixel(*layer, p.x(), p.y(), lod);
                EXPECT_NEAR(found[0], column, 2) << lod;
                EXPECT_NEAR(found[1], row, 2) << lod;
                EXPECT_EQ(found[3], 255) << lod;
            }
        }
    // From far away, where a tile is much larger than the zone.
    osg::Vec3d centre;
    ASSERT_TRUE(utm->transform(osg::Vec3d(500000, 4140000, 0), wgs84, centre));
    EXPECT_EQ(pixel(*layer, centre.x(), centre.y(), 6)[2], 99);
}

TEST(ImageSource, ZeroTo360DegreesIsTheSameWorld)
{
    const ScratchFolder folder;
    RasterRecipe recipe;
    recipe.width = 360;
    recipe.height = 180;
    recipe.place = {0, 1, 0, 90, 0, -1};
    recipe.bands = 3;
    recipe.value = [](int band, int column, int) { return band == 0 ? column / 2 : 30.0; };
    writeRaster(folder.path("p.tif"), recipe);
    const auto layer = openImage(folder.path("p.tif"));
    EXPECT_NEAR(pixel(*layer, 90.0, 10.0, 5)[0], 45, 1);
    EXPECT_NEAR(pixel(*layer, -90.0, 10.0, 5)[0], 135, 1);
    EXPECT_NEAR(pixel(*layer, -179.9, 10.0, 5)[0], 90, 1);
    EXPECT_EQ(pixel(*layer, -90.0, 10.0, 0)[3], 255);
}

// Pictures of terrain tiles are half a texel wider than the tile: the outermost tiles reach over 180 degrees.
TEST(ImageSource, WebMercatorReachesToBothSidesOf180Degrees)
{
    const ScratchFolder folder;
    RasterRecipe recipe;
    recipe.width = recipe.height = 256;
    recipe.srs = "EPSG:3857";
    constexpr double rim = 20037508.342789244;
    recipe.place = {-rim, 2.0 * rim / 256, 0, rim, 0, -2.0 * rim / 256};
    recipe.value = [](int, int column, int) { return column < 128 ? 50.0 : 200.0; };
    writeRaster(folder.path("p.tif"), recipe);
    const auto layer = openImage(folder.path("p.tif"));
    const SpatialReference* wgs84 = SpatialReference::get("wgs84");
    const struct
    {
        GeoExtent extent;
        int value;
    } rows[] = {{GeoExtent(wgs84, -180.01, -10.0, -174.99, -5.0), 50},
                {GeoExtent(wgs84, 174.99, -10.0, 180.01, -5.0), 200}};
    for (const auto& row : rows) {
        osg::ref_ptr<osg::Image> picture;
        ASSERT_EQ(layer->getSource()->readImage(row.extent, 256, picture, nullptr),
                  RasterSource::Answer::Data);
        for (unsigned column : {1u, 128u, 254u}) {
            EXPECT_EQ(picture->data(column, 128)[0], row.value) << column;
            EXPECT_EQ(picture->data(column, 128)[3], 255) << column;
        }
    }
}

TEST(ImageSource, PictureWithoutOverviewsIsDecodedOnceForAllThreads)
{
    const ScratchFolder folder;
    RasterRecipe recipe;
    recipe.width = 512;
    recipe.height = 256;
    recipe.place = {-180, 360.0 / 512, 0, 90, 0, -180.0 / 256};
    recipe.bands = 3;
    recipe.driver = "JPEG";
    recipe.srs.clear();
    recipe.value = [](int, int, int) { return 128.0; };
    writeRaster(folder.path("world.jpg"), recipe);
    Drivers::GDALOptions options;
    options.profile() = ProfileOptions("global-geodetic");
    const auto layer = openImage(folder.path("world.jpg"), options);
    std::atomic<int> good{0};
    std::vector<std::thread> threads;
    for (unsigned t = 0; t < 4; ++t)
        threads.emplace_back([&, t] {
            for (unsigned lod = 0; lod < 8; ++lod)
                if (std::abs(pixel(*layer, -170.0 + t * 90.0, 20.0, lod)[1] - 128) <= 2)
                    ++good;
        });
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(good, 32);
}

// ---- sources that fail

namespace {
void write(const std::string& path, const std::string& bytes)
{
    std::ofstream(path, std::ios::binary) << bytes;
}

std::string read(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

RasterRecipe large()
{
    RasterRecipe recipe;
    recipe.width = recipe.height = 256;
    recipe.value = [](int, int column, int row) { return (column * 31 + row * 17) % 251; };
    return recipe;
}
} // namespace

TEST(FailingFile, IsOneLineThatNamesLayerAndFileAndAnErrorOfTheLayer)
{
    using Recipe = std::function<void(RasterRecipe&)>;
    using Make = std::function<void(const std::string& path)>;
    const auto raster = [](const Recipe& spoil) {
        return Make([spoil](const std::string& path) {
            RasterRecipe recipe;
            spoil(recipe);
            writeRaster(path, recipe);
        });
    };
    const auto cut = [](double share) {
        return Make([share](const std::string& path) {
            writeRaster(path, large());
            const std::string bytes = read(path);
            write(path, bytes.substr(0, static_cast<size_t>(share * static_cast<double>(bytes.size()))));
        });
    };
    const std::pair<const char*, Make> rows[] = {
        {"missing", [](const std::string&) {}},
        {"empty", [](const std::string& path) { write(path, ""); }},
        {"text", [](const std::string& path) { write(path, "no raster at all"); }},
        {"a folder", [](const std::string& path) { std::filesystem::create_directories(path); }},
        {"cut off", cut(0.5)},
        {"header only", cut(0.002)},
        {"no projection", raster([](RasterRecipe& recipe) { recipe.srs.clear(); })},
        {"a site's own grid",
         raster([](RasterRecipe& recipe) { recipe.srs = "LOCAL_CS[\"site grid\",UNIT[\"metre\",1]]"; })},
        {"no position", raster([](RasterRecipe& recipe) { recipe.place = {0, 1, 0, 0, 0, 1}; })},
        {"off the Earth", raster([](RasterRecipe& recipe) {
             recipe.srs = "EPSG:32613";
             recipe.place = {1e15, 1000, 0, 1e15, 0, -1000};
         })}};
    for (const auto& [name, make] : rows)
        for (const bool heights : {false, true}) {
            SCOPED_TRACE(name);
            const ScratchFolder folder;
            const std::string path = folder.path("source.tif");
            make(path);
            Drivers::GDALOptions options;
            options.url() = URI(path);
            const LogCapture log;
            osg::ref_ptr<TerrainLayer> layer;
            if (heights)
                layer = new ElevationLayer("Broken", options);
            else
                layer = new ImageLayer("Broken", options);
            EXPECT_TRUE(layer->open().isError());
            EXPECT_TRUE(layer->open().isError()) << "the same answer again, and no second line";
            ASSERT_EQ(log.lines().size(), 1u);
            EXPECT_EQ(log.linesWith("\"Broken\""), 1u) << log.lines()[0];
            EXPECT_EQ(log.linesWith(path), 1u) << log.lines()[0];
            EXPECT_FALSE(layer->mayHaveData(keyAt(0.5, 0.5, 5)));
            EXPECT_FALSE(layer->getDataExtent().isValid());
        }
}

TEST(DamagedFile, DamageInTheMiddleIsOneLineHoweverManyTilesMeetIt)
{
    const ScratchFolder folder;
    const std::string path = folder.path("damaged.tif");
    RasterRecipe recipe = large();
    recipe.options = {"COMPRESS=DEFLATE", "TILED=YES", "BLOCKXSIZE=64", "BLOCKYSIZE=64"};
    recipe.place = {0, 1.0 / 256, 0, 1, 0, -1.0 / 256};
    writeRaster(path, recipe);
    std::string bytes = read(path);
    for (size_t i = bytes.size() / 3; i < bytes.size() / 2; ++i)
        bytes[i] = 'x';
    write(path, bytes);
    Drivers::GDALOptions options;
    options.url() = URI(path);
    const LogCapture log;
    const osg::ref_ptr<ImageLayer> layer = new ImageLayer("Damaged", options);
    layer->open();
    for (unsigned lod : {7u, 8u, 9u, 9u})
        layer->createImage(keyAt(0.4, 0.6, lod));
    EXPECT_EQ(log.lines().size(), 1u);
    EXPECT_EQ(log.linesWith(path), 1u);
    EXPECT_EQ(log.linesWith("\"Damaged\""), 1u);
}
