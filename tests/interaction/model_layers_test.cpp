// Models of model layers under the mouse, and the camera's way around them.
#include "SceneOnEarth.h"

#include "interaction/models/AxModelLayers.h"
#include "interaction/models/AxModelNavigation.h"

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

TEST_F(ModelLayers, AreFoundByTheGroupsName)
{
    EXPECT_FALSE(AxFindModelRoot(scene.root));
    EXPECT_FALSE(AxFindModelRoot(nullptr));
    const osg::ref_ptr<osg::Group> data = AddLayer("SceneData");
    osg::ref_ptr<osg::Group> models = new osg::Group;
    models->setName("ModelRoot");
    data->addChild(models);
    EXPECT_EQ(AxFindModelRoot(scene.root), models);
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
}

TEST(ModelNavigation, ScrollsATenthOfTheWayAndStopsFiveMetresShort)
{
    EXPECT_DOUBLE_EQ(AxModelNavigation::ScrollStep(1.0, 200.0), 20.0);
    EXPECT_DOUBLE_EQ(AxModelNavigation::ScrollStep(-1.0, 200.0), -20.0);
    EXPECT_DOUBLE_EQ(AxModelNavigation::ScrollStep(0.0, 200.0), 0.0);
    EXPECT_DOUBLE_EQ(AxModelNavigation::ScrollStep(1.0, 5.2), 5.2 - 5.0);
    EXPECT_DOUBLE_EQ(AxModelNavigation::ScrollStep(1.0, 3.0), -2.0);
    double distance = 1000.0;
    for (int i = 0; i < 200; ++i)
        distance -= AxModelNavigation::ScrollStep(1.0, distance);
    EXPECT_NEAR(distance, 5.0, 1e-9);
}

TEST(ModelNavigation, PansAlongThePicturesAxes)
{
    constexpr double k = 0.30000001192092896;
    const osg::Quat level;
    const osg::Vec3d step = AxModelNavigation::PanStep(level, 100.0, 0.5, -0.25);
    EXPECT_DOUBLE_EQ(step.x(), -k * 100.0 * 0.5);
    EXPECT_DOUBLE_EQ(step.y(), k * 100.0 * 0.25);
    EXPECT_EQ(step.z(), 0.0);
    const osg::Quat quarter(osg::PI_2, osg::Vec3d(0.0, 0.0, 1.0));
    EXPECT_NEAR(AxModelNavigation::PanStep(quarter, 100.0, 1.0, 0.0).y(), -k * 100.0, 1e-12);
}

TEST(ModelNavigation, TurnsFreelyWithoutTippingTheHorizon)
{
    const osg::Quat start(osg::DegreesToRadians(40.0), osg::Vec3d(1.0, 0.0, 0.0));
    osg::Quat rotation = start;
    for (int i = 0; i < 50; ++i) {
        rotation = AxModelNavigation::FreeRotation(rotation, 0.05, (i % 7 - 3) * 0.02);
        EXPECT_NEAR((rotation * osg::Vec3d(1.0, 0.0, 0.0)).z(), 0.0, 1e-9) << i;
    }
    // dx turns about the vertical, the other way round.
    const osg::Vec3d side = AxModelNavigation::FreeRotation(start, 0.3, 0.0) * osg::Vec3d(1.0, 0.0, 0.0);
    EXPECT_NEAR(std::atan2(side.y(), side.x()), -0.3, 1e-9);
    // dy lifts about the side axis.
    const osg::Vec3d look = AxModelNavigation::FreeRotation(start, 0.0, 0.1) * osg::Vec3d(0.0, 0.0, -1.0);
    const osg::Vec3d before = start * osg::Vec3d(0.0, 0.0, -1.0);
    EXPECT_NEAR(std::acos(look * before), 0.1, 1e-9);
    EXPECT_GT(look.z(), before.z());
}
