// From the vertices of a shape to what is drawn: outline, fill, plane ring, place of the name.
#include "interaction/objects/CAxHandleAdapter.h"
#include "scene/shape/AxRingInPlane.h"
#include "scene/shape/AxShapeSurface.h"

#include <AxBaseUI/AxPolygonTest.h>

#include <osg/CoordinateSystemNode>

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <random>
#include <string>

namespace {
using Ring = std::vector<osg::Vec3d>;

constexpr double radians = 3.14159265358979323846 / 180.0;

void Hills(std::vector<osg::Vec3d>& points)
{
    for (osg::Vec3d& point : points)
        point.z() = 800.0 + 300.0 * std::sin(300.0 * point.x()) * std::cos(400.0 * point.y());
}

// A ring in metres east and north of a place, laid onto the sphere around it.
Ring Around(double lng, double lat, const std::vector<std::pair<double, double>>& metres)
{
    const osg::Vec3d up(std::cos(lat * radians) * std::cos(lng * radians),
                        std::cos(lat * radians) * std::sin(lng * radians), std::sin(lat * radians));
    const osg::Vec3d east(-std::sin(lng * radians), std::cos(lng * radians), 0.0);
    const osg::Vec3d north = up ^ east;
    Ring ring;
    for (const auto& [x, y] : metres) {
        osg::Vec3d normal = up + (east * x + north * y) / 6371000.0;
        normal.normalize();
        ring.emplace_back(std::atan2(normal.y(), normal.x()) / radians,
                          std::atan2(normal.z(), std::hypot(normal.x(), normal.y())) / radians, 0.0);
    }
    return ring;
}

std::vector<std::pair<double, double>> Star(int count, double size, unsigned seed)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> share(0.4, 1.0);
    std::vector<std::pair<double, double>> star;
    for (int i = 0; i < count; ++i) {
        const double r = size * share(random);
        star.emplace_back(r * std::cos(2 * M_PI * i / count), r * std::sin(2 * M_PI * i / count));
    }
    return star;
}

// Where a point of altitude 0 lies on the sphere of ellipsoid normals.
osg::Vec3d Normal(const osg::Vec3d& world)
{
    constexpr double a = 6378137.0;
    constexpr double b = 6356752.314245;
    osg::Vec3d normal(world.x() / a / a, world.y() / a / a, world.z() / b / b);
    normal.normalize();
    return normal;
}

// Van Oosterom and Strackee, "The Solid Angle of a Plane Triangle" (1983).
double SolidAngle(const osg::Vec3d& a, const osg::Vec3d& b, const osg::Vec3d& c)
{
    return 2.0 * std::atan2(((b - a) ^ (c - a)) * a, 1.0 + a * b + b * c + c * a);
}

struct Coverage
{
    double triangles = 0.0;
    double smallest = 0.0; // of the triangles; below 0 for one that is turned over
    double rim = 0.0;      // length of the edges that have a triangle on one side only
    std::size_t doubled = 0;
};

Coverage Cover(const AxShapeMesh& mesh)
{
    Coverage cover;
    std::map<std::pair<unsigned, unsigned>, int> edges;
    for (std::size_t i = 0; i < mesh.triangles.size(); i += 3) {
        const unsigned* corner = &mesh.triangles[i];
        const double angle = SolidAngle(Normal(mesh.points.at(corner[0])), Normal(mesh.points.at(corner[1])),
                                        Normal(mesh.points.at(corner[2])));
        cover.triangles += angle;
        cover.smallest = std::min(cover.smallest, angle);
        for (int k = 0; k < 3; ++k)
            ++edges[{corner[k], corner[(k + 1) % 3]}];
    }
    for (const auto& [edge, count] : edges) {
        cover.doubled += count > 1;
        if (!edges.count({edge.second, edge.first}))
            cover.rim += (mesh.points[edge.first] - mesh.points[edge.second]).length();
    }
    return cover;
}

double OutlineLength(const AxShapeMesh& mesh)
{
    double length = 0.0;
    for (std::size_t i = 0; i < mesh.outlineCount; ++i)
        length += (mesh.points[i] - mesh.points[(i + 1) % mesh.outlineCount]).length();
    return length;
}

