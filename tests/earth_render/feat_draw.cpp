#include "OffscreenGlobe.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <osg/LineWidth>
#include <osgEarth/DrapeableNode>
#include <osgEarth/ElevationLayer>
#include <osgEarth/GeoData>
#include <osgEarth/ImageLayer>
#include <osgEarth/Map>
#include <osgEarth/MapNode>
#include <osgEarth/ModelLayer>
#include <osgEarthAnnotation/CircleNode>
#include <osgEarthAnnotation/LabelNode>
#include <osgEarthDrivers/feature_ogr/OGRFeatureOptions>
#include <osgEarthDrivers/gdal/GDALOptions>
#include <osgEarthDrivers/model_feature_geom/FeatureGeomModelOptions>

using namespace osgEarth;
using namespace osgEarth::Annotation;

namespace {
const double kLon = -105.0, kLat = 37.4;

osg::ref_ptr<Map> plainGlobe()
{
    osg::ref_ptr<Map> map = new Map();
    Drivers::GDALOptions picture, heights;
    picture.url() = shippedMapFile("world.tif");
    heights.url() = shippedMapFile("trinidad_90m_metres.tif");
    map->addImageLayer(new ImageLayer("world", picture));
    map->addElevationLayer(new ElevationLayer("heights", heights));
    return map;
}

GeoPoint place(double lon, double lat)
{
    return GeoPoint(SpatialReference::get("wgs84"), lon, lat, 0.0, ALTMODE_ABSOLUTE);
}

Style draped(const Color& fill)
{
    Style style;
    style.getOrCreate<PolygonSymbol>()->fill()->color() = fill;
    style.getOrCreate<AltitudeSymbol>()->clamping() = AltitudeSymbol::CLAMP_TO_TERRAIN;
    style.getOrCreate<AltitudeSymbol>()->technique() = AltitudeSymbol::TECHNIQUE_DRAPE;
    return style;
}

bool isPureRed(const osg::Vec3i& c)
{
    return c.x() > 200 && c.y() < 40 && c.z() < 40;
}

bool isPureBlue(const osg::Vec3i& c)
{
    return isPureRed({c.z(), c.y(), c.x()});
}

/// Draws until heights and stencil are known and pixels no longer change.
void settle(OffscreenGlobe& globe)
{
    ASSERT_TRUE(globe.drawUntilComplete());
    for (int i = 0; i < 40; ++i)
        globe.frame();
}

int countPixels(const OffscreenGlobe& globe, bool (*match)(const osg::Vec3i&))
{
    int count = 0;
    for (int y = 0; y < OffscreenGlobe::kHeight; ++y)
        for (int x = 0; x < OffscreenGlobe::kWidth; ++x)
            count += match(globe.pixel(x, y)) ? 1 : 0;
    return count;
}

Drivers::FeatureGeomModelOptions featureLayer(const std::string& file, const std::string& css)
{
    Drivers::OGRFeatureOptions features;
    features.url() = std::filesystem::path(file).is_absolute() ? file : shippedMapFile(file);
    Drivers::FeatureGeomModelOptions options;
    options.featureOptions() = features;
    options.styles() = new StyleSheet();
    options.styles()->addStyle(Style(Config("style", css)));
    return options;
}
} // namespace

TEST(FeatDrawDrape, PaintsTheGroundInsideAndNothingElse)
{
    OffscreenGlobe globe(plainGlobe());
    globe.lookAt(kLon, kLat, 2500.0, 0.0, -90.0, 40000.0);
    settle(globe);
    const osg::Vec3i outsideBefore = globe.pixel(20, 20);
    osg::ref_ptr<CircleNode> circle =
        new CircleNode(&globe.mapNode(), place(kLon, kLat), Distance(5000.0), draped(Color::Red));
    globe.mapNode().addChild(circle);
    settle(globe);
    // 40 km away 400 pixels cover 21.4 km at the height looked at: 5 km are some 93 pixels.
    EXPECT_TRUE(isPureRed(globe.pixel(320, 200)));
    EXPECT_TRUE(isPureRed(globe.pixel(320 + 80, 200)));
    EXPECT_TRUE(isPureRed(globe.pixel(320, 200 - 80)));
    EXPECT_FALSE(isPureRed(globe.pixel(320 + 110, 200)));
    EXPECT_FALSE(isPureRed(globe.pixel(320, 200 + 110)));
    EXPECT_EQ(globe.pixel(20, 20), outsideBefore);
    // Straight down the disc is whole whatever the relief: no holes, no fringe.
    EXPECT_NEAR(countPixels(globe, isPureRed), 3.14159 * 93.4 * 93.4, 1500);

    globe.mapNode().removeChild(circle);
    globe.frame();
    EXPECT_EQ(countPixels(globe, isPureRed), 0);
}

