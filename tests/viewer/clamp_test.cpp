// Handles and shapes that come down to the ground as tiles arrive.
#include "EditorFixture.h"
#include "ShapeFixture.h"

#include "interaction/editing/CAxClampObjectCallback.h"

#include <osg/ValueObject>
#include <osgEarth/ElevationLayer>
#include <osgEarth/Map>
#include <osgEarth/Registry>
#include <osgEarth/Terrain>
#include <osgEarthDrivers/gdal/GDALOptions>

#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>

#include <cmath>

/// A handle at 15 E 45 N, and tiles of any level around it, level at a height.
class Clamping : public EditorFixture
{
protected:
    void SetUp() override
    {
        dragger = new CAxDragger(nullptr, CAxDragger::DragSphere);
        dragger->setPosition(osgEarth::GeoPoint(osgEarth::SpatialReference::get("wgs84"), lng, lat, 7.0),
                             false);
        clamp = new CAxClampObjectCallback(dragger, 3, 0);
        QObject::connect(clamp.get(), &CAxClampObjectCallback::signalPositionChanged,
                         [this](double x, double y, double z, int index) {
                             told += osg::Vec3d(x, y, z);
                             EXPECT_EQ(index, 3);
                         });
    }
    void TearDown() override {}

    /// The altitude of the handle after a tile of this level came.
    double After(unsigned level, double height, double tileLng = lng)
    {
        const osgEarth::TileKey key =
            osgEarth::Registry::instance()->getGlobalGeodeticProfile()->createTileKey(tileLng, lat, level);
        osg::ref_ptr<osg::Geometry> square = new osg::Geometry;
        const std::vector<osg::Vec3> corners{
            {-1e4f, -1e4f, 0}, {1e4f, -1e4f, 0}, {1e4f, 1e4f, 0}, {-1e4f, 1e4f, 0}};
        square->setVertexArray(new osg::Vec3Array(4, corners.data()));
        square->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLE_FAN, 0, 4));
        osg::ref_ptr<osg::Geode> geode = new osg::Geode;
        geode->addDrawable(square);
        osg::ref_ptr<osg::MatrixTransform> tile = new osg::MatrixTransform(FrameAt(lng, lat, height));
        tile->addChild(geode);
        osgEarth::TerrainCallbackContext context(viewer->getMapNode()->getTerrain());
        clamp->onTileAdded(key, tile, context);
        return dragger->getPosition().z();
    }

    static constexpr double lng = 15.0;
    static constexpr double lat = 45.0;
    osg::ref_ptr<CAxDragger> dragger;
    osg::ref_ptr<CAxClampObjectCallback> clamp;
    QList<osg::Vec3d> told;
};

TEST_F(Clamping, TakesTheHeightOfEverFinerTiles)
{
    EXPECT_NEAR(After(5, 800.0), 800.0, 0.01);
    EXPECT_NEAR(After(9, 850.0), 850.0, 0.01);
    ASSERT_EQ(told.size(), 2);
    EXPECT_NEAR(told.last().x(), lng, 1e-9);
    EXPECT_NEAR(told.last().y(), lat, 1e-9);
    EXPECT_NEAR(told.last().z(), 850.0, 0.01);

    EXPECT_NEAR(After(9, 700.0), 850.0, 0.01) << "an equal tile";
    EXPECT_NEAR(After(3, 600.0), 850.0, 0.01) << "a coarser one";
    EXPECT_NEAR(After(12, 500.0, lng + 40.0), 850.0, 0.01) << "one elsewhere";
    EXPECT_EQ(told.size(), 2);
    EXPECT_NEAR(After(10, -400.0), -400.0, 0.01);
}

TEST_F(Clamping, LeavesOutTilesThatDoNotCount)
{
    EXPECT_EQ(After(0, 800.0), 7.0) << "not above the minimum level";
    EXPECT_EQ(After(8, 10500.0), 7.0) << "out of the segment's reach";
    EXPECT_EQ(After(8, -10500.0), 7.0);
    EXPECT_EQ(clamp->GetLastLod(), -1);
    EXPECT_NEAR(After(8, 9900.0), 9900.0, 0.01);
    clamp->Detach();
    EXPECT_NEAR(After(12, 5.0), 9900.0, 0.01);
}

