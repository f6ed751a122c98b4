// Middles, snapping and kept angles of a vertex that is being dragged.
#include "SceneOnEarth.h"

#include "interaction/editing/AxEditRules.h"
#include "scene/shape/AxViewRay.h"

#include <osgEarth/GeoData>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace AxEditRules;
using Edges = std::vector<Edge>;

namespace {
osg::Vec3d WorldOf(const osg::Vec3d& place)
{
    osg::Vec3d world;
    osgEarth::GeoPoint(osgEarth::SpatialReference::get("wgs84"), place).toWorld(world);
    return world;
}

osg::Vec3d NormalOf(const osg::Vec3d& place)
{
    const double lat = osg::DegreesToRadians(place.y());
    const double lng = osg::DegreesToRadians(place.x());
    return {std::cos(lat) * std::cos(lng), std::cos(lat) * std::sin(lng), std::sin(lat)};
}

/// Metres east, north and up of a place.
osg::Vec3d Seen(const osg::Vec3d& from, const osg::Vec3d& place)
{
    osg::Matrixd toLocal;
    osgEarth::GeoPoint(osgEarth::SpatialReference::get("wgs84"), from).createWorldToLocal(toLocal);
    return WorldOf(place) * toLocal;
}

osg::Vec3d PlaceAt(const osg::Vec3d& from, double east, double north)
{
    osg::Matrixd toWorld;
    const osg::ref_ptr<osgEarth::SpatialReference> srs = osgEarth::SpatialReference::get("wgs84");
    osgEarth::GeoPoint(srs, from).createLocalToWorld(toWorld);
    osgEarth::GeoPoint place;
    place.fromWorld(srs, osg::Vec3d(east, north, 0.0) * toWorld);
    return place.vec3d();
}
} // namespace

TEST(EditRules, LeaveNeighboursOutOfSnapping)
{
    struct Row
    {
        int index, count;
        bool closed;
        std::vector<int> vertices;
        Edges edges;
    };
    for (const Row& row :
         {Row{0, 6, true, {2, 3, 4}, {{2, 3}, {3, 4}}}, Row{3, 6, true, {0, 1, 5}, {{0, 1}, {5, 0}}},
          Row{0, 5, false, {2, 3, 4}, {{2, 3}, {3, 4}}}, Row{2, 5, false, {0, 4}, {}},
          Row{1, 4, true, {3}, {}}, Row{1, 3, true, {}, {}}, Row{0, 1, true, {}, {}}}) {
        SCOPED_TRACE(testing::Message() << row.index << " of " << row.count);
        const OwnParts parts = SnapPartsFor(row.index, row.count, row.closed);
        EXPECT_EQ(parts.vertices, row.vertices);
        EXPECT_EQ(parts.edges, row.edges);
    }
}

TEST(EditRules, CountAnglesFromTheEdgeBefore)
{
    struct Row
    {
        int index, count;
        bool closed;
        std::optional<Edge> edge;
    };
    for (const Row& row :
         {Row{3, 5, true, Edge(1, 2)}, Row{0, 5, true, Edge(3, 4)}, Row{1, 5, true, Edge(4, 0)},
          Row{1, 3, true, Edge(2, 0)}, Row{3, 5, false, Edge(1, 2)}, Row{0, 5, false, Edge(2, 1)},
          Row{1, 5, false, Edge(3, 2)}, Row{1, 3, false, std::nullopt}, Row{1, 2, true, std::nullopt},
          Row{5, 5, true, std::nullopt}})
        EXPECT_EQ(PreviousEdge(row.index, row.count, row.closed), row.edge)
            << row.index << " of " << row.count;
}