TEST(FeatDrawDrape, AHillInFrontHidesIt)
{
    OffscreenGlobe globe(plainGlobe());
    globe.mapNode().addChild(
        new CircleNode(&globe.mapNode(), place(kLon, kLat), Distance(3000.0), draped(Color::Red)));
    globe.lookAt(kLon, kLat, 3000.0, 0.0, -8.0, 20000.0);
    settle(globe);
    const int oblique = countPixels(globe, isPureRed);
    EXPECT_GT(oblique, 20);
    int sky = 0;
    for (int x = 0; x < OffscreenGlobe::kWidth; ++x)
        sky += OffscreenGlobe::isHole(globe.pixel(x, OffscreenGlobe::kHeight - 1)) ? 1 : 0;
    EXPECT_EQ(sky, OffscreenGlobe::kWidth) << "the volume itself must not show against the sky";
}

TEST(FeatDrawDrape, ADiscOverHalfTheGlobeHasNoHoles)
{
    OffscreenGlobe globe(plainGlobe());
    globe.mapNode().addChild(
        new CircleNode(&globe.mapNode(), place(116.5, 40.0), Distance(6378137.0), draped(Color::Red)));
    globe.lookAt(116.5, 40.0, 0.0, 0.0, -90.0, 4 * 6378137.0);
    settle(globe);
    for (int y = 100; y <= 300; y += 5)
        for (int x = 220; x <= 420; x += 5)
            if (std::hypot(x - 320, y - 200) < 100) {
                ASSERT_TRUE(isPureRed(globe.pixel(x, y))) << x << " " << y;
            }
}

TEST(FeatDrawDrape, LinesInWorldCoordinatesLieOnTheGroundInPixels)
{
    OffscreenGlobe globe(plainGlobe());
    osg::ref_ptr<osg::Geometry> line = new osg::Geometry();
    osg::ref_ptr<osg::Vec3Array> points = new osg::Vec3Array();
    for (const double lon : {kLon - 0.1, kLon + 0.1}) {
        osg::Vec3d world;
        ASSERT_TRUE(place(lon, kLat).toWorld(world));
        points->push_back(world);
    }
    line->setVertexArray(points);
    osg::ref_ptr<osg::Vec4Array> red = new osg::Vec4Array(1, &Color::Red);
    line->setColorArray(red, osg::Array::BIND_OVERALL);
    line->addPrimitiveSet(new osg::DrawArrays(GL_LINES, 0, 2));
    line->getOrCreateStateSet()->setAttribute(new osg::LineWidth(6.0f));
    osg::ref_ptr<DrapeableNode> drape = new DrapeableNode();
    drape->addChild(line);
    globe.mapNode().addChild(drape);
    globe.lookAt(kLon, kLat, 2500.0, 0.0, -90.0, 40000.0);
    settle(globe);
    int thickness = 0;
    for (int y = 150; y < 250; ++y)
        thickness += isPureRed(globe.pixel(320, y)) ? 1 : 0;
    EXPECT_GE(thickness, 4);
    EXPECT_LE(thickness, 9);

    drape->setDrapingEnabled(false);
    globe.frame();
    EXPECT_EQ(countPixels(globe, isPureRed), 0) << "drawn as it is, the line lies deep below the hills";
}

/// The columns of the screen that have a pure red pixel: first and last.
std::pair<int, int> redColumns(OffscreenGlobe& globe)
{
    int left = OffscreenGlobe::kWidth, right = 0;
    for (int y = 0; y < OffscreenGlobe::kHeight; ++y)
        for (int x = 0; x < OffscreenGlobe::kWidth; ++x)
            if (isPureRed(globe.pixel(x, y))) {
                left = std::min(left, x);
                right = std::max(right, x);
            }
    return {left, right};
}

