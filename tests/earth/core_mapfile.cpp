#include <osgEarth/MapNode>

#include "LogCapture.h"
#include "RasterMaker.h"

#include <fstream>
#include <gtest/gtest.h>
#include <osgDB/ReadFile>
#include <osgDB/WriteFile>

using namespace osgEarth;

namespace {
void writeText(const std::string& path, const std::string& text)
{
    std::ofstream(path, std::ios::binary) << text;
}

osg::ref_ptr<MapNode> open(const std::string& path)
{
    const osg::ref_ptr<osg::Node> node = osgDB::readRefNodeFile(path);
    return dynamic_cast<MapNode*>(node.get());
}
} // namespace

TEST(MapFile, OneThatIsNoneIsNullWithOneLineThatNamesTheFile)
{
    std::string tooDeep;
    for (int i = 0; i < 100000; ++i)
        tooDeep += "<map>";
    const ScratchFolder folder;
    const std::string path = folder.path("broken.earth");
    const auto expectNull = [&path](const char* what) {
        const LogCapture log;
        EXPECT_FALSE(osgDB::readRefNodeFile(path).valid()) << what;
        EXPECT_EQ(log.linesWith("broken.earth"), 1u) << what;
        EXPECT_EQ(log.lines().size(), 1u) << what;
    };
    expectNull("missing");
    for (const std::string& text :
         {std::string(), std::string("GIF89a not a map"), std::string("<kml><image name='a'/></kml>"),
          std::string("<map><image name='World' driver='gdal'><url>world.t"),
          std::string("<map><image></map></image>"), std::string("<map/><map/>"),
          std::string("<!DOCTYPE m [<!ENTITY a 'aaaaaaaaaa'><!ENTITY b '&a;&a;&a;'>]>"
                      "<map><name>&undefined;</name></map>"),
          tooDeep}) {
        writeText(path, text);
        expectNull(text.substr(0, 40).c_str());
    }
}

class MapFileLayers : public ::testing::Test
{
protected:
    void SetUp() override
    {
        std::filesystem::create_directories(_folder.path("data"));
        writeRaster(_folder.path("data/picture.tif"), RasterRecipe());
        RasterRecipe heights;
        heights.type = GDT_Int16;
        writeRaster(_folder.path("data/heights.tif"), heights);
    }

    osg::ref_ptr<MapNode> openText(const std::string& text)
    {
        writeText(_folder.path("map.earth"), text);
        return open(_folder.path("map.earth"));
    }

    ScratchFolder _folder;
};

TEST_F(MapFileLayers, ReadsLayersInOrderWithTheirSettings)
{
    const LogCapture log;
    const auto node = openText(R"(<?xml version="1.0"?>
        <Map name="Two pictures" type="geocentric" version="2">
          <options>
            <terrain><vertical_scale>2.5</vertical_scale></terrain>
            <cache type="filesystem"><path>tiles</path></cache>
          </options>
          <image name="Lower" driver="gdal" opacity="0.25" visible="false" min_level="2">
            <url>data/picture.tif</url><max_level>9</max_level>
          </image>
          <elevation name="Ground" driver="gdal" nodata_value="-7"><url>./data/heights.tif</url></elevation>
          <image><name>Upper</name><driver>GDAL</driver><url>data/picture.tif</url></image>
          <image name="Off" driver="gdal" enabled="false"><url>data/does-not-exist.tif</url></image>
        </Map>)");
    ASSERT_TRUE(node.valid());
    EXPECT_TRUE(log.lines().empty()) << log.lines().front();
    const Map& map = *node->getMap();
    EXPECT_EQ(map.getName(), "Two pictures");
    ASSERT_EQ(map.getNumImageLayers(), 3);
    ASSERT_EQ(map.getNumElevationLayers(), 1);

    const ImageLayer* lower = map.getImageLayerAt(0);
    EXPECT_EQ(lower->getName(), "Lower");
    EXPECT_TRUE(lower->isOpen());
    EXPECT_FALSE(lower->getVisible());
    EXPECT_FLOAT_EQ(lower->getOpacity(), 0.25f);
    const Profile* profile = map.getProfile();
    EXPECT_FALSE(lower->mayHaveData(profile->createTileKey(0.5, 0.5, 1)));
    EXPECT_TRUE(lower->mayHaveData(profile->createTileKey(0.5, 0.5, 2)));
    EXPECT_TRUE(lower->mayHaveData(profile->createTileKey(0.5, 0.5, 9)));
    EXPECT_FALSE(lower->mayHaveData(profile->createTileKey(0.5, 0.5, 10)));
    EXPECT_FALSE(lower->mayHaveData(profile->createTileKey(90.0, 0.5, 5))) << "outside of its rectangle";

    EXPECT_TRUE(map.getImageLayerByName("Upper")->isOpen());
    EXPECT_TRUE(map.getImageLayerByName("Upper")->getVisible());
    EXPECT_FALSE(map.getImageLayerByName("Off")->getEnabled());
    EXPECT_FALSE(map.getImageLayerByName("Off")->isOpen());
    EXPECT_FALSE(map.getImageLayerByName("Off")->getVisible());
    EXPECT_TRUE(map.getElevationLayerByName("Ground")->isOpen());
    EXPECT_EQ(map.getImageLayerByName("nobody"), nullptr);
    EXPECT_EQ(std::filesystem::path(map.getMapOptions().cachePath().value()),
              std::filesystem::path(_folder.path("tiles")));
    EXPECT_FLOAT_EQ(node->getMapNodeOptions().getTerrainOptions().verticalScale().value(), 2.5f);
}

TEST_F(MapFileLayers, UnknownElementsAreNamedAndSkipped)
{
    const LogCapture log;
    const auto node = openText("<map><hologram depth='3'/><image name='A' driver='gdal'>"
                               "<url>data/picture.tif</url></image></map>");
    ASSERT_TRUE(node.valid());
    EXPECT_EQ(log.linesWith("hologram"), 1u);
    EXPECT_EQ(log.lines().size(), 1u);
    EXPECT_TRUE(node->getMap()->getImageLayerByName("A")->isOpen());
}

TEST_F(MapFileLayers, LayersThatFailAreInTheMapInErrorAndTheRestWorks)
{
    const LogCapture log;
    const auto node = openText("<map><image name='Gone' driver='gdal'><url>data/gone.tif</url></image>"
                               "<image name='Odd' driver='etch-a-sketch'><url>x</url></image>"
                               "<elevation name='Nameless'><url>data/heights.tif</url></elevation>"
                               "<image name='Empty' driver='gdal'/>"
                               "<model name='Model' driver='sculpture'/>"
                               "<image name='Good' driver='gdal'><url>data/picture.tif</url></image></map>");
    ASSERT_TRUE(node.valid());
    EXPECT_EQ(log.lines().size(), 5u);
    EXPECT_EQ(log.linesWith("\"Gone\""), 1u);
    EXPECT_EQ(log.linesWith("data/gone.tif"), 1u) << "the file is named";
    EXPECT_EQ(log.linesWith("etch-a-sketch"), 1u);
    EXPECT_EQ(log.linesWith("\"Nameless\""), 1u);
    EXPECT_EQ(log.linesWith("\"Empty\""), 1u);
    EXPECT_EQ(log.linesWith("sculpture"), 1u);
    const Map& map = *node->getMap();
    EXPECT_TRUE(map.getImageLayerByName("Gone")->getStatus().isError());
    EXPECT_TRUE(map.getModelLayerByName("Model")->getStatus().isError());
    EXPECT_TRUE(map.getImageLayerByName("Good")->isOpen());
}
