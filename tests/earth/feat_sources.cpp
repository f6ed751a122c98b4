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
}

TEST(FeatOgrSource, WrongLayerAndWrongDriverAreErrors)
{
    OGRFeatureOptions layer = optionsFor(kMap + "countries-50m.json");
    layer.layer() = "rivers";
    osg::ref_ptr<FeatureSource> source = FeatureSourceFactory::create(layer);
    EXPECT_TRUE(source->open().isError());
    EXPECT_NE(source->getStatus().message().find("rivers"), std::string::npos);

    FeatureSourceOptions unknown;
    unknown.setDriver("telepathy");
    EXPECT_EQ(osg::ref_ptr<FeatureSource>(FeatureSourceFactory::create(unknown)), nullptr);
    EXPECT_TRUE(sourceFor("")->open().isError());
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

TEST(FeatOgrSource, UnreadableQueryGivesNoCursorAndSpoilsNothing)
{
    osg::ref_ptr<FeatureSource> source = sourceFor(kMap + "places.csv");
    ASSERT_TRUE(source->open().isOK());
    Query bad;
    bad.expression() = "kind = = 'City'";
    EXPECT_EQ(osg::ref_ptr<FeatureCursor>(source->createFeatureCursor(bad)), nullptr);
    const std::string cause = static_cast<OgrFeatureSource&>(*source).lastError();
    EXPECT_NE(cause.find("kind = = 'City'"), std::string::npos) << cause;
    EXPECT_EQ(featuresOf(*source, "kind = 'Capital'").size(), 241u);
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

TEST(FeatOgrSource, GeometryInMemorySurvivesItsOptions)
{
    OGRFeatureOptions options;
    options.geometry() = new LineString();
    options.geometry()->push_back(1.0, 2.0, 3.0);
    options.geometry()->push_back(4.0, 5.0, 6.0);
    osg::ref_ptr<FeatureSource> source = FeatureSourceFactory::create(FeatureSourceOptions(options));
    ASSERT_TRUE(source->open().isOK());
    const FeatureList features = featuresOf(*source);
    ASSERT_EQ(features.size(), 1u);
    EXPECT_EQ(features.front()->getGeometry()->asVector(), options.geometry()->asVector());
}

TEST(FeatFeature, AttributesReadInEveryForm)
{
    osg::ref_ptr<Feature> feature = new Feature(new PointSet(), SpatialReference::get("wgs84"));
    feature->set("n", std::string("12.5"));
    feature->set("i", 3);
    feature->set("b", true);
    feature->setNull("none", ATTRTYPE_INT);
    EXPECT_EQ(feature->getDouble("N"), 12.5);
    EXPECT_EQ(feature->getString("i"), "3");
    EXPECT_EQ(feature->getInt("b"), 1);
    EXPECT_EQ(feature->getInt("none", 9), 9);
    EXPECT_TRUE(feature->hasAttr("none"));
    EXPECT_FALSE(feature->isSet("none"));
    NumericExpression twice("[n]*2 + [missing]");
    EXPECT_EQ(feature->eval(twice), 25.0);
}

TEST(FeatGeomModel, OptionsBuiltInCodeReachTheSource)
{
    FeatureGeomModelOptions options;
    options.setName("world");
    options.featureOptions() = optionsFor(kMap + "countries-50m.json");
    options.styles() = new StyleSheet();
    Style style("line");
    style.getOrCreate<LineSymbol>()->stroke()->color() = Color::Yellow;
    options.styles()->addStyle(style);
    options.maxGranularity() = 0.25;

    const FeatureGeomModelOptions copy{ModelSourceOptions(options)}; // sliced, as a layer's options are
    EXPECT_EQ(copy.getName(), "world");
    EXPECT_EQ(copy.maxGranularity().value(), 0.25);
    EXPECT_EQ(OGRFeatureOptions(copy.featureOptions().value()).url()->full(), kMap + "countries-50m.json");
    ASSERT_TRUE(copy.styles().valid());
    EXPECT_EQ(copy.styles()->getDefaultStyle()->get<LineSymbol>()->stroke()->color(), Color::Yellow);

    osg::ref_ptr<ModelSource> source = Drivers::createFeatureGeomModelSource(options);
    EXPECT_TRUE(source->open(nullptr).isOK()) << source->getStatus().message();
}

TEST(FeatGeomModel, MissingAndForeignFilesFailAtOnce)
{
    const TemporaryFile garbage("feat_model_garbage.xyz", "no features in here");
    FeatureGeomModelOptions none, missing, foreign, driver;
    missing.featureOptions() = optionsFor("/nowhere/at/all.json");
    foreign.featureOptions() = optionsFor(garbage.path());
    FeatureSourceOptions unknown;
    unknown.setDriver("telepathy");
    driver.featureOptions() = unknown;
    const std::pair<const FeatureGeomModelOptions*, std::string> rows[] = {{&none, "features"},
                                                                           {&missing, "/nowhere/at/all.json"},
                                                                           {&foreign, garbage.path()},
                                                                           {&driver, "telepathy"}};
    for (const auto& row : rows) {
        osg::ref_ptr<ModelSource> source = Drivers::createFeatureGeomModelSource(*row.first);
        const Status& status = source->open(nullptr);
        EXPECT_TRUE(status.isError());
        EXPECT_NE(status.message().find(row.second), std::string::npos) << status.message();
        EXPECT_EQ(source->createNode(nullptr, nullptr), nullptr);
    }
}
