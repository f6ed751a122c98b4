// Lines of sight, and what they meet in the scene.
#include "SceneOnEarth.h"

#include <osg/LOD>
#include <osg/Projection>
#include <osgEarth/ScreenSpaceLayout>

#include <gtest/gtest.h>

#include <cmath>

namespace {
std::vector<std::string> Names(const std::vector<AxSceneHit>& hits)
{
    std::vector<std::string> names;
    for (const AxSceneHit& hit : hits)
        names.push_back(hit.drawable->getName());
    return names;
}

using List = std::vector<std::string>;
} // namespace

TEST(LineOfSight, PassesThePlaceThatItWasAimedAt)
{
    for (const double range : {5.0, 500.0, 350000.0, 2.5e7}) {
        SCOPED_TRACE(range);
        const SceneOnEarth scene(range);
        for (const double share : {-0.2, 0.0, 0.15}) {
            const double east = share * range;
            const double north = 0.5 * share * range;
            const AxViewRay ray = scene.RayTo(east, north);
            const osg::Vec3d target = scene.World(east, north, 0.0);
            const double miss = ((target - ray.eye) ^ ray.direction).length();
            EXPECT_LT(miss, 0.01 * ray.pixelSize * range) << east;
            const auto back = ray.Project(target);
            ASSERT_TRUE(back);
            EXPECT_NEAR(back->window.x(), ray.window.x(), 0.01);
            EXPECT_NEAR(back->window.y(), ray.window.y(), 0.01);
            EXPECT_NEAR(back->depth, range, 1e-6 * range);
        }
    }
}

TEST(LineOfSight, KnowsTheDepthInAParallelProjection)
{
    const SceneOnEarth scene;
    scene.camera->setProjectionMatrixAsOrtho(-400.0, 400.0, -300.0, 300.0, 1.0, 10000.0);
    const AxViewRay ray = scene.RayTo(30.0, 20.0);
    EXPECT_NEAR(ray.Project(scene.World(-50.0, 10.0, 0.0))->depth, 1000.0, 0.01);
    EXPECT_NEAR(ray.Project(scene.World(30.0, 20.0, 300.0))->depth, 700.0, 0.01);
}

TEST(LineOfSight, NeedAWindowAndNumbers)
{
    const SceneOnEarth scene;
    EXPECT_FALSE(AxViewRay::Through(*scene.camera, NAN, 0.0));
    EXPECT_FALSE(AxViewRay::Through(*scene.camera, 0.0, INFINITY));
    EXPECT_FALSE(scene.RayTo(0.0, 0.0).Project(scene.World(0.0, 0.0, 5000.0)));
    scene.camera->setViewport(0, 0, 0, 600);
    EXPECT_FALSE(AxViewRay::Through(*scene.camera, 0.0, 0.0));
}

TEST(ScenePick, FindsWhatIsUnderTheMouseNearestFirst)
{
    const SceneOnEarth scene;
    scene.AddSquare(*scene.root, "low", 0.0, 0.0, 0.0, 20.0);
    scene.AddSquare(*scene.root, "high", 0.0, 0.0, 100.0, 10.0);
    scene.AddSquare(*scene.root, "aside", 60.0, 0.0, 50.0, 10.0);

    const auto hits = AxPickScene(*scene.root, scene.RayTo(1.0, 2.0), {});
    EXPECT_EQ(Names(hits), (List{"high", "low"}));
    EXPECT_NEAR(hits[0].distance, 900.0, 0.01);
    EXPECT_LT((hits[1].world - scene.World(1.0, 2.0, 0.0)).length(), 0.01);
    EXPECT_EQ(hits[0].path.front(), scene.root.get());
    EXPECT_EQ(hits[0].path.back(), hits[0].drawable);
    EXPECT_EQ(Names(AxPickScene(*scene.root, scene.RayTo(15.0, 0.0), {})), List{"low"});
    EXPECT_TRUE(AxPickScene(*scene.root, scene.RayTo(35.0, 35.0), {}).empty());
}

TEST(ScenePick, FindsLinesAndPointsWithinPixels)
{
    const SceneOnEarth scene;
    const double pixel = scene.RayTo(0.0, 0.0).pixelSize * 1000.0;
    auto line = SceneOnEarth::Shape(GL_LINE_STRIP, {{-50, 0, 0}, {50, 0, 0}});
    line->setName("line");
    scene.Add(*scene.root, "line", line, 0.0, 0.0, 0.0);
    auto point = SceneOnEarth::Shape(GL_POINTS, {{0, 0, 0}});
    point->setName("point");
    scene.Add(*scene.root, "point", point, 0.0, 100.0, 0.0);

    AxSceneQuery query;
    query.tolerancePixels = 4.0;
    EXPECT_EQ(Names(AxPickScene(*scene.root, scene.RayTo(20.0, 3.5 * pixel), query)), List{"line"});
    EXPECT_TRUE(AxPickScene(*scene.root, scene.RayTo(20.0, 4.5 * pixel), query).empty());
    EXPECT_EQ(Names(AxPickScene(*scene.root, scene.RayTo(50.0 + 3.5 * pixel, 0.0), query)), List{"line"});
    EXPECT_TRUE(AxPickScene(*scene.root, scene.RayTo(50.0 + 4.5 * pixel, 0.0), query).empty());
    EXPECT_EQ(Names(AxPickScene(*scene.root, scene.RayTo(2.0 * pixel, 100.0 + 2.0 * pixel), query)),
              List{"point"});
    EXPECT_TRUE(AxPickScene(*scene.root, scene.RayTo(20.0, 0.0), {}).empty());
}