double RingAngle(const Ring& ring)
{
    double sum = 0.0;
    std::vector<osg::Vec3d> normals;
    for (const osg::Vec3d& vertex : ring)
        normals.emplace_back(std::cos(vertex.y() * radians) * std::cos(vertex.x() * radians),
                             std::cos(vertex.y() * radians) * std::sin(vertex.x() * radians),
                             std::sin(vertex.y() * radians));
    for (std::size_t i = 2; i < normals.size(); ++i)
        sum += SolidAngle(normals[0], normals[i - 1], normals[i]);
    return std::abs(sum);
}

osg::Vec3d LngLatAlt(const osg::Vec3d& world)
{
    double lat = 0.0;
    double lng = 0.0;
    double alt = 0.0;
    osg::EllipsoidModel().convertXYZToLatLongHeight(world.x(), world.y(), world.z(), lat, lng, alt);
    return {lng / radians, lat / radians, alt};
}

bool IsSane(const AxShapeMesh& mesh)
{
    for (const osg::Vec3d& point : mesh.points)
        if (!std::isfinite(point.length2()))
            return false;
    for (const unsigned index : mesh.triangles)
        if (index >= mesh.points.size())
            return false;
    return mesh.triangles.size() % 3 == 0 && mesh.outlineCount <= mesh.points.size();
}

struct Place
{
    const char* name;
    double lng;
    double lat;
};

struct Outline
{
    const char* name;
    std::vector<std::pair<double, double>> unit; // of size 1
};

const Outline outlines[] = {
    {"Square", {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}}},
    {"Hook", {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}, {-1, 0.6}, {0.7, 0.6}, {0.7, -0.5}, {-1, -0.5}}},
    {"Spike", {{-1, 0}, {1, -0.001}, {1, 0.001}}},
    {"Star", Star(60, 1.0, 5)},
};
const Place places[] = {{"Home", -105.0, 37.4},
                        {"Antimeridian", 180.0, -16.5},
                        {"NorthPole", 0.0, 89.9999},
                        {"SouthPole", 77.0, -90.0}};
} // namespace

class Fill : public testing::TestWithParam<std::tuple<Outline, Place, double>>
{
};

TEST_P(Fill, CoversTheShapeOnceWhicheverWayItIsDrawn)
{
    const auto& [outline, place, size] = GetParam();
    std::vector<std::pair<double, double>> metres = outline.unit;
    for (auto& [x, y] : metres) {
        x *= size;
        y *= size;
    }
    Ring ring = Around(place.lng, place.lat, metres);
    const double expected = RingAngle(ring);
    for (const char* way : {"anticlockwise", "clockwise", "from another vertex"}) {
        AxShapeSurface surface;
        surface.SetVertices(ring, true, true, nullptr);
        for (const char* step : {"spanned", "refined"}) {
            const AxShapeMesh& mesh = surface.Mesh();
            ASSERT_TRUE(IsSane(mesh));
            const Coverage cover = Cover(mesh);
            EXPECT_NEAR(cover.triangles / expected, 1.0, 1e-5) << way << ", " << step;
            EXPECT_GE(cover.smallest, -1e-7 * expected) << way << ", " << step;
            EXPECT_EQ(cover.doubled, 0u) << way << ", " << step;
            // More would be cracks, less a part of the shape's rim without fill. A step of
            // the fill beside the outline's longer one bends with the globe, hence the slack.
            EXPECT_NEAR(cover.rim / OutlineLength(mesh), 1.0, 1e-5) << way << ", " << step;
            surface.Refine(nullptr);
        }
        if (way == std::string("anticlockwise"))
            std::reverse(ring.begin(), ring.end());
        else
            std::rotate(ring.begin(), ring.begin() + 2, ring.end());
    }
}

INSTANTIATE_TEST_SUITE_P(Shapes, Fill,
                         testing::Combine(testing::ValuesIn(outlines), testing::ValuesIn(places),
                                          testing::Values(1.0, 800.0, 600000.0)),
                         [](const auto& row) {
                             return std::string(std::get<0>(row.param).name) + std::get<1>(row.param).name +
                                    std::to_string(int(std::get<2>(row.param))) + "m";
                         });

