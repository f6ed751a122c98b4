#include "terrain/TileMesh.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <random>
#include <set>
#include <tuple>

using namespace osgEarth;

namespace {
constexpr int kRasterSize = 129;
const TileBounds kTile{-105.0, 37.0, -104.9, 37.1};

HeightRaster flat(float height)
{
    HeightRaster raster(kRasterSize, 1);
    for (int row = -1; row <= kRasterSize; ++row)
        for (int column = -1; column <= kRasterSize; ++column)
            raster.at(column, row) = height;
    return raster;
}

HeightRaster rough(unsigned seed)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> bump(-40.0f, 40.0f);
    HeightRaster raster = flat(2000.0f);
    for (int row = -1; row <= kRasterSize; ++row)
        for (int column = -1; column <= kRasterSize; ++column)
            raster.at(column, row) += 300.0f * std::sin(static_cast<float>(column) / 17.0f) + bump(random);
    return raster;
}

using Edge = std::pair<unsigned, unsigned>;

/** How often each directed edge of the surface occurs. */
std::map<Edge, int> directedEdges(const TileMesh& mesh)
{
    std::map<Edge, int> edges;
    for (std::size_t i = 0; i < mesh.surfaceIndexCount; i += 3)
        for (std::size_t k = 0; k < 3; ++k)
            ++edges[{mesh.indices[i + k], mesh.indices[i + (k + 1) % 3]}];
    return edges;
}

bool onBorder(const osg::Vec2f& a, const osg::Vec2f& b)
{
    for (int axis = 0; axis < 2; ++axis)
        for (const float side : {0.0f, 1.0f})
            if (a[axis] == side && b[axis] == side)
                return true;
    return false;
}
} // namespace

TEST(TileMesh, LevelGroundNeedsFewTrianglesAndRoughGroundMany)
{
    // What the program allows a tile of this size: 1.5 of 256 texels.
    const double tolerance = 1.5 * kTile.height() * 111320.0 / 256.0;
    const TileMesh level = buildTileMesh(kTile, flat(100.0f), tolerance, 50.0);
    EXPECT_EQ(level.surfaceIndexCount, 6u);
    EXPECT_DOUBLE_EQ(level.hiddenDetail, 0.0);

    const TileMesh hills = buildTileMesh(kTile, rough(1), 5.0, 50.0);
    EXPECT_GT(hills.surfaceIndexCount, 3000u);
    EXPECT_GT(hills.hiddenDetail, 10.0);
}

TEST(TileMesh, LevelGroundStaysRoundToATwelfthOfTheTolerance)
{
    const TileBounds wide{0.0, 40.0, 5.625, 45.625};
    const double tolerance = 3000.0;
    const TileMesh mesh = buildTileMesh(wide, flat(0.0f), tolerance, 50.0);
    EXPECT_LT(mesh.surfaceIndexCount, 600u);
    double deepest = 0.0;
    for (std::size_t i = 0; i < mesh.surfaceIndexCount; i += 3)
        for (std::size_t k = 0; k < 3; ++k) {
            const osg::Vec3d edge(mesh.positions[mesh.indices[i + (k + 1) % 3]] -
                                  mesh.positions[mesh.indices[i + k]]);
            deepest = std::max(deepest, edge.length2() / (8.0 * 6378137.0));
        }
    EXPECT_LT(deepest, 1.05 * tolerance / 12.0);
}

TEST(TileMesh, EveryInnerEdgeIsSharedByExactlyTwoTriangles)
{
    for (const double tolerance : {0.5, 20.0, 120.0}) {
        const TileMesh mesh = buildTileMesh(kTile, rough(7), tolerance, 50.0);
        const std::map<Edge, int> edges = directedEdges(mesh);
        for (const auto& [edge, count] : edges) {
            ASSERT_EQ(count, 1) << "tolerance " << tolerance;
            const bool paired = edges.count({edge.second, edge.first}) == 1;
            ASSERT_NE(paired, onBorder(mesh.unit[edge.first], mesh.unit[edge.second]))
                << "tolerance " << tolerance;
        }
    }
}