TEST_F(Clamping, HeedsWhatTheHandleSays)
{
    ASSERT_NEAR(After(5, 100.0), 100.0, 0.01);
    for (const char* name : {"IntersectModel", "MoveAdapter", "Hover"}) {
        SCOPED_TRACE(name);
        dragger->setUserValue(name, true);
        EXPECT_NEAR(After(9, 200.0), 100.0, 0.01);
        EXPECT_EQ(clamp->GetLastLod(), 5) << "the last clamp is remembered";
        dragger->setUserValue(name, false);
    }
    dragger->setUserValue("ResetClampAlt", true);
    dragger->setUserValue("MoveAdapter", true);
    After(9, 200.0);
    bool reset = false;
    EXPECT_TRUE(dragger->getUserValue("ResetClampAlt", reset) && reset) << "a moved block keeps its wish";
    dragger->setUserValue("MoveAdapter", false);
    EXPECT_NEAR(After(9, 200.0), 100.0, 0.01) << "the first tile only resets";
    EXPECT_TRUE(dragger->getUserValue("ResetClampAlt", reset) && !reset);
    EXPECT_EQ(clamp->GetLastLod(), -1);
    EXPECT_NEAR(After(2, 300.0), 300.0, 0.01) << "then any level clamps";
    dragger->setUserValue("ResetClampAlt", true);
    dragger->setUserValue("Hover", true);
    EXPECT_NEAR(After(6, 400.0), 300.0, 0.01);
    EXPECT_TRUE(dragger->getUserValue("ResetClampAlt", reset) && !reset) << "reset comes before hover";
}

TEST_F(Clamping, ForgetsTheLastLevelWhileHidden)
{
    ASSERT_NEAR(After(9, 100.0), 100.0, 0.01);
    dragger->setNodeMask(0);
    EXPECT_NEAR(After(12, 200.0), 100.0, 0.01);
    EXPECT_EQ(clamp->GetLastLod(), -1);
    dragger->setNodeMask(~0u);
    EXPECT_NEAR(After(4, 300.0), 300.0, 0.01);
}

using EditorClamping = EditorFixture;

// The map that the viewer shows brings finer tiles by itself.
TEST_F(EditorClamping, BringsTheVerticesDownToTheArrivingGround)
{
    manipulator->setViewpoint(Straight(7.0, 46.0, 3.0e6));
    ASSERT_TRUE(WaitForPicture());
    object->GetAnchor() = {{7.0, 46.0, 9000.0}, {7.1, 46.0, 9000.0}, {7.05, 46.1, -500.0}};
    CAxHandleAdapterEditor& editor = object->Edit();
    editor.GetDraggerList()[2]->setUserValue("IntersectModel", true);
    manipulator->setViewpoint(Straight(7.05, 46.05, 60000.0));
    ASSERT_TRUE(WaitForPicture());
    for (const std::size_t i : {0u, 1u}) {
        const osg::Vec3d& anchor = object->GetAnchor()[i];
        EXPECT_NEAR(anchor.z(), Ground(anchor.x() - longitude, anchor.y() - latitude).z(), 5.0);
        EXPECT_EQ(editor.GetDraggerList()[i]->GetPlace(), anchor);
    }
    EXPECT_EQ(object->GetAnchor()[2].z(), -500.0);
    EXPECT_EQ(object->moves, 0) << "nobody has moved a vertex by hand";
}

TEST_F(EditorClamping, TakesItsCallbacksAlong)
{
    const osg::ref_ptr<CAxHandleAdapterEditor> editor = &object->Edit();
    object->GetAnchor().resize(1);
    editor->Update();
    object.reset();
    manipulator->setViewpoint(Straight(longitude + 3.0, latitude + 3.0, 30000.0));
    EXPECT_TRUE(WaitForPicture()) << "tiles that arrive find no handle that is gone";
}

