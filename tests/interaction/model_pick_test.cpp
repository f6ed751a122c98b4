// Models of model layers under the mouse.
#include "SceneOnEarth.h"

#include "interaction/models/AxModelGeometry.h"
#include "interaction/models/AxModelPick.h"

#include <osg/LOD>
#include <osgEarth/GeoData>

#include <gtest/gtest.h>

#include <cmath>

class ModelLayers : public testing::Test
{
protected:
    osg::ref_ptr<osg::Group> AddLayer(const char* name)
    {
        osg::ref_ptr<osg::Group> layer = new osg::Group;
        layer->setName(name);
        scene.root->addChild(layer);
        return layer;
    }

    SceneOnEarth scene;
};

TEST_F(ModelLayers, CountOnlyByTheirMask)
{
    const osg::ref_ptr<osg::Group> layer = AddLayer("layer");
    const auto plain = scene.AddSquare(*layer, "plain", 0.0, 0.0, 200.0, 30.0);
    const auto model = scene.AddSquare(*layer, "model", 0.0, 0.0, 120.0, 30.0);
    const AxViewRay ray = scene.RayTo(3.0, -4.0, 120.0);
    EXPECT_FALSE(AxPickModelLayer(*scene.root, ray, *scene.srs));

    model->setNodeMask(AxModelLayerMask);
    const auto hit = AxPickModelLayer(*scene.root, ray, *scene.srs);
    ASSERT_TRUE(hit);
    EXPECT_EQ(hit->currNode, "model place");
    EXPECT_EQ(hit->parentNode, "layer");
    EXPECT_NEAR(hit->lngLatAlt.x(), SceneOnEarth::longitude + 3.0 / (111320.0 * std::cos(0.6458)), 1e-6);
    EXPECT_NEAR(hit->lngLatAlt.y(), SceneOnEarth::latitude - 4.0 / 110980.0, 1e-6);
    EXPECT_NEAR(hit->lngLatAlt.z(), 120.0, 0.01);
    EXPECT_NEAR(hit->height, 120.0, 0.01);
    EXPECT_LT((hit->world - scene.World(3.0, -4.0, 120.0)).length(), 0.01);

    // The node over the drawable is asked first.
    model->getChild(0)->setNodeMask(AxModelLayerMask);
    const auto inner = AxPickModelLayer(*scene.root, ray, *scene.srs);
    ASSERT_TRUE(inner);
    EXPECT_EQ(inner->currNode, "model geode");
    EXPECT_EQ(inner->parentNode, "model place");

    // Bits that the search does not share hide a model.
    model->setNodeMask(0x4);
    EXPECT_FALSE(AxPickModelLayer(*scene.root, ray, *scene.srs));
}

TEST_F(ModelLayers, OfManyTrianglesHaveTheSameTopsOnceTheyAreSplit)
{
    const auto top = [this](double east, double north) {
        osgEarth::GeoPoint place;
        place.fromWorld(scene.srs->getGeographicSRS(), scene.World(east, north, 0.0));
        return AxTopOfModels(*AxFindModelRoot(scene.root), place.x(), place.y(), *scene.srs);
    };
    constexpr int size = 200;
    osg::ref_ptr<osg::Geometry> rough = new osg::Geometry;
    osg::ref_ptr<osg::Vec3Array> vertices = new osg::Vec3Array;
    osg::ref_ptr<osg::DrawElementsUInt> corners = new osg::DrawElementsUInt(GL_TRIANGLES);
    for (int i = 0; i < size * size; ++i)
        vertices->push_back(
            osg::Vec3d(i % size - size / 2, i / size - size / 2, 3 * ((i * 7 + i / size * 5) % 4)));
    for (unsigned i = 0; i + size < vertices->size(); ++i)
        if (i % size != size - 1)
            for (const unsigned corner : {i, i + 1, i + size, i + 1, i + size + 1, i + size})
                corners->push_back(corner);
    rough->setVertexArray(vertices);
    rough->addPrimitiveSet(corners);
    const osg::ref_ptr<osg::Group> models = AddLayer("ModelRoot");
    osg::ref_ptr<osg::Group> layer = new osg::Group;
    layer->setName("ModelLayer");
    models->addChild(layer);
    osg::ref_ptr<osg::MatrixTransform> placed = new osg::MatrixTransform(scene.toWorld);
    layer->addChild(placed);
    osg::ref_ptr<osg::Geode> geode = new osg::Geode;
    geode->addDrawable(rough);
    placed->addChild(geode);
    std::vector<double> before;
    for (int i = 0; i < 50; ++i)
        before.push_back(top(i * 1.9 - 47.3, 60.1 - i * 2.3).value_or(-1.0));
    osg::ref_ptr<osg::Node> model = geode;
    ASSERT_EQ(AxGatherModel(model), osg::Vec3d());
    ASSERT_GT(geode->getNumChildren(), 3u);
    for (int i = 0; i < 50; ++i) {
        EXPECT_GE(before[std::size_t(i)], -0.01);
        EXPECT_NEAR(top(i * 1.9 - 47.3, 60.1 - i * 2.3).value_or(-2.0), before[std::size_t(i)], 1e-6) << i;
    }
}

TEST_F(ModelLayers, GiveTheTopOfWhatStandsThere)
{
    const osg::ref_ptr<osg::Group> models = AddLayer("ModelRoot");
    osg::ref_ptr<osg::Group> layer = new osg::Group;
    models->addChild(layer);
    scene.AddSquare(*layer, "floor", 0.0, 0.0, 10.0, 50.0);
    scene.AddSquare(*layer, "roof", 0.0, 0.0, 35.0, 20.0);
    const double lng = SceneOnEarth::longitude;
    const double lat = SceneOnEarth::latitude;
    EXPECT_FALSE(AxTopOfModels(*models, lng, lat, *scene.srs)) << "the layer has another name";
    layer->setName("ModelLayer");
    const auto top = AxTopOfModels(*models, lng, lat, *scene.srs);
    ASSERT_TRUE(top);
    EXPECT_NEAR(*top, 35.0, 0.001);
    const auto beside = AxTopOfModels(*models, lng + 40.0 / 88900.0, lat, *scene.srs);
    ASSERT_TRUE(beside);
    EXPECT_NEAR(*beside, 10.0, 0.001);
    EXPECT_FALSE(AxTopOfModels(*models, lng + 0.01, lat, *scene.srs));

    // A layer stands where the groups over it put it, and is shown when they are.
    osg::ref_ptr<osg::MatrixTransform> lifted =
        new osg::MatrixTransform(osg::Matrixd::translate(scene.World(0, 0, 50) - scene.World(0, 0, 0)));
    lifted->addChild(layer);
    models->replaceChild(layer, lifted);
    EXPECT_NEAR(AxTopOfModels(*models, lng, lat, *scene.srs).value_or(0.0), 85.0, 0.001);
    lifted->setNodeMask(0);
    EXPECT_FALSE(AxTopOfModels(*models, lng, lat, *scene.srs));

    // The finest level of detail counts, from however far it is seen.
    osg::ref_ptr<osg::LOD> detail = new osg::LOD;
    detail->addChild(layer->getChild(0), 0.0f, 100.0f);
    detail->addChild(layer->getChild(1), 100.0f, 1e9f);
    layer->removeChildren(0, 2);
    layer->addChild(detail);
    models->replaceChild(lifted, layer);
    EXPECT_NEAR(AxTopOfModels(*models, lng, lat, *scene.srs).value_or(0.0), 10.0, 0.001);
}