TEST(FillOnTheGround, HasTheGroundsHeightsAndNoCracks)
{
    const Ring ring = Around(-105.0, 37.4, Star(30, 4000.0, 3));
    AxShapeSurface surface;
    surface.SetVertices(ring, true, true, Hills);
    surface.Refine(Hills);
    const AxShapeMesh& mesh = surface.Mesh();
    EXPECT_GT(mesh.points.size(), mesh.outlineCount + 300);
    EXPECT_EQ(Cover(mesh).doubled, 0u);
    for (std::size_t i = mesh.outlineCount; i < mesh.points.size(); ++i) {
        const osg::Vec3d at = LngLatAlt(mesh.points[i]);
        std::vector<osg::Vec3d> ground = {at};
        Hills(ground);
        ASSERT_NEAR(at.z(), ground[0].z(), 0.01);
    }
}

TEST(FillOnTheGround, HasAThinnerTwinForSmallPictures)
{
    const Ring ring = Around(-105.0, 37.4, Star(30, 4000.0, 3));
    AxShapeSurface surface;
    surface.SetVertices(ring, true, true, Hills);
    EXPECT_TRUE(surface.Mesh().coarseTriangles.empty()) << "an edit that goes on has no time for it";
    surface.Refine(Hills);
    const AxShapeMesh& mesh = surface.Mesh();
    ASSERT_FALSE(mesh.coarseTriangles.empty());
    EXPECT_LT(mesh.coarseTriangles.size(), mesh.triangles.size() / 5);
    AxShapeMesh twin;
    twin.points = mesh.points;
    twin.triangles = mesh.coarseTriangles;
    EXPECT_NEAR(Cover(twin).triangles / RingAngle(ring), 1.0, 1e-3);
    EXPECT_EQ(Cover(twin).doubled, 0u);
    // What was left out of the outline lies near the line past it.
    for (std::size_t i = 0, k = 0; i < mesh.outlineCount; ++i) {
        k += k + 1 < mesh.coarseOutline.size() && mesh.coarseOutline[k + 1] <= i;
        const osg::Vec3d a = mesh.points[mesh.coarseOutline[k]];
        const osg::Vec3d b = mesh.points[mesh.coarseOutline[(k + 1) % mesh.coarseOutline.size()]];
        EXPECT_LE(((mesh.points[i] - a) ^ (b - a)).length() / (b - a).length(), mesh.coarseError + 1e-6);
    }
}

TEST(FillBeyondAHemisphere, TakesTheSmallerPartOfTheGlobe)
{
    Ring ring;
    for (int lng = 0; lng < 360; lng += 10)
        ring.emplace_back(lng, -2.0, 0.0);
    AxShapeSurface surface;
    surface.SetVertices(ring, true, true, nullptr);
    const Coverage cover = Cover(surface.Mesh());
    EXPECT_NEAR(cover.triangles, RingAngle(ring), 0.01 * cover.triangles);
    EXPECT_LT(cover.triangles, 2.0 * M_PI);
}

TEST(Edges, FollowTheGreatCircleAndTheGroundAndKeepTheVertices)
{
    for (const double length : {1.0, 300.0, 20000.0, 1500000.0}) {
        SCOPED_TRACE(length);
        Ring line = Around(179.99, 60.0, {{0.0, 0.0}, {length, 0.2 * length}, {length, length}});
        for (osg::Vec3d& vertex : line)
            vertex.z() = 1234.5; // above the ground there, on purpose
        AxShapeSurface surface;
        surface.SetVertices(line, false, true, Hills);
        const AxShapeMesh& mesh = surface.Mesh();
        EXPECT_TRUE(mesh.triangles.empty());
        ASSERT_EQ(mesh.outlineCount, mesh.points.size());
        std::size_t vertices = 0;
        for (const osg::Vec3d& point : mesh.points) {
            const osg::Vec3d at = LngLatAlt(point);
            std::vector<osg::Vec3d> ground = {at};
            Hills(ground);
            const bool isVertex = std::abs(at.z() - 1234.5) < 1e-3;
            vertices += isVertex;
            ASSERT_TRUE(isVertex || std::abs(at.z() - ground[0].z()) < 0.01) << at.z();
        }
        EXPECT_EQ(vertices, 3u);
        const double step = (mesh.points[1] - mesh.points[0]).length();
        EXPECT_LE(step, std::max(50.0, length / 100.0) + 1000.0); // the climb to the raised vertex counts
        EXPECT_LT(mesh.outlineCount, 700u);
    }
}

