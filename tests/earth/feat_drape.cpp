#include "drape/DrapeBlock.h"
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
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
bool isClosed(const std::vector<unsigned>& indices)
{
    std::map<std::pair<unsigned, unsigned>, int> edges;
    for (size_t i = 0; i + 2 < indices.size(); i += 3)
        for (size_t k = 0; k < 3; ++k) {
            const unsigned a = indices[i + k], b = indices[i + (k + 1) % 3];
            edges[std::minmax(a, b)] += a < b ? 1 : -1;
        }
    for (const auto& edge : edges)
        if (edge.second != 0)
            return false;
    return true;
}

bool isClosed(const osg::Geometry& geometry)
{
    const osg::PrimitiveSet& set = *geometry.getPrimitiveSet(0);
    std::vector<unsigned> indices;
    for (unsigned i = 0; i < set.getNumIndices(); ++i)
        indices.push_back(set.index(i));
    return isClosed(indices);
}

/// A disc with a round hole, as triangles or as its two rims.
DrapeShape holedDisc(bool asLines)
{
    DrapeShape shape;
    const auto ring = [&shape](double radius) {
        for (int i = 0; i < 72; ++i) {
            const double angle = osg::DegreesToRadians(5.0 * i);
            shape.points.push_back(at(radius * std::cos(angle), radius * std::sin(angle)));
        }
    };
    ring(0.1);
    ring(0.04);
    for (unsigned i = 0; i < 72; ++i) {
        const unsigned next = (i + 1) % 72;
        if (asLines) {
            shape.segments.push_back({i, next});
            shape.segments.push_back({72 + i, 72 + next});
        } else {
            shape.triangles.push_back({i, next, 72 + i});
            shape.triangles.push_back({next, 72 + next, 72 + i});
        }
    }
    return shape;
}

/// How often the upper faces of a level lie over a place, downward ones taken off.
int coverOf(const DrapeBlock& block, const DrapeBlock::Level& level, const osg::Vec3d& place)
{
    const osg::Vec3d up = ellipsoidUp(place);
    int cover = 0;
    for (size_t i = 0; i < level.caps; i += 3) {
        osg::Vec3d corners[3];
        for (size_t k = 0; k < 3; ++k)
            corners[k] = block.origin + osg::Vec3d(block.positions[level.indices[i + k]]) - place;
        int left = 0, right = 0;
        for (size_t k = 0; k < 3; ++k)
            ((corners[k] ^ corners[(k + 1) % 3]) * up > 0.0 ? left : right) += 1;
        cover += left == 3 ? 1 : right == 3 ? -1 : 0;
    }
    return cover;
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
    DrapeShape turned = square(0.1);
    std::swap(turned.triangles[1][1], turned.triangles[1][2]);
    DrapeShape unshared = square(0.1);
    unshared.points.insert(unshared.points.end(), {unshared.points[0], unshared.points[2]});
    unshared.triangles[1] = {4, 5, 3};
    DrapeShape line = square(0.1);
    line.triangles.clear();
    line.segments = {{0, 1}, {1, 2}, {2, 2}}; // the last has no length
    line.lineWidth = 3.0f;
    const struct
    {
        const char* name;
        DrapeShape shape;
        unsigned triangles;
    } rows[] = {{"two caps and four walls", square(0.1), 12},
                {"whatever way its triangles turn", turned, 12},
                {"points in one place", unshared, 12},
                {"boxes around lines", line, 24}};
    for (const auto& row : rows) {
        const DrapeVolume volume = volumeOf(row.shape);
        ASSERT_TRUE(volume.geometry.valid()) << row.name;
        EXPECT_TRUE(isClosed(*volume.geometry)) << row.name;
        EXPECT_EQ(trianglesOf(*volume.geometry), row.triangles) << row.name;
    }
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

TEST(FeatDrapeBlock, EveryLevelIsClosedAndCoarserThanTheLast)
{
    DrapeShape corner; // a sharp turn, whose sides have no common end
    corner.points = {at(0, 0), at(0.1, 0), at(0, 0.005)};
    corner.segments = {{0, 1}, {1, 2}};
    corner.lineWidth = 2.0f;
    for (const DrapeShape& shape : {holedDisc(false), holedDisc(true), square(0.1), corner}) {
        const DrapeBlock block = blockOf(shape);
        ASSERT_FALSE(block.levels.empty());
        double error = -1.0;
        size_t size = std::numeric_limits<size_t>::max();
        for (const DrapeBlock::Level& level : block.levels) {
            EXPECT_TRUE(isClosed(level.indices));
            EXPECT_GT(level.error, error);
            EXPECT_LT(level.indices.size(), size);
            EXPECT_GT(level.upper, level.caps);
            error = level.error;
            size = level.indices.size();
        }
    }
    EXPECT_GT(blockOf(holedDisc(false)).levels.size(), 2u);
    EXPECT_GT(blockOf(holedDisc(true)).levels.size(), 2u);
    EXPECT_TRUE(blockOf(DrapeShape()).levels.empty());
}

TEST(FeatDrapeBlock, EveryLevelCoversTheAreaOnceAndItsHoleNever)
{
    const DrapeBlock block = blockOf(holedDisc(false));
    for (const DrapeBlock::Level& level : block.levels) {
        SCOPED_TRACE(level.error);
        for (const double angle : {0.3, 1.7, 3.3, 5.1}) {
            EXPECT_EQ(coverOf(block, level, at(0.07 * std::cos(angle), 0.07 * std::sin(angle))), 1);
            EXPECT_EQ(coverOf(block, level, at(0.02 * std::cos(angle), 0.02 * std::sin(angle))), 0);
            EXPECT_EQ(coverOf(block, level, at(0.12 * std::cos(angle), 0.12 * std::sin(angle))), 0);
        }
    }
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
