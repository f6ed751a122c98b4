#include <gtest/gtest.h>

#include <osgDB/ReadFile>
#include <osgEarth/ElevationQuery>
#include <osgEarth/MapNode>
#include <osgEarthDrivers/model_feature_geom/FeatureGeomModelOptions>

#include <set>
#include <string>

using namespace osgEarth;
using osgEarth::Drivers::FeatureGeomModelOptions;

namespace {
std::string resource(const std::string& name)
{
    return std::string(AX_RESOURCES) + "/map/" + name;
}

osg::ref_ptr<MapNode> openShipped(const std::string& name)
{
    const osg::ref_ptr<osg::Node> node = osgDB::readRefNodeFile(resource(name));
    return MapNode::findMapNode(node.get());
}

class ShippedMap : public testing::TestWithParam<const char*>
{
};
} // namespace

TEST_P(ShippedMap, OpensEveryLayerAndNamesThoseThatTheViewerSwitches)
{
    const osg::ref_ptr<MapNode> node = openShipped(GetParam());
    ASSERT_TRUE(node.valid());
    std::set<std::string> names;
    const auto look = [&names](const auto& layers) {
        for (const auto& layer : layers) {
            EXPECT_TRUE(layer->getStatus().isOK())
                << layer->getName() << ": " << layer->getStatus().message();
            names.insert(layer->getName());
        }
    };
    ImageLayerVector images;
    node->getMap()->getImageLayers(images);
    look(images);
    ElevationLayerVector elevations;
    node->getMap()->getElevationLayers(elevations);
    look(elevations);
    ModelLayerVector models;
    node->getMap()->getModelLayers(models);
    look(models);
    for (const auto& layer : models) {
        const FeatureGeomModelOptions options(layer->getModelLayerOptions().driver().value());
        EXPECT_EQ(options.featureOptions()->profile()->namedProfile().value(), "global-geodetic")
            << layer->getName() << ": osgEarth 2.8 shows no features whose system the map file does not name";
    }
    for (const char* name :
         {"World", "Trinidad relief", "World heights", "Trinidad heights", "Country", "Capital", "City"})
        EXPECT_EQ(names.count(name), 1u) << name;
}

INSTANTIATE_TEST_SUITE_P(Both, ShippedMap, testing::Values("google_cn.earth", "google_cn_net_no.earth"));

TEST(ShippedMapData, KnownSummitsHaveTheirHeights)
{
    const osg::ref_ptr<MapNode> node = openShipped("google_cn_net_no.earth");
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