TEST(EditRules, FindTheMiddleOfAGreatCircle)
{
    struct Row
    {
        osg::Vec3d a, b, middle;
    };
    for (const Row& row : {Row{{10, 0, 100}, {20, 0, 300}, {15, 0, 200}},
                           Row{{179, 10, 0}, {-179, 10, 0}, {180, 10.0015, 0}}, // across the date line
                           Row{{0, 80, 0}, {180, 80, 0}, {0, 90, 0}},           // over the pole
                           Row{{-60, 45, 0}, {60, 45, 0}, {0, 63.4349, 0}}}) {  // atan(tan 45 / cos 60)
        const osg::Vec3d middle = MiddleOf(row.a, row.b);
        EXPECT_NEAR(middle.y(), row.middle.y(), 1e-3);
        if (row.middle.y() < 90.0) {
            EXPECT_NEAR(std::remainder(middle.x() - row.middle.x(), 360.0), 0.0, 1e-3);
        }
        EXPECT_NEAR(middle.z(), row.middle.z(), 1e-9);
    }
}

TEST(KeptAngle, IsTheNearestStepInTheLocalPlane)
{
    const osg::Vec3d corner(-105.0, 37.5, 2500.0);
    for (const double length : {5.0, 2000.0, 150000.0})
        for (const double heading : {0.0, 33.0, 200.0})
            for (int turn = -178; turn <= 178; turn += 7) {
                SCOPED_TRACE(testing::Message() << length << " m, heading " << heading << ", turn " << turn);
                const double h = osg::DegreesToRadians(heading);
                const double t = osg::DegreesToRadians(heading - turn);
                const osg::Vec3d before = PlaceAt(corner, -length * std::sin(h), -length * std::cos(h));
                const osg::Vec3d wanted = PlaceAt(corner, length * std::sin(t), length * std::cos(t));
                const osg::Vec3d kept = KeepAngle(before, corner, wanted, 15.0);
                const osg::Vec3d previous = -Seen(corner, before);
                const osg::Vec3d next = Seen(corner, kept);
                const double got =
                    osg::RadiansToDegrees(std::atan2(previous.x() * next.y() - previous.y() * next.x(),
                                                     previous.x() * next.x() + previous.y() * next.y()));
                EXPECT_NEAR(std::remainder(got, 15.0), 0.0, 1e-6);
                EXPECT_LE(std::abs(std::remainder(got - turn, 360.0)), 7.5 + 0.01);
                EXPECT_DOUBLE_EQ(kept.z(), wanted.z());
                // The nearest place on that ray: seen from it, the wanted one lies at a right angle.
                const osg::Vec3d aside = Seen(corner, wanted) - next;
                EXPECT_NEAR((aside.x() * next.x() + aside.y() * next.y()) / length, 0.0, 1e-6 * length);
            }
}

/// Snapping on the screen of a camera that looks down on a place, 1 km above it.
class Snapping : public testing::Test
{
protected:
    osg::Vec3d At(double east, double north) const
    {
        return PlaceAt({SceneOnEarth::longitude, SceneOnEarth::latitude, 0.0}, east, north);
    }

    std::optional<osg::Vec3d> Drag(double east, double north) const
    {
        const AxViewRay ray = scene.RayTo(east, north);
        AxSnapView view;
        view.target = ray.window;
        view.metresPerPixel = ray.pixelSize * 1000.0;
        view.project = [&ray](const osg::Vec3d& world) -> std::optional<osg::Vec2d> {
            const auto place = ray.Project(world);
            return place ? std::make_optional(place->window) : std::nullopt;
        };
        return targets.Find(At(east, north), view);
    }

    void ExpectAt(const std::optional<osg::Vec3d>& place, double east, double north) const
    {
        ASSERT_TRUE(place);
        const osg::Vec3d seen = Seen({SceneOnEarth::longitude, SceneOnEarth::latitude, 0.0}, *place);
        EXPECT_NEAR(seen.x(), east, 0.02);
        EXPECT_NEAR(seen.y(), north, 0.02);
    }

    const SceneOnEarth scene{1000.0};
    const double pixel = 2.0 * 1000.0 * std::tan(osg::DegreesToRadians(15.0)) / 600.0; // metres
    AxSnapTargets targets;
};