TEST(EdgesInTheDark, PassEvenlyOverWhatIsNotKnown)
{
    const Ring line = Around(10.0, 46.0, {{0.0, 0.0}, {4000.0, 0.0}});
    Ring raised = line;
    raised[0].z() = 100.0;
    raised[1].z() = 500.0;
    AxShapeSurface surface;
    surface.SetVertices(raised, false, false, [](std::vector<osg::Vec3d>& points) {
        points[points.size() / 2].z() = 1000.0; // the ground is known in the middle alone
    });
    double before = 0.0;
    double highest = 0.0;
    for (const osg::Vec3d& point : surface.Mesh().points) {
        const double alt = LngLatAlt(point).z();
        EXPECT_TRUE(highest > 999.0 || alt >= before - 0.01);
        before = alt;
        highest = std::max(highest, alt);
    }
    EXPECT_NEAR(highest, 1000.0, 0.01);
    EXPECT_NEAR(before, 500.0, 0.01);
    surface.SetVertices(raised, false, false, nullptr);
    EXPECT_NEAR(LngLatAlt(surface.Mesh().points.back()).z(), 500.0, 0.01);
}

TEST(Editing, GivesWhatAFreshStartWouldAndAsksForFewHeights)
{
    std::mt19937 random(11);
    std::uniform_real_distribution<double> degrees(-1e-4, 1e-4);
    Ring ring = Around(-105.0, 37.4, Star(900, 3000.0, 9));
    AxShapeSurface kept;
    kept.SetVertices(ring, true, true, Hills);
    for (int step = 0; step < 300; ++step) {
        const std::size_t at = random() % ring.size();
        const osg::Vec3d other = ring[at] + osg::Vec3d(degrees(random), degrees(random), 1.0);
        // Mostly growing, so that what an edge may cost changes on the way.
        const unsigned kind = random() % 8;
        if (kind == 0)
            ring[at] = other;
        else if (kind == 1)
            ring.erase(ring.begin() + static_cast<std::ptrdiff_t>(at));
        else if (kind < 5)
            ring.insert(ring.begin() + static_cast<std::ptrdiff_t>(at), other);
        else
            ring.push_back(ring.back() + osg::Vec3d(degrees(random), degrees(random), 1.0));
        std::size_t asked = 0;
        kept.SetVertices(ring, true, true, [&asked](std::vector<osg::Vec3d>& points) {
            asked += points.size();
            Hills(points);
        });
        if (ring.size() != 1250 && ring.size() != 1251) {
            EXPECT_LE(asked, 6u) << step;
        }
        if (step % 30 == 0) {
            AxShapeSurface fresh;
            fresh.SetVertices(ring, true, true, Hills);
            ASSERT_EQ(kept.Mesh().points, fresh.Mesh().points);
            ASSERT_EQ(kept.Mesh().triangles, fresh.Mesh().triangles);
        }
    }
    // Refining leaves nothing behind, either.
    kept.Refine(Hills);
    kept.SetVertices(ring, true, true, nullptr);
    AxShapeSurface fresh;
    fresh.SetVertices(ring, true, true, Hills);
    EXPECT_EQ(kept.Mesh().points, fresh.Mesh().points);
}

