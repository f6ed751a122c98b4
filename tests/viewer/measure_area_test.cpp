// The tools that measure areas, planes and places.
#include "ShapeFixture.h"

#include "interaction/measure/AxMeasureAdapter.h"
#include "interaction/measure/AxMeasurements.h"

#include <AxAlgorthm/AxCoordinate.h>
#include <AxAlgorthm/AxCoordinateSystem.h>

#include <cmath>

class MeasuringAreas : public ShapeFixture
{
protected:
    void SetUp() override
    {
        ShapeFixture::SetUp();
        kept = viewer->GetMeasurements();
        kept->Clear();
    }
    void TearDown() override
    {
        viewer->SetToolType(ToolNavigate);
        viewer->SetProjPlaneMatrix(osg::Matrixd());
        viewer->SetCoordSys(QString());
        kept->Clear();
        ShapeFixture::TearDown();
    }
    AxMeasurement Only()
    {
        EXPECT_EQ(kept->All().size(), 1);
        EXPECT_TRUE(waitFor([this] { return kept->All().isEmpty() || !kept->All().first().isPending; }));
        return kept->All().value(0);
    }

    AxMeasurements* kept = nullptr;
};

TEST_F(MeasuringAreas, AnAreaIsThatOfItsCornersOnTheEllipsoidAndOfItsGround)
{
    viewer->SetToolType(ToolMeasureArea);
    Click(19.0, 9.0);
    Click(21.0, 9.0);
    MoveTo(21.0, 11.0);
    EXPECT_NE(CursorText().find("km"), std::string::npos) << CursorText();
    Click(21.0, 11.0);
    DoubleClickAt(19.0, 11.0);
    const AxMeasurement one = Only();
    ASSERT_EQ(one.points.size(), 4u);
    EXPECT_TRUE(one.isClosed);
    std::vector<CAxPoint2D> ring;
    for (const osg::Vec3d& point : one.points)
        ring.emplace_back(point.x(), point.y());
    const double area = GeodesicRingArea(ring);
    EXPECT_NEAR(one.values.Of(AxQuantity::Area), area, 1e-9 * area);
    EXPECT_NEAR(one.values.Of(AxQuantity::AreaOverGround), area, 1e-2 * area);
    EXPECT_EQ(viewer->GetToolType(), ToolMeasureArea);
    kept->Clear();

    Click(19.0, 9.0);
    Click(21.0, 11.0);
    Click(21.0, 9.0);
    MoveTo(19.0, 11.0);
    EXPECT_NE(CursorText().find("crosses itself"), std::string::npos) << CursorText();
    DoubleClickAt(19.0, 11.0);
    const AxMeasurement crossed = Only();
    EXPECT_TRUE(crossed.values.isCrossed);
    EXPECT_TRUE(std::isnan(crossed.values.Of(AxQuantity::Area)));
}

TEST_F(MeasuringAreas, TheAntimeridianAndAPoleAreCrossed)
{
    // Without either, of the same size: shifted, and put together of triangles that end at the pole.
    const double besides = GeodesicRingArea({{19.0, 9.0}, {21.0, 9.0}, {21.0, 11.0}, {19.0, 11.0}});
    const double quarter = GeodesicRingArea({{0.0, 80.0}, {90.0, 80.0}, {0.0, 90.0}});
    const struct
    {
        double lng, lat; // where the map is looked at
        std::vector<osg::Vec2d> corners;
        double area, firstToThird;
    } rows[] = {
        {180.0,
         10.0,
         {{179.0, 9.0}, {-179.0, 9.0}, {-179.0, 11.0}, {179.0, 11.0}},
         besides,
         DistanceBetweenTwoLatLng({19.0, 9.0, 0.0}, {21.0, 11.0, 0.0})},
        {20.0,
         89.0,
         {{0.0, 80.0}, {90.0, 80.0}, {180.0, 80.0}, {-90.0, 80.0}},
         4.0 * quarter,
         2.0 * DistanceBetweenTwoLatLng({0.0, 80.0, 0.0}, {0.0, 90.0, 0.0})},
    };
    for (const auto& row : rows) {
        manipulator->setViewpoint(Straight(row.lng, row.lat, 1.5e7));
        ASSERT_TRUE(WaitForPicture());
        viewer->SetToolType(ToolMeasureArea);
        for (std::size_t i = 0; i < 3; ++i)
            Click(row.corners[i].x(), row.corners[i].y());
        DoubleClickAt(row.corners[3].x(), row.corners[3].y());
        const AxMeasurement ring = Only();
        ASSERT_EQ(ring.points.size(), 4u) << row.lng;
        EXPECT_FALSE(ring.values.isCrossed) << row.lng;
        EXPECT_NEAR(ring.values.Of(AxQuantity::Area), row.area, 1e-3 * row.area) << row.lng;
        kept->Clear();
        viewer->SetToolType(ToolMeasureDistance);
        Click(row.corners[0].x(), row.corners[0].y());
        DoubleClickAt(row.corners[2].x(), row.corners[2].y());
        EXPECT_NEAR(Only().values.Of(AxQuantity::Length), row.firstToThird, 1e-3 * row.firstToThird)
            << row.lng;
        kept->Clear();
    }
}

