#include "featurelayers/FeatureGeomModelSource.h"
#include "features/OgrFeatureSource.h"
#include <fstream>
#include <gtest/gtest.h>
#include <osgDB/FileNameUtils>
#include <osgDB/FileUtils>
#include <osgEarthDrivers/model_feature_geom/FeatureGeomModelOptions>
#include <set>

using namespace osgEarth;
using namespace osgEarth::Features;
using osgEarth::Drivers::FeatureGeomModelOptions;
using osgEarth::Drivers::OGRFeatureOptions;

namespace {
const std::string kMap = std::string(AX_RESOURCES) + "/map/";

/// A file that goes when the test ends.
class TemporaryFile
{
public:
    TemporaryFile(const std::string& name, const std::string& content) : _path(testing::TempDir() + name)
    {
        std::ofstream(_path, std::ios::binary) << content;
    }
    ~TemporaryFile() { std::remove(_path.c_str()); }
    const std::string& path() const { return _path; }

private:
    std::string _path;
};

OGRFeatureOptions optionsFor(const std::string& path)
{
    OGRFeatureOptions options;
    options.url() = URI(path);
    return options;
}

osg::ref_ptr<FeatureSource> sourceFor(const std::string& path)
{
    return FeatureSourceFactory::create(optionsFor(path));
}

FeatureList featuresOf(FeatureSource& source, const std::string& expression = "")
{
    Query query;
    if (!expression.empty())
        query.expression() = expression;
    FeatureList list;
    osg::ref_ptr<FeatureCursor> cursor = source.createFeatureCursor(query);
    if (cursor.valid())
        cursor->fill(list);
    return list;
}
} // namespace

TEST(FeatOgrSource, FailuresNameTheFileAndTheCause)
{
    const TemporaryFile empty("feat_empty.shp", ""),
        garbage("feat_garbage.json", "this is no map data at all");
    const TemporaryFile cut("feat_cut.json", "{\"type\":\"Topology\",\"objects\":{\"a\":{\"type\":");
    const TemporaryFile table("feat_table.csv", "name,size\na,1\n");
    for (const std::string& path :
         {std::string("/nowhere/at/all.shp"), empty.path(), garbage.path(), cut.path(), table.path()}) {
        osg::ref_ptr<FeatureSource> source = sourceFor(path);
        EXPECT_TRUE(source->open().isError()) << path;
        const std::string& message = source->getStatus().message();
        EXPECT_NE(message.find(path), std::string::npos) << message;
        EXPECT_GT(message.size(), path.size() + 5) << "no cause in: " << message;
        EXPECT_EQ(message.find('\n'), std::string::npos) << message;
        EXPECT_EQ(source->createFeatureCursor(), nullptr);
        EXPECT_EQ(source->getFeatureProfile(), nullptr);
    }
    OGRFeatureOptions layer = optionsFor(kMap + "countries-50m.json");
    layer.layer() = "rivers";
    osg::ref_ptr<FeatureSource> rivers = FeatureSourceFactory::create(layer);
    EXPECT_TRUE(rivers->open().isError());
    EXPECT_NE(rivers->getStatus().message().find("rivers"), std::string::npos);
    FeatureSourceOptions unknown;
    unknown.setDriver("telepathy");
    EXPECT_EQ(osg::ref_ptr<FeatureSource>(FeatureSourceFactory::create(unknown)), nullptr);
    FeatureGeomModelOptions none, foreign, nameless, otherDriver;
    foreign.featureOptions() = optionsFor(garbage.path());
    nameless.featureOptions() = optionsFor("");
    otherDriver.featureOptions() = unknown;
    const std::pair<const FeatureGeomModelOptions*, std::string> models[] = {
        {&none, "features"}, {&foreign, garbage.path()}, {&nameless, ""}, {&otherDriver, "telepathy"}};
    for (const auto& [options, named] : models) {
        osg::ref_ptr<ModelSource> source = Drivers::createFeatureGeomModelSource(*options);
        const Status& status = source->open(nullptr);
        EXPECT_TRUE(status.isError()) << named;
        EXPECT_NE(status.message().find(named), std::string::npos) << status.message();
        EXPECT_EQ(source->createNode(nullptr, nullptr), nullptr);
    }
}

