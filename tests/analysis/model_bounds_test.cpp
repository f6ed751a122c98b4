// How far models reach: their vertices, their outlines, and which outlines meet.
#include "analysis/ModelComputeBounds.h"
#include "analysis/models/AxModelBound.h"
#include "analysis/models/AxOutlinesMeet.h"
#include "analysis/ModelVertexVisitor.h"

#include <osg/Geometry>
#include <osg/MatrixTransform>
#include <osg/PagedLOD>
#include <osgDB/WriteFile>
#include <osgEarth/GeoData>

#include <gtest/gtest.h>

#include <QPolygonF>
#include <QTemporaryDir>

#include <cmath>
#include <limits>
#include <random>

namespace {
using Ring = std::vector<QPointF>;

osg::ref_ptr<const osgEarth::SpatialReference> Wgs84()
{
    return osgEarth::SpatialReference::get("wgs84");
}

osg::Matrixd PlaceAt(double longitude, double latitude, double altitude)
{
    osg::Matrixd toWorld;
    osgEarth::GeoPoint(Wgs84(), longitude, latitude, altitude).createLocalToWorld(toWorld);
    return toWorld;
}

osg::ref_ptr<osg::Geometry> Mesh(const std::vector<osg::Vec3>& points, unsigned used)
{
    osg::ref_ptr<osg::Geometry> mesh = new osg::Geometry;
    mesh->setVertexArray(new osg::Vec3Array(static_cast<unsigned>(points.size()), points.data()));
    if (used > 0)
        mesh->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLES, 0, static_cast<int>(used)));
    return mesh;
}

std::vector<osg::Vec3> Triangle(float size)
{
    return {{0.0f, 0.0f, 0.0f}, {size, 0.0f, 0.0f}, {0.0f, size, 0.0f}};
}
} // namespace

// Every vertex lies in the outline, every corner of which is a vertex, and it is convex: that makes it the
// hull.
TEST(ModelBounds, OutlineIsTheHullOfTheVerticesAllOverTheGlobe)
{
    std::mt19937 random(16);
    for (const auto& [longitude, latitude, radius, deep] : {std::tuple{10.0, 45.0, 300.0, 80.0},
                                                            {179.999, -17.0, 2000.0, 500.0},
                                                            {30.0, 84.0, 8000.0, 900.0},
                                                            {-70.0, 0.0, 60000.0, 4000.0},
                                                            {116.0, 60.0, 900000.0, 1000.0},
                                                            {5.0, 50.0, 20.0, 0.0}}) {
        std::uniform_real_distribution<double> aside(-radius, radius), up(0.0, deep);
        const osg::Matrixd toWorld = PlaceAt(longitude, latitude, 100.0);
        std::vector<osg::Vec3d> vertices{{std::nan(""), 0.0, 0.0}, {0.0, 0.0, 1.0}};
        for (int i = 0; i < 3000; ++i)
            vertices.push_back(osg::Vec3d(aside(random), aside(random), up(random)) * toWorld);
        ModelComputeBounds bounds(Wgs84());
        ASSERT_TRUE(bounds.Compute(vertices)) << longitude;
        const Ring& hull = bounds.GetHull();
        std::size_t corners = 0;
        double lowest = 1e9, highest = -1e9;
        for (std::size_t v = 2; v < vertices.size(); ++v) {
            osg::Vec3d place;
            Wgs84()->transformFromWorld(vertices[v], place);
            place.x() += 360.0 * std::round((hull[0].x() - place.x()) / 360.0);
            lowest = std::min(lowest, place.z());
            highest = std::max(highest, place.z());
            for (std::size_t i = 0; i < hull.size(); ++i) {
                const QPointF along = hull[(i + 1) % hull.size()] - hull[i];
                const QPointF aside2 = QPointF(place.x(), place.y()) - hull[i];
                EXPECT_GT(along.x() * aside2.y() - along.y() * aside2.x(),
                          -1e-9 * std::hypot(along.x(), along.y()))
                    << longitude << ": a vertex is outside";
                corners += std::hypot(aside2.x(), aside2.y()) < 1e-9 ? 1u : 0u;
            }
        }
        EXPECT_EQ(corners, hull.size()) << longitude;
        EXPECT_NEAR(bounds.GetLowest(), lowest, 1e-6 * radius) << longitude;
        EXPECT_NEAR(bounds.GetHighest(), highest, 1e-6 * radius) << longitude;
        EXPECT_TRUE(bounds.GetBox().contains(hull[0])) << longitude;
    }
}

