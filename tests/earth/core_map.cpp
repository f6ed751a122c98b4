#include <osgEarth/ElevationQuery>
#include <osgEarth/Map>
#include <osgEarthDrivers/gdal/GDALOptions>

#include "RasterMaker.h"

#include <gtest/gtest.h>
#include <osg/Group>

using namespace osgEarth;

namespace {
struct Recorder : public MapCallback
{
    void onBeginUpdate() override { events.emplace_back("["); }
    void onEndUpdate() override { events.emplace_back("]"); }
    void onImageLayerAdded(ImageLayer* layer, unsigned index) override { note("+", layer, index); }
    void onImageLayerRemoved(ImageLayer* layer, unsigned index) override { note("-", layer, index); }
    void onImageLayerMoved(ImageLayer* layer, unsigned from, unsigned to) override
    {
        note(">" + std::to_string(from), layer, to);
    }
    void onModelLayerAdded(ModelLayer* layer, unsigned index) override { note("+", layer, index); }
    void onModelLayerRemoved(ModelLayer* layer) override { note("-", layer, 0); }
    template <typename T> void note(const std::string& what, const T* layer, unsigned index)
    {
        events.push_back(what + layer->getName() + std::to_string(index));
    }
    std::vector<std::string> events;
};

Drivers::GDALOptions file(const std::string& path)
{
    Drivers::GDALOptions options;
    options.url() = URI(path);
    return options;
}
} // namespace

TEST(Map, CallbacksTellEveryChangeOnce)
{
    const ScratchFolder folder;
    writeRaster(folder.path("a.tif"), RasterRecipe());
    const osg::ref_ptr<Map> map = new Map;
    const osg::ref_ptr<Recorder> recorder = new Recorder;
    map->addMapCallback(recorder.get());
    const Revision before = map->getDataModelRevision();

    const osg::ref_ptr<ImageLayer> a = new ImageLayer("A", file(folder.path("a.tif")));
    const osg::ref_ptr<ImageLayer> b = new ImageLayer("B", file(folder.path("a.tif")));
    const osg::ref_ptr<ModelLayer> m = new ModelLayer("M", new osg::Group);
    map->addImageLayer(a.get());
    map->insertImageLayer(b.get(), 0);
    map->addImageLayer(a.get()); // a second time
    map->addImageLayer(nullptr);
    map->beginUpdate();
    map->addModelLayer(m.get());
    map->endUpdate();
    map->moveImageLayer(a.get(), 0);
    map->moveImageLayer(a.get(), 0); // already there
    map->removeImageLayer(b.get());
    map->removeImageLayer(b.get()); // already gone
    map->removeModelLayer(m.get());
    EXPECT_EQ(recorder->events,
              (std::vector<std::string>{"+A0", "+B0", "[", "+M0", "]", ">1A0", "-B1", "-M0"}));
    EXPECT_GT(map->getDataModelRevision(), before);
    EXPECT_EQ(map->getNumImageLayers(), 1);

    map->removeMapCallback(recorder.get());
    map->clear();
    EXPECT_EQ(map->getNumImageLayers(), 0);
    EXPECT_EQ(recorder->events.size(), 8u);
}

TEST(ElevationQuery, FinestValidFirstAndHolesFallThrough)
{
    const ScratchFolder folder;
    RasterRecipe coarse;
    coarse.width = coarse.height = 16;
    coarse.place = {0, 1.0 / 16, 0, 1, 0, -1.0 / 16};
    coarse.type = GDT_Float32;
    coarse.value = [](int, int, int) { return 10.0; };
    writeRaster(folder.path("coarse.tif"), coarse);
    RasterRecipe fine;
    fine.type = GDT_Float32;
    fine.hasNoData = true;
    fine.noData = -9999.0;
    fine.value = [](int, int column, int) { return column < 32 ? 500.0 : -9999.0; };
    writeRaster(folder.path("fine.tif"), fine);

    const osg::ref_ptr<Map> map = new Map;
    map->addElevationLayer(new ElevationLayer("Fine", file(folder.path("fine.tif"))));
    map->addElevationLayer(new ElevationLayer("Coarse", file(folder.path("coarse.tif"))));
    ElevationQuery query(map.get());
    const SpatialReference* wgs84 = SpatialReference::get("wgs84");
    double height = -1.0, resolution = 0.0;
    ASSERT_TRUE(query.getElevation(GeoPoint(wgs84, 0.25, 0.5), height, 0.0, &resolution));
    EXPECT_DOUBLE_EQ(height, 500.0);
    EXPECT_NEAR(resolution, 1.0 / 64, 1e-12);
    ASSERT_TRUE(query.getElevation(GeoPoint(wgs84, 0.75, 0.5), height));
    EXPECT_DOUBLE_EQ(height, 10.0) << "a hole in the finer one";
    height = -1.0;
    EXPECT_FALSE(query.getElevation(GeoPoint(wgs84, 5.0, 0.5), height));
    EXPECT_DOUBLE_EQ(height, -1.0);

    map->getElevationLayerByName("Fine")->setVisible(false);
    ASSERT_TRUE(query.getElevation(GeoPoint(wgs84, 0.25, 0.5), height));
    EXPECT_DOUBLE_EQ(height, 10.0) << "a hidden layer has no say";

    std::vector<osg::Vec3d> points = {{0.25, 0.5, 7.0}, {5.0, 5.0, 7.0}};
    ASSERT_TRUE(query.getElevations(points, wgs84, false));
    EXPECT_DOUBLE_EQ(points[0].z(), 17.0);
    EXPECT_DOUBLE_EQ(points[1].z(), 7.0);
}
