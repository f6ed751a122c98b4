#include "annotation/drape/DrapeVolume.h"
#include <gtest/gtest.h>
#include <map>
#include <osg/CoordinateSystemNode>
#include <osgEarth/DrapeableNode>
#include <osgEarth/GeoData>
#include <osgEarthAnnotation/CircleNode>
#include <osgEarthSymbology/Style>

using namespace osgEarth;
using namespace osgEarth::Annotation;

namespace {
osg::Vec3d at(double lon, double lat, double height = 0.0)
{
    osg::Vec3d world;
    osg::EllipsoidModel().convertLatLongHeightToXYZ(osg::DegreesToRadians(lat), osg::DegreesToRadians(lon),
                                                    height, world.x(), world.y(), world.z());
    return world;
}

DrapeShape square(double size)
{
    DrapeShape shape;
    shape.points = {at(0, 0), at(size, 0), at(size, size), at(0, size)};
    shape.triangles = {{0, 1, 2}, {0, 2, 3}};
    return shape;
}

/// Every edge of a closed surface is passed as often one way as the other.
bool isClosed(const osg::Geometry& geometry)
{
    std::map<std::pair<unsigned, unsigned>, int> edges;
    const osg::PrimitiveSet& set = *geometry.getPrimitiveSet(0);
    for (unsigned i = 0; i + 2 < set.getNumIndices(); i += 3)
        for (unsigned k = 0; k < 3; ++k) {
            const unsigned a = set.index(i + k), b = set.index(i + (k + 1) % 3);
            edges[std::minmax(a, b)] += a < b ? 1 : -1;
        }
    for (const auto& edge : edges)
        if (edge.second != 0)
            return false;
    return true;
}

unsigned trianglesOf(const osg::Geometry& geometry)
{
    return geometry.getPrimitiveSet(0)->getNumIndices() / 3;
}

osg::ref_ptr<osg::Geometry> quad(GLenum mode, const osg::Vec4& color)
{
    osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry();
    osg::ref_ptr<osg::Vec3Array> points = new osg::Vec3Array();
    for (const osg::Vec3d& p : square(0.01).points)
        points->push_back(p);
    geometry->setVertexArray(points);
    osg::ref_ptr<osg::Vec4Array> colors = new osg::Vec4Array(1, &color);
    geometry->setColorArray(colors, osg::Array::BIND_OVERALL);
    geometry->addPrimitiveSet(new osg::DrawArrays(mode, 0, 4));
    return geometry;
}

size_t drawablesBelow(osg::Node& node)
{
    struct Counter : public osg::NodeVisitor
    {
        Counter() : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN) {}
        void apply(osg::Drawable&) override { ++count; }
        size_t count = 0;
    } counter;
    node.accept(counter);
    return counter.count;
}

Style drapedStyle(const Color& fill)
{
    Style style;
    style.getOrCreate<PolygonSymbol>()->fill()->color() = fill;
    style.getOrCreate<AltitudeSymbol>()->clamping() = AltitudeSymbol::CLAMP_TO_TERRAIN;
    style.getOrCreate<AltitudeSymbol>()->technique() = AltitudeSymbol::TECHNIQUE_DRAPE;
    return style;
}
} // namespace

TEST(FeatDrapeVolume, IsClosedAndHasNoInnerWalls)
{
    const DrapeVolume volume = volumeOf(square(0.1));
    ASSERT_TRUE(volume.geometry.valid());
    EXPECT_TRUE(isClosed(*volume.geometry));
    EXPECT_EQ(trianglesOf(*volume.geometry), 4u + 8u); // two caps and four walls
}

TEST(FeatDrapeVolume, TurnOfTheTrianglesDoesNotMatter)
{
    DrapeShape shape = square(0.1);
    std::swap(shape.triangles[1][1], shape.triangles[1][2]);
    const DrapeVolume volume = volumeOf(shape);
    EXPECT_TRUE(isClosed(*volume.geometry));
    EXPECT_EQ(trianglesOf(*volume.geometry), 12u);
}

TEST(FeatDrapeVolume, UnsharedPointsInOnePlaceAreOne)
{
    DrapeShape shape = square(0.1);
    shape.points.insert(shape.points.end(), {shape.points[0], shape.points[2]});
    shape.triangles[1] = {4, 5, 3};
    EXPECT_EQ(trianglesOf(*volumeOf(shape).geometry), 12u);
}

TEST(FeatDrapeVolume, WideShapesFollowTheRoundEarth)
{
    DrapeShape wide = square(60.0);
    subdivideForGlobe(wide);
    for (const auto& t : wide.triangles)
        for (int k = 0; k < 3; ++k)
            ASSERT_LE((wide.points[t[k]] - wide.points[t[(k + 1) % 3]]).length(), kLongestDrapeEdge);
    const DrapeVolume volume = volumeOf(square(60.0));
    EXPECT_TRUE(isClosed(*volume.geometry));
    EXPECT_LT(volume.sagitta, 10000.0);
}

TEST(FeatDrapeVolume, LinesAreClosedBoxes)
{
    DrapeShape line = square(0.1);
    line.triangles.clear();
    line.segments = {{0, 1}, {1, 2}, {2, 2}}; // the last has no length
    line.lineWidth = 3.0f;
    const DrapeVolume volume = volumeOf(line);
    ASSERT_TRUE(volume.geometry.valid());
    EXPECT_TRUE(isClosed(*volume.geometry));
    EXPECT_EQ(trianglesOf(*volume.geometry), 24u);
}