TEST(BadVertices, AreLeftOutAndDoNoHarm)
{
    const double nan = std::nan("");
    const Ring good = Around(10.0, 46.0, {{0, 0}, {500, 0}, {500, 500}, {0, 500}});
    AxShapeSurface expected;
    expected.SetVertices(good, true, true, nullptr);
    AxShapeSurface surface;
    Ring bad = good;
    bad.insert(bad.begin() + 2,
               {{nan, 46.0, 0.0}, {10.0, nan, 0.0}, {10.0, 46.0, nan}, {1.0 / 0.0, 0, 0}, {0, 91, 0}});
    bad.insert(bad.begin() + 1, good[0]); // twice the same
    bad.push_back(good[0]);
    surface.SetVertices(bad, true, true, nullptr);
    EXPECT_EQ(surface.Mesh().points, expected.Mesh().points);
    EXPECT_EQ(surface.Mesh().triangles, expected.Mesh().triangles);

    const Ring degenerate[] = {
        {},
        {{1, 2, 3}},
        {{1, 2, 3}, {1, 2, 3}, {1, 2, 3}},
        {{1, 2, 3}, {4, 5, 6}},
        {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {1, 0, 0}},                         // there and back
        {{0, 0, 0}, {180, 0, 0}, {0, 90, 0}},                                 // opposite points
        {{0, 90, 0}, {90, 90, 0}, {180, 90, 0}},                              // the pole, three times
        {{0, 0, 0}, {1, 1, 0}, {1, 0, 0}, {0, 1, 0}},                         // bow tie
        {{0, 0, 0}, {90, 0, 0}, {180, 0, 0}, {270, 0, 0}},                    // the equator
        {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 0, 0}, {-1, 1, 0}, {-1, 0, 0}}, // a vertex twice
    };
    for (const Ring& ring : degenerate) {
        surface.SetVertices(ring, true, true, nullptr);
        surface.Refine(Hills);
        EXPECT_TRUE(IsSane(surface.Mesh())) << ring.size();
    }
    surface.SetVertices(degenerate[7], true, true, nullptr);
    EXPECT_NEAR(Cover(surface.Mesh()).triangles, 0.5 * radians * radians, 1e-6); // both halves, once
}

TEST(BadVertices, AScribbleOfAThousandLinesEndsInTime)
{
    std::mt19937 random(2);
    std::uniform_real_distribution<double> degrees(0.0, 1.0);
    Ring ring;
    for (int i = 0; i < 1000; ++i)
        ring.emplace_back(degrees(random), degrees(random), 0.0);
    AxShapeSurface surface;
    surface.SetVertices(ring, true, true, nullptr);
    EXPECT_TRUE(IsSane(surface.Mesh()));
    EXPECT_TRUE(surface.Mesh().triangles.empty());
    EXPECT_GE(surface.Mesh().outlineCount, 1000u);
}

TEST(PlaneRing, IsJudgedAsItLiesOnTheGlobe)
{
    const struct
    {
        const char* name;
        Ring ring;
        bool crosses;
    } rows[] = {
        {"across the antimeridian", {{179, 0, 0}, {-179, 0, 0}, {-179, 1, 0}, {179, 1, 0}}, false},
        {"a bow tie across it", {{179, 0, 0}, {-179, 1, 0}, {-179, 0, 0}, {179, 1, 0}}, true},
        {"around the north pole", {{0, 80, 0}, {90, 85, 0}, {180, 80, 0}, {-90, 70, 0}}, false},
        {"around the south pole clockwise", {{0, -80, 0}, {-90, -85, 0}, {180, -80, 0}, {90, -70, 0}}, false},
        {"twice around a pole",
         {{0, 80, 0}, {120, 80, 0}, {240, 80, 0}, {0, 70, 0}, {120, 85, 0}, {240, 70, 0}},
         true},
        {"not finite", {{0, 0, 0}, {1, std::nan(""), 0}, {1, 1, 0}}, true}};
    for (const auto& row : rows) {
        std::vector<QPointF> plane = AxRingInPlane(row.ring);
        ASSERT_EQ(plane.size(), row.ring.size()) << row.name;
        plane.push_back(plane.front());
        EXPECT_EQ(isSelfIntersection(plane), row.crosses) << row.name;
    }
}