TEST(ModelBounds, FlatAndHopelessModels)
{
    const osg::Matrixd toWorld = PlaceAt(10.0, 45.0, 0.0);
    const osg::Vec3d here = osg::Vec3d() * toWorld, east = osg::Vec3d(40.0, 0.0, 0.0) * toWorld;
    const double degree = 111132.0;
    for (const auto& [vertices, margin, height] : {std::tuple{std::vector<osg::Vec3d>{here}, 0.0, 1.0},
                                                   {{here, here, east}, 0.0, 1.0},
                                                   {{here}, 3.0, 6.0}}) {
        ModelComputeBounds bounds(Wgs84());
        ASSERT_TRUE(bounds.Compute(vertices, margin));
        EXPECT_NEAR(bounds.GetBox().height() * degree, height, 0.02);
    }
    for (const auto& vertices :
         {std::vector<osg::Vec3d>{}, {osg::Vec3d()}, {osg::Vec3d(0.0, 0.0, 6356800.0)}})
        EXPECT_FALSE(ModelComputeBounds(Wgs84()).Compute(vertices)) << vertices.size();
    EXPECT_FALSE(ModelComputeBounds(nullptr).Compute({here}));
}

TEST(ModelBounds, AreTheSameWhenVerticesAreDroppedAsTheyCome)
{
    const osg::ref_ptr<const osgEarth::SpatialReference> wgs84 = osgEarth::SpatialReference::get("wgs84");
    osg::Matrixd toWorld;
    osgEarth::GeoPoint(wgs84, 25.0, 62.0, 300.0).createLocalToWorld(toWorld);
    std::vector<osg::Vec3d> all;
    std::vector<osg::Vec3d> left;
    ModelComputeBounds ofAll(wgs84);
    ModelComputeBounds ofLeft(wgs84);
    for (int part = 0; part < 5; ++part) {
        for (int i = 0; i < 4000; ++i) {
            const double angle = 0.7 * i;
            const double radius = 0.3 * i;
            all.push_back(osg::Vec3d(900.0 * part + radius * std::cos(angle), radius * std::sin(angle),
                                     50.0 * std::sin(0.01 * i) - part) *
                          toWorld);
            left.push_back(all.back());
        }
        ofLeft.Reduce(left);
    }
    EXPECT_LT(left.size(), all.size() / 4);
    ASSERT_TRUE(ofAll.Compute(all) && ofLeft.Compute(left));
    EXPECT_EQ(ofLeft.GetHull().size(), ofAll.GetHull().size());
    const QRectF box = ofAll.GetBox();
    const QRectF same = ofLeft.GetBox();
    EXPECT_NEAR(same.left(), box.left(), 1e-9);
    EXPECT_NEAR(same.right(), box.right(), 1e-9);
    EXPECT_NEAR(same.top(), box.top(), 1e-9);
    EXPECT_NEAR(same.bottom(), box.bottom(), 1e-9);
    EXPECT_NEAR(ofLeft.GetLowest(), ofAll.GetLowest(), 0.01);
    EXPECT_NEAR(ofLeft.GetHighest(), ofAll.GetHighest(), 0.01);
}

TEST(ModelVertices, CountOnEachWayAndAsTheyAreDrawn)
{
    const float none = std::numeric_limits<float>::quiet_NaN();
    const osg::ref_ptr<osg::Geometry> mesh =
        Mesh({{0.0f, 0.0f, 0.0f}, {1.0f, 0.0f, 0.0f}, {none, 0.0f, 0.0f}, {500.0f, 0.0f, 0.0f}}, 3);
    const osg::ref_ptr<osg::Group> model = new osg::Group;
    for (const double shift : {10.0, 20.0}) {
        const osg::ref_ptr<osg::MatrixTransform> instance =
            new osg::MatrixTransform(osg::Matrixd::translate(shift, 0.0, 0.0));
        instance->addChild(mesh);
        instance->setNodeMask(0u);
        model->addChild(instance);
    }
    const osg::ref_ptr<osg::MatrixTransform> panel = new osg::MatrixTransform;
    panel->setReferenceFrame(osg::Transform::ABSOLUTE_RF);
    panel->addChild(mesh);
    model->addChild(panel);
    ModelVertexVisitor visitor(osg::Matrixd::translate(0.0, 7.0, 0.0));
    model->accept(visitor);
    const std::vector<osg::Vec3d> wanted{{10, 7, 0}, {11, 7, 0}, {20, 7, 0}, {21, 7, 0}};
    EXPECT_EQ(visitor.GetVertices(), wanted);
    EXPECT_EQ(visitor.GetDropped(), 2u);
}

