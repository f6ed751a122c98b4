#include "OffscreenGlobe.h"

#include <camera/CameraPose.h>
#include <globe/Wgs84.h>
#include <gtest/gtest.h>
#include <osg/CullSettings>
#include <osg/Geometry>
#include <osg/Material>
#include <osg/MatrixTransform>
#include <osg/ShapeDrawable>
#include <osgEarth/Map>
#include <osgEarthUtil/AutoClipPlaneHandler>
#include <osgEarthUtil/GeodeticGraticule>
#include <osgEarthUtil/Sky>

#include <cmath>

using namespace osgEarth;
using namespace osgEarth::Util;

namespace {

constexpr int kWidth = OffscreenGlobe::kWidth;
constexpr int kHeight = OffscreenGlobe::kHeight;
using osgEarth::wgs84::kEquatorialRadius;
const osg::EllipsoidModel kGlobe;

/** A plain globe of one colour, made of triangles fine enough for a straight horizon. */
osg::Node* makeGlobe(const osg::Vec4& color)
{
    constexpr int kColumns = 360;
    constexpr int kRows = 180;
    osg::ref_ptr<osg::Vec3Array> points = new osg::Vec3Array;
    osg::ref_ptr<osg::DrawElementsUInt> triangles = new osg::DrawElementsUInt(GL_TRIANGLES);
    for (int row = 0; row <= kRows; ++row)
        for (int column = 0; column <= kColumns; ++column)
            points->push_back(
                toWorld(kGlobe, {osg::PI * row / kRows - osg::PI_2, osg::PI * 2 * column / kColumns, 0.0}));
    for (int row = 0; row < kRows; ++row)
        for (int column = 0; column < kColumns; ++column) {
            const unsigned corner = static_cast<unsigned>(row * (kColumns + 1) + column);
            for (unsigned c : {corner, corner + 1, corner + kColumns + 1, corner + kColumns + 1, corner + 1,
                               corner + kColumns + 2})
                triangles->push_back(c);
        }
    osg::ref_ptr<osg::Vec4Array> colors = new osg::Vec4Array;
    colors->push_back(color);
    osg::Geometry* globe = new osg::Geometry;
    globe->setVertexArray(points);
    globe->setColorArray(colors, osg::Array::BIND_OVERALL);
    globe->addPrimitiveSet(triangles);
    return globe;
}

/** A square that faces the eye of a pose, so many metres before it, 0.04 wide per metre, under a transform of
 * its own. */
osg::MatrixTransform* makeSquare(const CameraPose& pose, double away, const osg::Vec4& color,
                                 double aside = 0.0)
{
    osg::Geometry* square =
        osg::createTexturedQuadGeometry({-0.02f, -0.02f, 0.0f}, {0.04f, 0.0f, 0.0f}, {0.0f, 0.04f, 0.0f});
    osg::ref_ptr<osg::Vec4Array> colors = new osg::Vec4Array;
    colors->push_back(color);
    square->setColorArray(colors, osg::Array::BIND_OVERALL);
    auto* place =
        new osg::MatrixTransform(osg::Matrixd::scale(away, away, away) *
                                 osg::Matrixd::translate(aside * away, 0.0, -away) * cameraMatrix(pose));
    place->addChild(square);
    return place;
}

/** A sky in the window, in place of the map. */
class SkyTest : public testing::Test
{
protected:
    SkyTest()
    {
        osg::Camera* camera = window.viewer().getCamera();
        camera->setClearColor({0.0f, 0.0f, 0.0f, 1.0f});
        camera->setNearFarRatio(1e-10);
        camera->setComputeNearFarMode(osg::CullSettings::COMPUTE_NEAR_FAR_USING_PRIMITIVES);
        camera->addCullCallback(new AutoClipPlaneCullCallback);
        sky->setDateTime(DateTime(2024, 3, 20, 12.0));
        root->getOrCreateStateSet()->setMode(GL_LIGHTING, osg::StateAttribute::ON);
        root->addChild(sky);
        sky->setLighting(osg::StateAttribute::OFF);
        sky->attach(&window.viewer(), 0);
        window.viewer().setSceneData(root);
    }

    void draw(const CameraPose& pose)
    {
        window.viewer().getCamera()->setViewMatrix(viewMatrix(pose));
        window.frame();
    }

    /** x and y from -1 to 1. */
    osg::Vec3i pixel(double x, double y) const
    {
        return window.pixel(static_cast<int>((x + 1.0) / 2.0 * (kWidth - 1)),
                            static_cast<int>((y + 1.0) / 2.0 * (kHeight - 1)));
    }

    /** Number of pixels that are brighter than a grey value in some channel. */
    int countBrighter(int grey) const
    {
        int count = 0;
        for (int row = 0; row < kHeight; ++row)
            for (int column = 0; column < kWidth; ++column) {
                const osg::Vec3i p = window.pixel(column, row);
                count += p.x() > grey || p.y() > grey || p.z() > grey;
            }
        return count;
    }

    OffscreenGlobe window{new Map};
    osg::ref_ptr<osg::Group> root = new osg::Group;
    osg::ref_ptr<SkyNode> sky = SkyNode::create(nullptr);
};

CameraPose view(double longitude, double latitude, double height, double heading, double pitch, double range)
{
    return makePose(
        kGlobe, toWorld(kGlobe, {osg::DegreesToRadians(latitude), osg::DegreesToRadians(longitude), height}),
        osg::DegreesToRadians(heading), osg::DegreesToRadians(pitch), range);
}

/** Window position of a square that stands a tenth of its distance aside. */
const double kAside = 0.1 / std::tan(osg::DegreesToRadians(15.0)) / 1.6;
const osg::Vec4 kWhite(1, 1, 1, 1);
const osg::Vec3i kGroundPixel(51, 51, 51);
const osg::Vec4 kGrey(0.2f, 0.2f, 0.2f, 1);

} // namespace