TEST(FeatOgrSource, ReadsTopologiesAndKeepsAttributes)
{
    osg::ref_ptr<FeatureSource> source = sourceFor(kMap + "countries-50m.json");
    ASSERT_TRUE(source->open().isOK()) << source->getStatus().message();
    EXPECT_TRUE(source->getFeatureProfile()->getSRS()->isGeographic());
    const FeatureList norway = featuresOf(*source, "name = 'Norway'");
    ASSERT_EQ(norway.size(), 1u);
    EXPECT_EQ(norway.front()->getString("NAME"), "Norway"); // names without case
    EXPECT_GT(norway.front()->getGeometry()->getTotalPointCount(), 500);
    EXPECT_EQ(featuresOf(*source).size(), size_t(source->getFeatureCount()));
}

TEST(FeatOgrSource, PlacesFilterByKind)
{
    osg::ref_ptr<FeatureSource> source = sourceFor(kMap + "places.csv");
    ASSERT_TRUE(source->open().isOK()) << source->getStatus().message();
    EXPECT_EQ(featuresOf(*source, "kind = 'Capital'").size(), 241u);
    EXPECT_EQ(featuresOf(*source, "kind='City'").size(), 4278u);
    const FeatureList shanghai = featuresOf(*source, "name = 'Shanghai'");
    ASSERT_EQ(shanghai.size(), 1u);
    EXPECT_NEAR(shanghai.front()->getGeometry()->front().x(), 121.45806, 1e-9);
    EXPECT_EQ(shanghai.front()->getDouble("population"), 22315474.0);
}

TEST(FeatOgrSource, TheMapFileMayNameTheReferenceSystem)
{
    const TemporaryFile file("feat_system.csv", "id;wkt\n1;POINT(500000 4000000)\n");
    const struct
    {
        const char *key, *value;
        double longitude; // degrees; the system's own number where that is one in degrees
    } rows[] = {{"srs", "epsg:32613", -105.0},
                {"profile", "epsg:32613", -105.0},
                {"profile", "spherical-mercator", 4.4915764}};
    for (const auto& row : rows) {
        Config conf("features");
        conf.add("url", file.path());
        conf.add(row.key, row.value);
        // As a layer hands them on: through the tree of the general options.
        const FeatureSourceOptions general{ConfigOptions(conf)};
        osg::ref_ptr<FeatureSource> source = FeatureSourceFactory::create(general);
        ASSERT_TRUE(source->open().isOK()) << source->getStatus().message();
        const FeatureList features = featuresOf(*source);
        ASSERT_EQ(features.size(), 1u);
        features.front()->transform(SpatialReference::get("wgs84"));
        EXPECT_NEAR(features.front()->getGeometry()->front().x(), row.longitude, 1e-6)
            << row.key << row.value;
    }
}

TEST(FeatOgrSource, TablesWithoutGeometryUseTheirCoordinateColumns)
{
    const TemporaryFile file("feat_columns.csv",
                             "Name,Latitude,Longitude\nA,10,20\nB,,5\nC,95,5\nD,-3.5,170\n");
    osg::ref_ptr<FeatureSource> source = sourceFor(file.path());
    ASSERT_TRUE(source->open().isOK()) << source->getStatus().message();
    std::map<std::string, osg::Vec3d> places;
    for (const auto& feature : featuresOf(*source))
        places[feature->getString("name")] = feature->getGeometry()->front();
    ASSERT_EQ(places.size(), 2u); // a missing and an impossible latitude are left out
    EXPECT_EQ(places["A"], osg::Vec3d(20.0, 10.0, 0.0));
    EXPECT_EQ(places["D"], osg::Vec3d(170.0, -3.5, 0.0));
}