TEST(ScenePick, LeavesOutWhatIsNotShown)
{
    const SceneOnEarth scene;
    const auto hidden = scene.AddSquare(*scene.root, "hidden", 0.0, 0.0, 0.0, 20.0);
    hidden->setNodeMask(0);
    osg::ref_ptr<osg::Camera> headUp = new osg::Camera;
    scene.root->addChild(headUp);
    scene.AddSquare(*headUp, "head-up", 0.0, 0.0, 0.0, 20.0);
    const SceneOnEarth antipode(1000.0);
    const osg::Matrixd otherSide = osg::Matrixd::scale(-1.0, -1.0, -1.0);
    osg::ref_ptr<osg::MatrixTransform> behind = new osg::MatrixTransform(otherSide);
    antipode.AddSquare(*behind, "behind the globe", 0.0, 0.0, 0.0, 50000.0);
    scene.root->addChild(behind);
    EXPECT_TRUE(AxPickScene(*scene.root, scene.RayTo(0.0, 0.0), {}).empty());
    hidden->setNodeMask(0x1234);
    EXPECT_EQ(Names(AxPickScene(*scene.root, scene.RayTo(0.0, 0.0), {})), List{"hidden"});
}

TEST(ScenePick, TakesOfLevelsOfDetailTheOneThatIsDrawn)
{
    using Mode = osg::LOD::RangeMode;
    // 1000 m away, where 20 m are some 23 pixels of 600 over 30 degrees.
    for (const auto& [mode, split] : {std::pair{Mode::DISTANCE_FROM_EYE_POINT, 500.0f},
                                      {Mode::DISTANCE_FROM_EYE_POINT, 2000.0f},
                                      {Mode::PIXEL_SIZE_ON_SCREEN, 10.0f},
                                      {Mode::PIXEL_SIZE_ON_SCREEN, 100.0f}}) {
        const SceneOnEarth scene;
        osg::ref_ptr<osg::LOD> lod = new osg::LOD;
        lod->setRangeMode(mode);
        scene.AddSquare(*lod, "below", 0.0, 0.0, 0.0, 10.0);
        scene.AddSquare(*lod, "above", 0.0, 0.0, 0.0, 10.0);
        lod->setRange(0, 0.0f, split);
        lod->setRange(1, split, 1e9f);
        scene.root->addChild(lod);
        const bool isBelow = mode == Mode::DISTANCE_FROM_EYE_POINT ? split > 1000.0f : split > 50.0f;
        EXPECT_EQ(Names(AxPickScene(*scene.root, scene.RayTo(1.0, 2.0), {})),
                  List{isBelow ? "below" : "above"})
            << mode << ' ' << split;
    }
}

TEST(ScenePick, TakesLabelsInPixelsAndBeforeShapes)
{
    const SceneOnEarth scene(20000.0);
    scene.AddSquare(*scene.root, "ground", 0.0, 0.0, 0.0, 5000.0);
    // 60 by 20 pixels, as a label's panel.
    auto panel = SceneOnEarth::Shape(GL_TRIANGLE_FAN, {{-30, 0, 0}, {30, 0, 0}, {30, 20, 0}, {-30, 20, 0}});
    panel->setName("label");
    scene.Add(*scene.root, "label", panel, 0.0, 0.0, 0.0)->getChild(0)->asGeode()->setCullingActive(false);
    osgEarth::ScreenSpaceLayout::activate(panel->getParent(0)->getOrCreateStateSet());
    const double pixel = scene.RayTo(0.0, 0.0).pixelSize * 20000.0;

    AxSceneQuery query;
    EXPECT_EQ(Names(AxPickScene(*scene.root, scene.RayTo(29.0 * pixel, 19.0 * pixel), query)),
              List{"ground"});
    query.labels = true;
    EXPECT_EQ(Names(AxPickScene(*scene.root, scene.RayTo(29.0 * pixel, 19.0 * pixel), query)),
              (List{"label", "ground"}));
    EXPECT_EQ(Names(AxPickScene(*scene.root, scene.RayTo(29.0 * pixel, 21.0 * pixel), query)),
              List{"ground"});
    osgEarth::ScreenSpaceLayoutData::getOrCreate(panel)->setPixelOffset(osg::Vec2s(0, 40));
    EXPECT_EQ(Names(AxPickScene(*scene.root, scene.RayTo(0.0, 59.0 * pixel), query)),
              (List{"label", "ground"}));
    EXPECT_EQ(Names(AxPickScene(*scene.root, scene.RayTo(0.0, 10.0 * pixel), query)), List{"ground"});
}

TEST(BehindGlobe, IsWhatTheEarthCovers)
{
    const SceneOnEarth scene;
    const osg::Vec3d eye = scene.World(0.0, 0.0, 2e7);
    EXPECT_FALSE(AxIsBehindGlobe(eye, scene.World(0.0, 0.0, 0.0)));
    EXPECT_FALSE(AxIsBehindGlobe(eye, scene.World(0.0, 0.0, -10900.0)));
    EXPECT_FALSE(AxIsBehindGlobe(eye, scene.World(9e6, 0.0, 0.0)));
    EXPECT_TRUE(AxIsBehindGlobe(eye, scene.World(0.0, 0.0, -1.2e7)));
    EXPECT_TRUE(AxIsBehindGlobe(scene.World(0.0, 0.0, 2.0), scene.World(3000000.0, 0.0, -760000.0)));
    EXPECT_FALSE(AxIsBehindGlobe(eye, eye));
}