/// Ground of cells of 5 m around a place, which the shipped map has in cells of 15 km.
class ShapeOnFineGround : public ShapeFixture, public testing::WithParamInterface<double>
{
protected:
    void SetUp() override
    {
        ShapeFixture::SetUp();
        osgEarth::Drivers::GDALOptions source;
        source.url() = Hills().toStdString();
        layer = new osgEarth::ElevationLayer("hills", source);
        viewer->getMapNode()->getMap()->addElevationLayer(layer);
    }
    void TearDown() override
    {
        viewer->getMapNode()->getMap()->removeElevationLayer(layer);
        ShapeFixture::TearDown();
    }

    static constexpr double longitude = 31.0;
    static constexpr double metre = 1.0 / 111320.0; ///< degrees of latitude

private:
    // Hills of up to 120 m, some 600 m apart. The text format needs no library to be written.
    QString Hills() const
    {
        constexpr int side = 400;
        constexpr double cell = 5.0 * metre;
        const QString path = folder.filePath(QStringLiteral("hills.asc"));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        QTextStream text(&file);
        text.setRealNumberPrecision(12);
        text << "ncols " << side << "\nnrows " << side << "\nxllcorner " << longitude - 0.5 * side * cell
             << "\nyllcorner " << GetParam() - 0.5 * side * cell << "\ncellsize " << cell << '\n';
        for (int row = 0; row < side; ++row)
            for (int column = 0; column < side; ++column)
                text << 120.0 * std::sin(0.05 * column) * std::cos(0.05 * row) << ' ';
        QFile reference(folder.filePath(QStringLiteral("hills.prj")));
        EXPECT_TRUE(reference.open(QIODevice::WriteOnly));
        reference.write("GEOGCS[\"WGS 84\",DATUM[\"WGS_1984\",SPHEROID[\"WGS 84\",6378137,298.257223563]],"
                        "PRIMEM[\"Greenwich\",0],UNIT[\"degree\",0.0174532925199433]]");
        return path;
    }

    const QTemporaryDir folder;
    osg::ref_ptr<osgEarth::ElevationLayer> layer;
};

TEST_P(ShapeOnFineGround, LiesOnItWhateverTheLatitude)
{
    const double half = 300.0 * metre;
    const double lat = GetParam();
    const CAx3DGeometry* block = Import("fine", {{longitude - half, lat - half},
                                                 {longitude + half, lat - half},
                                                 {longitude + half, lat + half},
                                                 {longitude - half, lat + half}});
    ASSERT_NE(block, nullptr);
    manipulator->setViewpoint(Straight(longitude, lat, 3000.0));
    ASSERT_TRUE(WaitForPicture());
    std::size_t points = 0;
    double farthest = 0.0; // metres off the ground
    const auto measure = [&] {
        const osg::Geometry* drawn = block->GetFeatureNode()->getDrawable(0)->asGeometry();
        const auto& single = static_cast<const osg::Vec3Array&>(*drawn->getVertexArray());
        const auto& rest = static_cast<const osg::Vec3Array&>(
            *drawn->getVertexAttribArray(drawn->getNumVertexAttribArrays() - 1));
        points = single.size();
        farthest = 0.0;
        for (std::size_t i = 0; i < points; ++i) {
            osgEarth::GeoPoint place;
            place.fromWorld(viewer->getSRS(), osg::Vec3d(single[i]) + osg::Vec3d(rest[i]));
            double ground = 1e9;
            viewer->getMapNode()->getTerrain()->getHeight(viewer->getSRS(), place.x(), place.y(), &ground);
            farthest = std::max(farthest, std::abs(place.z() - ground));
        }
        return points > 40 && farthest < 0.5;
    };
    EXPECT_TRUE(waitFor(measure, 10000)) << farthest << " m off the ground, of " << points << " points";
}

INSTANTIATE_TEST_SUITE_P(Latitudes, ShapeOnFineGround, testing::Values(0.0, 37.4, -62.0));