TEST_F(SkyTest, FromSpaceTheGlobeHasABlueRimBeforeBlackSpaceAndKeepsItsColour)
{
    sky->addChild(makeGlobe(kGrey));
    const CameraPose pose = view(10, 30, 0, 0, -90, 4 * kEquatorialRadius);
    draw(pose);
    EXPECT_EQ(pixel(0, 0), kGroundPixel);
    EXPECT_EQ(pixel(0, 0.6), kGroundPixel);
    const int withStars = countBrighter(100);

    // The limb is where the line of sight touches the globe: 11.54 degrees from the middle.
    const double limb = std::tan(std::asin(1.0 / 5.0)) / std::tan(osg::DegreesToRadians(15.0));
    sky->setStarsVisible(false);
    draw(pose);
    EXPECT_GT(withStars, countBrighter(100) + 20);
    const osg::Vec3i rim = pixel(0, limb + 0.012);
    EXPECT_GT(rim.z(), 60);
    EXPECT_GT(rim.z(), rim.x() + 20);
    const osg::Vec3i space = pixel(0, limb + 0.1);
    EXPECT_LT(space.x() + space.y() + space.z(), 12);
    sky->setAtmosphereVisible(false);
    draw(pose);
    EXPECT_LT(pixel(0, limb + 0.012).z(), 12);
}

TEST_F(SkyTest, NearTheGroundItIsDayAboveTheHorizon)
{
    sky->addChild(makeGlobe(kGrey));
    for (double height : {100.0, 2000.0, 7000.0}) {
        for (double heading : {0.0, 90.0, 215.0}) {
            const CameraPose pose = view(10, 30, height, heading, -3, 1.0);
            draw(pose);
            for (double x : {-0.9, 0.0, 0.9}) {
                const osg::Vec3i above = pixel(x, 0.9);
                EXPECT_GT(above.z(), 150) << height << " " << heading;
                EXPECT_GT(above.z(), above.x() + 20);
                const osg::Vec3i low = pixel(x, 0.45);
                EXPECT_GT(low.x(), above.x()) << "paler towards the horizon";
                EXPECT_EQ(pixel(x, -0.9), kGroundPixel) << "the ground keeps its colour";
            }
        }
    }
    sky->setAtmosphereVisible(false);
    sky->setStarsVisible(false);
    draw(view(10, 30, 100.0, 0, -3, 1.0));
    EXPECT_EQ(pixel(0.5, 0.9), osg::Vec3i(0, 0, 0));
}

TEST_F(SkyTest, LightReachesEverySideOfLitThingsOutsideAndSparesUnlitChildren)
{
    const CameraPose pose = view(0, 0, 500, 0, -60, 1.0);
    osg::ref_ptr<osg::Node> inside = makeSquare(pose, 100.0, kWhite, -0.1);
    osg::ref_ptr<osg::Node> lit = makeSquare(pose, 100.0, kWhite, 0.1);
    osg::ref_ptr<osg::Material> material = new osg::Material;
    material->setColorMode(osg::Material::AMBIENT_AND_DIFFUSE);
    lit->getOrCreateStateSet()->setAttributeAndModes(material);
    lit->getOrCreateStateSet()->setMode(GL_NORMALIZE, osg::StateAttribute::ON);
    sky->addChild(inside);
    root->addChild(lit);
    for (double hours : {0.0, 6.0, 12.0, 18.0}) {
        sky->setDateTime(DateTime(2024, 3, 20, hours));
        draw(pose);
        EXPECT_EQ(pixel(-kAside, 0), osg::Vec3i(255, 255, 255));
        EXPECT_GT(pixel(kAside, 0).x(), 100) << hours;
    }
    // The sun shines on its face at noon, and not at midnight.
    sky->setDateTime(DateTime(2024, 3, 20, 0.0));
    draw(pose);
    const int night = pixel(kAside, 0).x();
    sky->setDateTime(DateTime(2024, 3, 20, 12.0));
    draw(pose);
    EXPECT_GT(pixel(kAside, 0).x(), night + 40);
}

TEST_F(SkyTest, GraticuleShowsFromAboveAndFadesBeforeItCouldCrossTheRelief)
{
    sky->addChild(makeGlobe(kGrey));
    sky->setStarsVisible(false);
    sky->setAtmosphereVisible(false);
    osg::ref_ptr<GeodeticGraticule> graticule = new GeodeticGraticule(nullptr);
    root->addChild(graticule);
    for (double latitude : {0.0, 37.4, -75.0, 90.0}) {
        for (double range : {600e3, 3e6, 4 * kEquatorialRadius}) {
            draw(view(-105, latitude, 0, 0, -90, range));
            const int lines = countBrighter(90);
            EXPECT_GT(lines, 100) << latitude << " " << range;
            EXPECT_LT(lines, kWidth * kHeight / 4) << "discreet";
            EXPECT_LT(countBrighter(150), 20) << "faint, each line once, and no bundle at a pole";
        }
        draw(view(-105, latitude, 0, 0, -20, 20e3));
        EXPECT_EQ(countBrighter(80), 0) << latitude;
    }
    // Lines of the far side do not shine through, nor past the limb.
    draw(view(-105, 0, 0, 0, -90, 4 * kEquatorialRadius));
    const double limb = std::tan(std::asin(1.0 / 5.0)) / std::tan(osg::DegreesToRadians(15.0));
    EXPECT_EQ(pixel(0, limb + 0.02), osg::Vec3i(0, 0, 0));
    EXPECT_FALSE(graticule->getBound().valid());
}