TEST(TileMesh, NoGridPointLiesFurtherOffThanTheTolerance)
{
    const HeightRaster raster = rough(3);
    const double tolerance = 25.0;
    const TileMesh mesh = buildTileMesh(kTile, raster, tolerance, 50.0);
    EXPECT_LE(mesh.simplificationError, tolerance);

    const int cells = (kRasterSize - 1) / 2;
    double worst = 0.0;
    for (std::size_t i = 0; i < mesh.surfaceIndexCount; i += 3) {
        const osg::Vec2d a = osg::Vec2d(mesh.unit[mesh.indices[i]]) * cells;
        const osg::Vec2d b = osg::Vec2d(mesh.unit[mesh.indices[i + 1]]) * cells;
        const osg::Vec2d c = osg::Vec2d(mesh.unit[mesh.indices[i + 2]]) * cells;
        const double area = (b.x() - a.x()) * (c.y() - a.y()) - (c.x() - a.x()) * (b.y() - a.y());
        ASSERT_GT(area, 0.0) << "triangles run anticlockwise";
        const auto height = [&](const osg::Vec2d& p) {
            return raster.at(2 * static_cast<int>(p.x()), 2 * static_cast<int>(p.y()));
        };
        for (int y = static_cast<int>(std::min({a.y(), b.y(), c.y()})); y <= std::max({a.y(), b.y(), c.y()});
             ++y)
            for (int x = static_cast<int>(std::min({a.x(), b.x(), c.x()}));
                 x <= std::max({a.x(), b.x(), c.x()}); ++x) {
                const double u = ((x - a.x()) * (c.y() - a.y()) - (c.x() - a.x()) * (y - a.y())) / area;
                const double v = ((b.x() - a.x()) * (y - a.y()) - (x - a.x()) * (b.y() - a.y())) / area;
                if (u < 0.0 || v < 0.0 || u + v > 1.0)
                    continue;
                const double drawn = height(a) + u * (height(b) - height(a)) + v * (height(c) - height(a));
                worst = std::max(worst, std::abs(drawn - raster.at(2 * x, 2 * y)));
            }
    }
    // The bintree bounds each halving; a point may gather the errors of
    // several halvings above it, each at most the tolerance.
    EXPECT_LE(worst, 2.0 * tolerance);
    EXPECT_GT(worst, 0.0);
}

TEST(TileMesh, PositionsAreTheGridsToTheMillimetre)
{
    const HeightRaster raster = rough(5);
    const TileMesh mesh = buildTileMesh(kTile, raster, 10.0, 50.0);
    for (std::size_t i = 0; i < mesh.surfaceIndexCount; ++i) {
        const std::uint16_t index = mesh.indices[i];
        const osg::Vec2f unit = mesh.unit[index];
        const double height = raster.at(static_cast<int>(std::lround(unit.x() * 128.0f)),
                                        static_cast<int>(std::lround(unit.y() * 128.0f)));
        const osg::Vec3d expected = geodeticToWorld(kTile.west + kTile.width() * unit.x(),
                                                    kTile.south + kTile.height() * unit.y(), height);
        ASSERT_LT((mesh.origin + osg::Vec3d(mesh.positions[index]) - expected).length(), 2e-3);
    }
}

TEST(TileMesh, SkirtHangsFromTheWholeBorderAndFacesOutwards)
{
    const double depth = 75.0;
    const TileMesh mesh = buildTileMesh(kTile, rough(11), 30.0, depth);
    ASSERT_GT(mesh.indices.size(), mesh.surfaceIndexCount);
    std::set<Edge> hung;
    for (std::size_t i = mesh.surfaceIndexCount; i < mesh.indices.size(); i += 3) {
        const osg::Vec3d a(mesh.positions[mesh.indices[i]]);
        const osg::Vec3d b(mesh.positions[mesh.indices[i + 1]]);
        const osg::Vec3d c(mesh.positions[mesh.indices[i + 2]]);
        const osg::Vec3d outwards = (a + b + c) / 3.0;
        const osg::Vec3d normal = (b - a) ^ (c - a);
        osg::Vec3d up = mesh.origin;
        up.normalize();
        EXPECT_GT(normal * (outwards - up * (outwards * up)), 0.0);
        hung.insert({mesh.indices[i], mesh.indices[i + 2]});
    }
    for (const auto& [edge, count] : directedEdges(mesh)) {
        if (onBorder(mesh.unit[edge.first], mesh.unit[edge.second])) {
            EXPECT_TRUE(hung.count(edge) == 1 || hung.count({edge.second, edge.first}) == 1);
        }
    }
}

TEST(TileMesh, PolarAndWorldWideTilesAreFiniteAndFreeOfEmptyTriangles)
{
    for (const TileBounds& bounds :
         {TileBounds{-180, -90, 0, 90}, TileBounds{0, 67.5, 22.5, 90}, TileBounds{170, -90, 180, -80}}) {
        const TileMesh mesh = buildTileMesh(bounds, flat(0.0f), 1000.0, 1000.0);
        ASSERT_GT(mesh.surfaceIndexCount, 0u);
        for (const osg::Vec3f& position : mesh.positions)
            ASSERT_TRUE(position.valid());
        for (const osg::Vec3f& normal : mesh.normals)
            ASSERT_NEAR(normal.length(), 1.0f, 1e-4f);
        for (std::size_t i = 0; i < mesh.surfaceIndexCount; i += 3) {
            const osg::Vec3d a(mesh.positions[mesh.indices[i]]);
            const osg::Vec3d b(mesh.positions[mesh.indices[i + 1]]);
            const osg::Vec3d c(mesh.positions[mesh.indices[i + 2]]);
            ASSERT_GT(((b - a) ^ (c - a)).length(), 0.0);
        }
    }
}