TEST(LabelPlaces, LieWithinTheShape)
{
    const auto square = AxLabelPlace({{179, 10, 0}, {-178, 10, 0}, {-178, 12, 0}, {179, 12, 0}});
    ASSERT_TRUE(square);
    EXPECT_NEAR(square->x(), -179.5, 1e-9);
    EXPECT_NEAR(square->y(), 11.0, 1e-9);

    // The middle of this one's box is outside of it.
    const auto hook =
        AxLabelPlace({{0, 0, 0}, {3, 0, 0}, {3, 3, 0}, {2.8, 3, 0}, {2.8, 0.2, 0}, {0, 0.2, 0}});
    ASSERT_TRUE(hook);
    EXPECT_TRUE((hook->x() > 2.8 && hook->x() < 3.0) || (hook->y() > 0.0 && hook->y() < 0.2));

    const auto polar = AxLabelPlace({{0, 80, 0}, {90, 80, 0}, {180, 80, 0}, {-90, 80, 0}});
    ASSERT_TRUE(polar);
    EXPECT_NEAR(polar->y(), 90.0, 1e-6);

    EXPECT_FALSE(AxLabelPlace({}));
    EXPECT_FALSE(AxLabelPlace({{std::nan(""), 0, 0}}));
    EXPECT_TRUE(AxLabelPlace({{0, 0, 0}, {1, 1, 0}, {1, 0, 0}, {0, 1, 0}})); // crosses itself
}

namespace {
// What kinds of object draw with.
struct Primitives : CAxHandleAdapter
{
    using CAxHandleAdapter::AddEdgePrimitiveSet;
    using CAxHandleAdapter::AddFillPrimitiveSet;
};
} // namespace

TEST(ShapePrimitives, AFillHasItsOwnVerticesBelowItsEdge)
{
    const osg::Vec4f edge(1, 0, 0, 1);
    const osg::Vec4f fill(0, 1, 0, 0.5f);
    osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
    const std::vector<osg::Vec3> points{{9, 9, 9}, {0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {2, 1, 0}};
    geometry->setVertexArray(new osg::Vec3Array(5, points.data()));
    Primitives::AddFillPrimitiveSet(geometry, 2, 4, edge, fill, true); // there are not as many
    Primitives::AddEdgePrimitiveSet(geometry, -1, 2, edge, false);
    EXPECT_EQ(geometry->getNumPrimitiveSets(), 0u);
    Primitives::AddFillPrimitiveSet(geometry, 1, 4, edge, fill, true);
    ASSERT_EQ(geometry->getNumPrimitiveSets(), 2u);
    const osg::PrimitiveSet& triangles = *geometry->getPrimitiveSet(0);
    const auto& vertices = static_cast<const osg::Vec3Array&>(*geometry->getVertexArray());
    const auto& colors = static_cast<const osg::Vec4Array&>(*geometry->getColorArray());
    ASSERT_EQ(triangles.getMode(), GLenum(GL_TRIANGLES));
    double area = 0.0;
    for (unsigned i = 0; i + 2 < triangles.getNumIndices(); i += 3) {
        const osg::Vec3 a = vertices[triangles.index(i)];
        area +=
            0.5 *
            double(
                ((vertices[triangles.index(i + 1)] - a) ^ (vertices[triangles.index(i + 2)] - a)).length());
        EXPECT_EQ(colors[triangles.index(i)], fill);
    }
    EXPECT_NEAR(area, 6.0, 1e-5) << "a dart, not its hull";
    EXPECT_EQ(geometry->getPrimitiveSet(1)->getMode(), GLenum(GL_LINE_LOOP));
    EXPECT_EQ(geometry->getPrimitiveSet(1)->getNumIndices(), 4u);
    EXPECT_EQ(colors[1], edge);
    EXPECT_NE(colors[0], edge);
    Primitives::AddFillPrimitiveSet(geometry, 1, 4, edge, osg::Vec4f(), false); // nothing to be seen
    ASSERT_EQ(geometry->getNumPrimitiveSets(), 3u);
    EXPECT_EQ(geometry->getPrimitiveSet(2)->getMode(), GLenum(GL_LINE_STRIP));
}