TEST_F(MeasuringAreas, APlaneIsDraggedAlongTheAxesOfTheProjectionPlane)
{
    for (const double turn : {0.0, 45.0}) {
        viewer->SetProjPlaneMatrix(
            osg::Matrixd::rotate(osg::DegreesToRadians(turn), osg::Vec3d(0.0, 0.0, 1.0)));
        viewer->SetToolType(ToolMeasurePlane);
        const osg::Vec2f from = WindowOf(19.0, 9.0);
        const osg::Vec2f to = WindowOf(21.0, 10.0);
        Push(from.x(), from.y());
        Drag(to.x(), to.y());
        EXPECT_NE(CursorText().find("Width"), std::string::npos) << CursorText();
        Release(to.x(), to.y());
        const AxMeasurement one = Only();
        ASSERT_EQ(one.points.size(), 4u);
        const osg::Vec3d side = one.points[1] - one.points[0];
        const double east = side.x() * std::cos(osg::DegreesToRadians(9.0));
        EXPECT_NEAR(osg::RadiansToDegrees(std::atan2(side.y(), east)), turn, 1.5);
        EXPECT_GT(one.values.Of(AxQuantity::Depth), 1.0e4);
        EXPECT_GE(one.values.Of(AxQuantity::Dip), 0.0);
        EXPECT_GE(one.values.Of(AxQuantity::AreaOnPlane), one.values.Of(AxQuantity::Area));
        kept->Clear();
    }
}

TEST_F(MeasuringAreas, APlaceIsToldInTheChosenSystemAndKeptByAClick)
{
    ASSERT_TRUE(viewer->SetCoordSys("EPSG:32634"));
    viewer->SetToolType(ToolProjCoords);
    MoveTo(20.0, 10.0);
    EXPECT_NE(CursorText().find("UTM zone 34N"), std::string::npos) << CursorText();
    EXPECT_TRUE(kept->All().isEmpty());
    Click(20.0, 10.0);
    const AxMeasurement one = Only();
    const auto expected = viewer->GetCoordinateSystem().FromPlace(one.points.at(0).y(), one.points.at(0).x());
    EXPECT_NEAR(one.values.Of(AxQuantity::Easting), expected.values[0], 1e-6);
    EXPECT_NEAR(one.values.Of(AxQuantity::Northing), expected.values[1], 1e-6);
    EXPECT_TRUE(std::isfinite(one.values.Of(AxQuantity::GroundHeight)));
    EXPECT_TRUE(one.name.contains("UTM zone 34N")) << one.name.toStdString();
    // It stays as it was taken, and the tool goes on until Escape.
    ASSERT_TRUE(viewer->SetCoordSys("DMS"));
    MoveTo(20.5, 10.0);
    EXPECT_NE(CursorText().find('"'), std::string::npos) << CursorText();
    PressKey(Qt::Key_Escape);
    EXPECT_EQ(viewer->GetToolType(), ToolNavigate);
    MoveTo(20.6, 10.0);
    MoveTo(20.7, 10.0);
    EXPECT_TRUE(CursorText().empty());
    EXPECT_EQ(kept->All().size(), 1);
}