TEST(ModelVertices, OfPagedPartsAreReadFromTheirFilesLevelByLevel)
{
    QTemporaryDir folder;
    const auto path = [&](const char* name) { return folder.filePath(QLatin1String(name)).toStdString(); };
    const auto paged = [&](float size, const char* finer) {
        osg::ref_ptr<osg::PagedLOD> levels = new osg::PagedLOD;
        levels->setDatabasePath(folder.path().toStdString() + '/');
        levels->addChild(Mesh(Triangle(size), 3), 100.0f, 1e9f);
        levels->setRange(1, 0.0f, 100.0f);
        levels->setFileName(1, finer);
        return levels;
    };
    ASSERT_TRUE(osgDB::writeNodeFile(*Mesh(Triangle(4.0f), 3), path("finest.osgb")));
    ASSERT_TRUE(osgDB::writeNodeFile(*paged(2.0f, "finest.osgb"), path("finer.osgb")));
    const osg::ref_ptr<osg::PagedLOD> model = paged(1.0f, "finer.osgb");
    const osg::ref_ptr<osg::PagedLOD> broken = paged(1.0f, "missing.osgb");
    const osg::ref_ptr<osg::PagedLOD> loaded = paged(1.0f, "missing.osgb");
    loaded->addChild(Mesh(Triangle(8.0f), 3));
    for (const auto& [node, levels, files, size, unread] : {std::tuple{model, 0, 9, 1.0, 0},
                                                            {model, 1, 9, 2.0, 0},
                                                            {model, ModelVertexVisitor::allLevels, 9, 4.0, 0},
                                                            {model, ModelVertexVisitor::allLevels, 1, 2.0, 0},
                                                            {broken, 1, 9, 1.0, 1},
                                                            {loaded, 0, 9, 8.0, 0}}) {
        // What a pager has loaded is not in a snapshot.
        const bool isSnapshot = node != loaded;
        const osg::ref_ptr<osg::Node> visited =
            isSnapshot ? AxModelSnapshot(*node) : osg::ref_ptr<osg::Node>(node);
        ModelVertexVisitor visitor;
        visitor.SetLevelsToRead(levels, files);
        visited->accept(visitor);
        ASSERT_EQ(visitor.GetVertices().size(), 3u) << levels << ' ' << files;
        EXPECT_EQ(visitor.GetVertices()[1].x(), size) << levels << ' ' << files;
        EXPECT_EQ(visitor.GetUnread(), unread) << levels << ' ' << files;
    }
    EXPECT_EQ(AxModelSnapshot(*loaded)->asGroup()->getNumChildren(), 1u);
    EXPECT_EQ(loaded->getNumChildren(), 2u);
}

TEST(Outlines, MeetInEveryTurnOfTheGlobe)
{
    const Ring square{{10, 10}, {20, 10}, {20, 20}, {10, 20}};
    const Ring overDate{{179, 0}, {-179, 0}, {-179, 2}, {179, 2}};
    const double none = std::nan("");
    for (const auto& [name, a, b, meet] : std::vector<std::tuple<const char*, Ring, Ring, bool>>{
             {"overlap", square, {{15, 15}, {25, 15}, {25, 25}}, true},
             {"apart", square, {{21, 15}, {25, 15}, {25, 25}}, false},
             {"boxes alone overlap", {{0, 0}, {10, 0}, {0, 10}}, {{9, 9}, {10, 9}, {10, 10}}, false},
             {"an edge in common", square, {{20, 12}, {30, 12}, {30, 18}, {20, 18}}, true},
             {"one in the other", square, {{14, 14}, {15, 14}, {15, 15}}, true},
             {"a turn further", square, {{375, 15}, {385, 15}, {385, 25}}, true},
             {"across the antimeridian", overDate, {{-179.5, 1}, {-178, 1}, {-178, 3}}, true},
             {"on its other side", {{179.5, 1}, {178, 1}, {178, 3}}, overDate, true},
             {"across it but not so far", overDate, {{-178, 1}, {-170, 1}, {-170, 3}}, false},
             {"not the long way around", overDate, {{0, 1}, {1, 1}, {1, 2}}, false},
             {"a line through", square, {{0, 15}, {30, 15}}, true},
             {"a point beside", square, {{9, 15}}, false},
             {"the loop of a bow tie", {{0, 0}, {10, 10}, {10, 0}, {0, 10}}, {{1, 5}}, true},
             {"beside its knot", {{0, 0}, {10, 10}, {10, 0}, {0, 10}}, {{5, 1}}, false},
             {"nothing", square, {}, false},
             {"no number", square, {{none, 15}, {25, 15}, {25, 25}}, false}}) {
        EXPECT_EQ(AxOutlinesMeet(a, b), meet) << name;
        EXPECT_EQ(AxOutlinesMeet(b, a), meet) << name << ", the other way around";
    }
}