TEST_F(Snapping, TakesTheNearestVertexWithinReach)
{
    targets.AddVertex(At(0.0, 0.0));
    targets.AddVertex(At(12.0 * pixel, 0.0));
    ExpectAt(Drag(9.0 * pixel, 0.0), 12.0 * pixel, 0.0);
    ExpectAt(Drag(4.0 * pixel, 3.0 * pixel), 0.0, 0.0);
    ExpectAt(Drag(-6.9 * pixel, -6.9 * pixel), 0.0, 0.0);
    EXPECT_FALSE(Drag(-7.3 * pixel, -7.3 * pixel));
}

TEST_F(Snapping, PrefersAVertexToAnEdge)
{
    targets.AddEdge(At(-100.0, 0.0), At(100.0, 0.0));
    targets.AddVertex(At(0.0, 9.0 * pixel));
    ExpectAt(Drag(0.0, 1.0 * pixel), 0.0, 9.0 * pixel);
    ExpectAt(Drag(40.0, 5.0 * pixel), 40.0, 0.0);
    EXPECT_FALSE(Drag(40.0, 11.0 * pixel));
}

TEST_F(Snapping, EndsWhereAnEdgeEnds)
{
    targets.AddEdge(At(-100.0, 0.0), At(50.0, 0.0));
    ExpectAt(Drag(50.0 + 6.0 * pixel, 2.0 * pixel), 50.0, 0.0);
    EXPECT_FALSE(Drag(50.0 + 12.0 * pixel, 0.0));
    targets.AddEdge(At(70.0, 0.0), At(70.0, 0.0));
    EXPECT_FALSE(Drag(70.0 + 12.0 * pixel, 0.0)) << "an edge without length is none";
    targets.Clear();
    EXPECT_FALSE(Drag(50.0, 0.0));
}

// The ends of a long edge lie far outside of the window, below the horizon.
TEST_F(Snapping, FollowsLongEdgesAlongTheirGreatCircle)
{
    const osg::Vec3d here(SceneOnEarth::longitude, SceneOnEarth::latitude, 0.0);
    const osg::Vec3d west = here - osg::Vec3d(6.0, 0.0, 0.0);
    targets.AddEdge(west, here + osg::Vec3d(6.0, 0.0, 0.0));
    EXPECT_FALSE(Drag(0.0, 0.0)) << "the great circle passes 8 km to the north of the parallel";
    // The end for which the great circle's middle is here.
    const osg::Vec3d up = NormalOf(here);
    const osg::Vec3d end = up * (2.0 * (NormalOf(west) * up)) - NormalOf(west);
    targets.AddEdge(west, osg::Vec3d(osg::RadiansToDegrees(std::atan2(end.y(), end.x())),
                                     osg::RadiansToDegrees(std::asin(end.z())), 0.0));
    const auto snapped = Drag(30.0, 3.0 * pixel);
    ASSERT_TRUE(snapped);
    const osg::Vec3d seen = Seen(here, *snapped);
    EXPECT_NEAR(seen.x(), 30.0, 3.0 * pixel);
    EXPECT_LT(std::abs(seen.y()), 3.0) << "the edge runs nearly east";
}

TEST_F(Snapping, MeasuresOnTheScreenNotOnTheGround)
{
    // From low above the ground a step to the back takes few pixels.
    osg::Matrixd eye = osg::Matrixd::rotate(osg::DegreesToRadians(80.0), osg::Vec3d(1.0, 0.0, 0.0));
    eye.postMultTranslate(osg::Vec3d(0.0, -985.0, 174.0));
    scene.camera->setViewMatrix(osg::Matrixd::inverse(eye * scene.toWorld));
    targets.AddEdge(At(-200.0, -10.0), At(200.0, 20.0));
    const auto far = Drag(0.0, 15.0); // 10 m behind the edge, 2 pixels on the screen
    ASSERT_TRUE(far);
    const osg::Vec3d seen = Seen({SceneOnEarth::longitude, SceneOnEarth::latitude, 0.0}, *far);
    EXPECT_NEAR(seen.y(), 5.0 + 0.075 * seen.x(), 0.05) << "on the edge";
    EXPECT_FALSE(Drag(0.0, 120.0));
}