TEST(FeatDrapeVolume, NothingComesOfNothing)
{
    EXPECT_FALSE(volumeOf(DrapeShape()).geometry.valid());
    DrapeShape flat = square(0.1);
    flat.triangles = {{0, 0, 1}};
    EXPECT_FALSE(volumeOf(flat).geometry.valid());
}

TEST(FeatDrapeShape, ReadsEveryPrimitiveMode)
{
    const osg::Vec4 red(1, 0, 0, 1);
    const std::pair<GLenum, size_t> areas[] = {
        {GL_TRIANGLES, 1}, {GL_TRIANGLE_STRIP, 2}, {GL_TRIANGLE_FAN, 2}, {GL_QUADS, 2}, {GL_POLYGON, 2}};
    for (const auto& row : areas) {
        const auto shapes = shapesOf(*quad(row.first, red), osg::Matrixd(), 1.0f);
        ASSERT_EQ(shapes.size(), 1u);
        EXPECT_EQ(shapes[0].triangles.size(), row.second) << row.first;
    }
    const std::pair<GLenum, size_t> lines[] = {{GL_LINES, 2}, {GL_LINE_STRIP, 3}, {GL_LINE_LOOP, 4}};
    for (const auto& row : lines)
        EXPECT_EQ(shapesOf(*quad(row.first, red), osg::Matrixd(), 2.0f)[0].segments.size(), row.second)
            << row.first;
}

TEST(FeatDrapeShape, InvisibleColoursAndBadIndicesAreLeftOut)
{
    EXPECT_TRUE(shapesOf(*quad(GL_QUADS, osg::Vec4(0, 1, 1, 0)), osg::Matrixd(), 1.0f).empty());
    osg::ref_ptr<osg::Geometry> broken = quad(GL_QUADS, osg::Vec4(1, 1, 1, 1));
    broken->setPrimitiveSet(0, new osg::DrawArrays(GL_QUADS, 0, 400));
    for (const DrapeShape& shape : shapesOf(*broken, osg::Matrixd(), 1.0f))
        EXPECT_TRUE(shape.triangles.empty());
}

TEST(FeatCircle, InvisibleDiscHasNothingToDraw)
{
    const GeoPoint centre(SpatialReference::get("wgs84"), 116.5, 40.0, 1000.0);
    const Linear radius(osg::WGS_84_RADIUS_EQUATOR, Units::METERS);
    osg::ref_ptr<CircleNode> hidden = new CircleNode(
        nullptr, centre, radius, drapedStyle(Color(Color::Cyan, 0.0f)), Angular(0.0), Angular(360.0), true);
    EXPECT_EQ(drawablesBelow(*hidden), 0u);
    EXPECT_EQ(hidden->getRadius(), radius);
    osg::ref_ptr<CircleNode> seen = new CircleNode(
        nullptr, centre, radius, drapedStyle(Color(Color::Cyan, 0.5f)), Angular(0.0), Angular(360.0), true);
    EXPECT_EQ(drawablesBelow(*seen), 1u);
    seen->setStyle(drapedStyle(Color(Color::Cyan, 0.0f)));
    EXPECT_EQ(drawablesBelow(*seen), 0u);
}

TEST(FeatCircle, OutlineKeepsItsDistance)
{
    const SpatialReference* wgs84 = SpatialReference::get("wgs84");
    for (const double lat : {0.0, 40.0, -85.0}) {
        const GeoPoint centre(wgs84, 20.0, lat, 0.0);
        osg::ref_ptr<CircleNode> circle =
            new CircleNode(nullptr, centre, Distance(5.0, Units::KILOMETERS), drapedStyle(Color::Green));
        osg::Matrixd localToWorld;
        ASSERT_TRUE(centre.createLocalToWorld(localToWorld));
        ASSERT_GT(circle->getGeometry()->size(), 16u);
        for (const osg::Vec3d& p : *circle->getGeometry())
            EXPECT_NEAR((p * localToWorld - centre.vec3d() * 0.0 - localToWorld.getTrans()).length(), 5000.0,
                        40.0);
    }
}

TEST(FeatCircle, ArcsAndPies)
{
    const GeoPoint centre(SpatialReference::get("wgs84"), 20.0, 10.0, 0.0);
    osg::ref_ptr<CircleNode> arc = new CircleNode(nullptr, centre, Distance(5000.0),
                                                  drapedStyle(Color::Green), Angle(0.0), Angle(90.0), false);
    EXPECT_EQ(arc->getGeometry()->getType(), Geometry::TYPE_LINESTRING);
    EXPECT_EQ(drawablesBelow(*arc), 0u); // an open arc has no inside and no outline is asked for
    arc->setPie(true);
    EXPECT_EQ(arc->getGeometry()->getType(), Geometry::TYPE_POLYGON);
    EXPECT_EQ(drawablesBelow(*arc), 1u);
    for (const osg::Vec3d& p : *arc->getGeometry())
        EXPECT_TRUE(p.x() >= -1.0 && p.y() >= -1.0) << "north to east is the first quarter";
}
