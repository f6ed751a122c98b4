#include <gtest/gtest.h>

#include <osg/Image>
#include <osgDB/ReadFile>
#include <osgEarth/ElevationQuery>
#include <osgEarth/MapNode>
#include <osgEarth/Registry>

#include <algorithm>
#include <set>
#include <string>

using namespace osgEarth;

namespace {
std::string resource(const std::string& name)
{
    return std::string(AX_RESOURCES) + "/map/" + name;
}

osg::ref_ptr<MapNode> open(const std::string& name)
{
    const osg::ref_ptr<osg::Node> node = osgDB::readRefNodeFile(resource(name));
    return MapNode::findMapNode(node.get());
}

/// The pixel of a layer's tile nearest to a place; 0 to 255 each.
osg::Vec4 pixelAt(ImageLayer& layer, double longitude, double latitude, unsigned level)
{
    const Profile* profile = Registry::instance()->getGlobalGeodeticProfile();
    const TileKey key = profile->createTileKey(longitude, latitude, level);
    const GeoImage picture = layer.createImage(key);
    if (!picture.valid())
        return {};
    const GeoExtent& extent = key.getExtent();
    const osg::Image& image = *picture.getImage();
    const int column = static_cast<int>((longitude - extent.west()) / extent.width() * image.s());
    const int row = static_cast<int>((latitude - extent.south()) / extent.height() * image.t());
    return image.getColor(static_cast<unsigned>(std::min(column, image.s() - 1)),
                          static_cast<unsigned>(std::min(row, image.t() - 1))) *
           255.0f;
}

class ShippedMap : public testing::TestWithParam<const char*>
{
};
} // namespace

TEST_P(ShippedMap, OpensEveryLayerAndNamesThoseThatTheViewerSwitches)
{
    const osg::ref_ptr<MapNode> node = open(GetParam());
    ASSERT_TRUE(node.valid());
    LayerVector layers;
    node->getMap()->getLayers(layers);
    std::set<std::string> names;
    for (const auto& layer : layers) {
        EXPECT_TRUE(layer->getStatus().isOK()) << layer->getName() << ": " << layer->getStatus().message();
        names.insert(layer->getName());
    }
    for (const char* name :
         {"World", "Trinidad relief", "World heights", "Trinidad heights", "Country", "Capital", "City"})
        EXPECT_EQ(names.count(name), 1u) << name;
}

INSTANTIATE_TEST_SUITE_P(Both, ShippedMap, testing::Values("google_cn.earth", "google_cn_net_no.earth"));

TEST(ShippedMapData, KnownSummitsHaveTheirHeights)
{
    const osg::ref_ptr<MapNode> node = open("google_cn_net_no.earth");
    ASSERT_TRUE(node.valid());
    ElevationQuery query(node->getMap());
    const SpatialReference* wgs84 = node->getMap()->getSRS();
    const struct
    {
        const char* name;
        double longitude, latitude, low, high;
    } places[] = {{"Blanca Peak, 4374 m", -105.4857, 37.5775, 4200.0, 4380.0},
                  {"West Spanish Peak, 4155 m", -104.9934, 37.3756, 4000.0, 4160.0},
                  {"mid-Pacific", -150.0, 10.0, 0.0, 0.0},
                  {"Tibet, from the world's heights", 88.0, 33.0, 4500.0, 5500.0}};
    for (const auto& place : places) {
        double height = -1.0;
        ASSERT_TRUE(query.getElevation(GeoPoint(wgs84, place.longitude, place.latitude), height))
            << place.name;
        EXPECT_GE(height, place.low) << place.name;
        EXPECT_LE(height, place.high) << place.name;
    }
}

TEST(ShippedMapData, ReliefFadesOutTowardsItsRim)
{
    const osg::ref_ptr<MapNode> node = open("google_cn_net_no.earth");
    ASSERT_TRUE(node.valid());
    ImageLayer* relief = node->getMap()->getImageLayerByName("Trinidad relief");
    ASSERT_TRUE(relief);
    EXPECT_EQ(pixelAt(*relief, -105.0, 37.5, 10).a(), 255.0f);
    const float nearRim = pixelAt(*relief, -105.97, 37.5, 10).a();
    EXPECT_GT(nearRim, 40.0f);
    EXPECT_LT(nearRim, 200.0f);
    EXPECT_LT(pixelAt(*relief, -105.999, 37.5, 10).a(), 10.0f);
    EXPECT_EQ(pixelAt(*relief, -106.02, 37.5, 10).a(), 0.0f);
}

TEST(ShippedMapData, WorldPictureHasNoSeamAtTheAntimeridian)
{
    const osg::ref_ptr<MapNode> node = open("google_cn_net_no.earth");
    ASSERT_TRUE(node.valid());
    ImageLayer* world = node->getMap()->getImageLayerByName("World");
    ASSERT_TRUE(world);
    for (double latitude = 82.0; latitude < 90.0; latitude += 0.5) {
        const osg::Vec4 east = pixelAt(*world, 179.95, latitude, 3),
                        west = pixelAt(*world, -179.95, latitude, 3);
        for (unsigned band = 0; band < 3; ++band)
            EXPECT_NEAR(east[band], west[band], 45.0f) << "latitude " << latitude << ", band " << band;
    }
}
