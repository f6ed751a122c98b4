// Which fills may be painted in one go, because no part of them lies before another one.
#include "scene/base/AxGlobePoint.h"
#include "scene/shape/AxFillSides.h"
#include "scene/shape/AxShapeSurface.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numeric>

namespace {
constexpr double middleLng = -105.0;
constexpr double middleLat = 37.4;

// As steep as 30 degrees.
void SteepHills(std::vector<osg::Vec3d>& points)
{
    for (osg::Vec3d& point : points)
        point.z() = 2500.0 + 300.0 * std::sin(200.0 * point.x()) * std::cos(300.0 * point.y());
}

AxShapeMesh MeshOf(const std::vector<osg::Vec2d>& kilometres)
{
    std::vector<osg::Vec3d> vertices;
    for (const osg::Vec2d& at : kilometres)
        vertices.emplace_back(middleLng + at.x() / (111.3 * std::cos(middleLat * AxGlobe::pi / 180.0)),
                              middleLat + at.y() / 111.3, 0.0);
    SteepHills(vertices);
    AxShapeSurface surface;
    surface.SetVertices(vertices, true, true, SteepHills);
    surface.Refine(SteepHills);
    return surface.Mesh();
}

AxFillSides SidesOf(const AxShapeMesh& mesh)
{
    std::vector<unsigned> ring(mesh.outlineCount);
    std::iota(ring.begin(), ring.end(), 0u);
    return {mesh.points, ring, mesh.triangles};
}

std::vector<osg::Vec2d> Circle(int turns, bool clockwise)
{
    std::vector<osg::Vec2d> ring;
    for (int i = 0; i < 25; ++i) {
        const double angle = (clockwise ? -2.0 : 2.0) * AxGlobe::pi * turns * i / 25.0;
        ring.emplace_back(2.0 * std::cos(angle), 2.0 * std::sin(angle));
    }
    return ring;
}

// An eye 15 km from the shape, radians against north and the horizon.
osg::Vec3d Eye(double heading, double height)
{
    const osg::Vec3d up = AxGlobe::NormalAt({middleLng, middleLat, 0.0});
    osg::Vec3d east = osg::Vec3d(0.0, 0.0, 1.0) ^ up;
    east.normalize();
    const osg::Vec3d away = (up ^ east) * std::cos(heading) + east * std::sin(heading);
    return AxGlobe::WorldAt(up, 2500.0) + (away * std::cos(height) + up * std::sin(height)) * 15000.0;
}

int TimesMet(const AxShapeMesh& mesh, const osg::Vec3d& eye, const osg::Vec3d& target)
{
    const osg::Vec3d ray = target - eye;
    int count = 0;
    for (std::size_t i = 0; i < mesh.triangles.size(); i += 3) {
        // The ray passes all edges on one side.
        int left = 0;
        for (std::size_t k = 0; k < 3; ++k)
            left += ((mesh.points[mesh.triangles[i + k]] - eye) ^
                     (mesh.points[mesh.triangles[i + (k + 1) % 3]] - eye)) *
                        ray >
                    0.0;
        count += left == 0 || left == 3;
    }
    return count;
}
} // namespace

TEST(FillSides, AFillThatIsSaidNotToCoverItselfIsMetOnceByEachLineOfSight)
{
    const AxShapeMesh mesh = MeshOf(Circle(1, false));
    const AxFillSides sides = SidesOf(mesh);
    int open = 0;
    int covering = 0;
    for (double heading = 0.0; heading < 6.2; heading += 0.7)
        for (const double height : {0.15, 0.3, 0.45, 0.9, 1.2}) {
            const osg::Vec3d eye = Eye(heading, height);
            int most = 0;
            for (std::size_t i = 0; i < mesh.triangles.size(); i += 3 * 7)
                most = std::max(
                    most, TimesMet(mesh, eye,
                                   (mesh.points[mesh.triangles[i]] + mesh.points[mesh.triangles[i + 1]] +
                                    mesh.points[mesh.triangles[i + 2]]) /
                                       3.0));
            const double angle = sides.CoveringItself(eye);
            if (angle > 0.0) {
                ++covering;
            } else {
                ++open;
                EXPECT_EQ(most, 1) << heading << ' ' << height;
            }
            // The whole disc is seen within about this angle.
            EXPECT_LT(angle, 0.06);
        }
    EXPECT_GT(open, 10);
    EXPECT_GT(covering, 10);
}

TEST(FillSides, AreKnownForRingsWithoutInwardCornersOnly)
{
    const osg::Vec3d above = Eye(0.0, 1.57);
    EXPECT_EQ(SidesOf(MeshOf(Circle(1, false))).CoveringItself(above), 0.0);
    EXPECT_EQ(SidesOf(MeshOf(Circle(1, true))).CoveringItself(above), 0.0);
    EXPECT_EQ(SidesOf(MeshOf({{-2, -2}, {2, -2}, {2, 2}, {-2, 2}})).CoveringItself(above), 0.0);
    // Two prongs, one of which may lie behind the other.
    EXPECT_TRUE(std::isinf(SidesOf(MeshOf({{-2, -2}, {2, -2}, {2, 2}, {1, 2}, {0, -1}, {-1, 2}, {-2, 2}}))
                               .CoveringItself(above)));
    // A star's rim turns to one side only, but twice around.
    EXPECT_TRUE(std::isinf(SidesOf(MeshOf(Circle(2, false))).CoveringItself(above)));
    EXPECT_TRUE(std::isinf(AxFillSides().CoveringItself(above)));
}