TEST(FeatDrawLabel, StandsAtItsPlaceInPixels)
{
    struct Row
    {
        const char* text;
        TextSymbol::Alignment alignment;
        double size;
        int from, to; // columns beside the place
    };
    OffscreenGlobe globe(plainGlobe());
    for (const Row& row :
         {Row{"HHHH", TextSymbol::ALIGN_CENTER_CENTER, 40.0, -60, 60},
          Row{"HHHH", TextSymbol::ALIGN_LEFT_BOTTOM, 40.0, 0, 120},
          Row{"HHHH", TextSymbol::ALIGN_RIGHT_TOP, 40.0, -120, 0},
          // What is not drawn out of the shared picture of letters: odd sizes, several lines.
          Row{"HHHH", TextSymbol::ALIGN_CENTER_CENTER, 40.4, -60, 60},
          Row{"HHHH\nHHHH", TextSymbol::ALIGN_CENTER_CENTER, 40.0, -60, 60}}) {
        SCOPED_TRACE(testing::Message() << row.text << ' ' << row.alignment << ' ' << row.size);
        Style style;
        style.getOrCreate<TextSymbol>()->fill()->color() = Color::Red;
        style.getOrCreate<TextSymbol>()->size() = NumericExpression(row.size);
        style.getOrCreate<TextSymbol>()->alignment() = row.alignment;
        osg::ref_ptr<LabelNode> label = new LabelNode(&globe.mapNode(), place(kLon, kLat), row.text, style);
        globe.mapNode().addChild(label);
        // Others, which may be drawn in one go with it.
        style.getOrCreate<TextSymbol>()->fill()->color() = Color::Blue;
        style.getOrCreate<TextSymbol>()->pixelOffset() = osg::Vec2s(0, 120);
        osg::ref_ptr<LabelNode> above = new LabelNode(&globe.mapNode(), place(kLon, kLat), "HI", style);
        globe.mapNode().addChild(above);
        for (const double range : {100000.0, 10000000.0}) {
            globe.lookAt(kLon, kLat, 0.0, 0.0, -90.0, range);
            settle(globe);
            EXPECT_GT(countPixels(globe, isPureRed), 300) << range;
            EXPECT_GT(countPixels(globe, isPureBlue), 100) << range;
            const auto [left, right] = redColumns(globe);
            EXPECT_NEAR(left, 320 + row.from, 9);
            EXPECT_NEAR(right, 320 + row.to, 9);
        }
        // From the other side of the globe it is not seen.
        globe.lookAt(kLon + 180.0, -kLat, 0.0, 0.0, -90.0, 10000000.0);
        settle(globe);
        EXPECT_EQ(countPixels(globe, isPureRed), 0);
        globe.mapNode().removeChild(label);
        globe.mapNode().removeChild(above);
    }
}

TEST(FeatDrawLayer, PlaceNamesAppearAndFollowVisibility)
{
    osg::ref_ptr<Map> map = plainGlobe();
    osg::ref_ptr<ModelLayer> layer = new ModelLayer(
        "City", featureLayer("places.csv", "text-content: [name]; text-size: 16; text-fill: #ff0000;"
                                           "text-halo: #200000; text-priority: [population]"));
    map->addModelLayer(layer);
    OffscreenGlobe globe(map);
    globe.lookAt(10.0, 45.0, 0.0, 0.0, -90.0, 2000000.0);
    settle(globe);
    EXPECT_GT(countPixels(globe, isPureRed), 500);
    layer->setVisible(false);
    settle(globe);
    EXPECT_EQ(countPixels(globe, isPureRed), 0);
    layer->setVisible(true);
    settle(globe);
    EXPECT_GT(countPixels(globe, isPureRed), 500);
}

TEST(FeatDrawLayer, AMountainInFrontHidesAPlaceName)
{
    // A village that nobody built, 10 km north of West Spanish Peak.
    const std::filesystem::path file = std::filesystem::temp_directory_path() / "village-behind-peak.json";
    std::ofstream(file) << R"({"type": "FeatureCollection", "features": [{"type": "Feature",
        "properties": {"name": "HHHHHHHH"}, "geometry": {"type": "Point", "coordinates": [-104.993, 37.465]}}]})";
    osg::ref_ptr<Map> map = plainGlobe();
    map->addModelLayer(new ModelLayer(
        "City", featureLayer(file.string(), "text-content: [name]; text-size: 24; text-fill: #ff0000;"
                                            "text-halo: #ff0000")));
    OffscreenGlobe globe(map);
    const struct
    {
        double latitude, height, heading, pitch, range;
        bool shown;
    } rows[] = {{37.376, 4100.0, 0.0, -90.0, 40000.0, true},
                {37.376, 4100.0, 0.0, -3.0, 15000.0, false},
                {37.376, 4100.0, 0.0, -40.0, 15000.0, true},
                {37.465, 2500.0, 180.0, -5.0, 15000.0, true}};
    for (const auto& row : rows) {
        globe.lookAt(-104.993, row.latitude, row.height, row.heading, row.pitch, row.range);
        settle(globe);
        EXPECT_EQ(countPixels(globe, isPureRed) > 100, row.shown) << row.heading << ' ' << row.pitch;
    }
    std::filesystem::remove(file);
}

TEST(FeatDrawLayer, BordersShowAtEveryRange)
{
    osg::ref_ptr<Map> map = plainGlobe();
    map->addModelLayer(new ModelLayer(
        "Country", featureLayer("countries-50m.json",
                                "stroke: #ff0000; stroke-width: 2px; altitude-clamping: terrain")));
    OffscreenGlobe globe(map);
    for (const double range : {25000000.0, 5000000.0, 350000.0}) {
        globe.lookAt(8.0, 46.2, 0.0, 0.0, -90.0, range);
        settle(globe);
        EXPECT_GT(countPixels(globe, isPureRed), 300) << range;
    }
    // Over the open ocean nothing shines through the globe.
    globe.lookAt(-140.0, 35.0, 0.0, 0.0, -90.0, 500000.0);
    settle(globe);
    EXPECT_EQ(countPixels(globe, isPureRed), 0);
}
