// Where the coordinates of models are on the globe, and what files tell of it.
#include "interaction/models/AxModelGeometry.h"
#include "interaction/models/AxModelPlacement.h"
#include "interaction/models/AxModelSource.h"
#include "MadeUpExport.h"
#include "scene/base/AxGlobePoint.h"

#include <GeographicLib/LocalCartesian.hpp>
#include <GeographicLib/UTMUPS.hpp>
#include <gtest/gtest.h>
#include <osg/Geode>
#include <osg/Geometry>
#include <osg/LOD>
#include <osg/MatrixTransform>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace {
osg::Vec3d Utm13(double easting, double northing, double altitude)
{
    double latitude = 0.0;
    double longitude = 0.0;
    GeographicLib::UTMUPS::Reverse(13, true, easting, northing, latitude, longitude);
    return AxGlobe::WorldOf({longitude, latitude, altitude});
}
} // namespace

TEST(ModelPlacement, PutsPointsWhereTheirSystemHasThem)
{
    QString why;
    const auto utm = AxModelPlacement::Of("EPSG:32613", {620000.0, 4100000.0, 300.0}, &why);
    ASSERT_TRUE(utm) << why.toStdString();
    const osg::Vec3d middle(1200.0, -900.0, 40.0);
    const osg::Matrixd at = *utm->At(middle);
    for (const osg::Vec3d& off :
         {osg::Vec3d(), osg::Vec3d(60, 0, 0), osg::Vec3d(0, -60, 0), osg::Vec3d(50, 50, 30)}) {
        const osg::Vec3d point = middle + off;
        const osg::Vec3d world = Utm13(620000.0 + point.x(), 4100000.0 + point.y(), 300.0 + point.z());
        EXPECT_LT((point * at - world).length(), 0.002) << off.x() << ' ' << off.y();
    }
    // A tile a kilometre off by the same matrix would be 8 cm too high, as the header says.
    const osg::Vec3d far = middle + osg::Vec3d(1000.0, 0.0, 0.0);
    EXPECT_NEAR((far * at - Utm13(620000.0 + far.x(), 4100000.0 + far.y(), 300.0 + far.z())).length(), 0.08,
                0.01);

    const struct
    {
        const char* system;
        osg::Vec3d origin;
        double metresUp; // of 100 units
        double metresAside;
    } units[] = {
        {"EPSG:2233", {3000000.0, 1700000.0, 1000.0}, 30.48, 30.48}, // US survey feet
        {"EPSG:2227+5703", {6000000.0, 2100000.0, 1000.0}, 100.0, 30.48},
        {"EPSG:32613+6360", {500000.0, 4100000.0, 1000.0}, 30.48, 100.0},
        {"EPSG:32613+5703", {500000.0, 4100000.0, 1000.0}, 100.0, 100.0},
        // Where its metres are as short as feet.
        {"EPSG:3857", {0.0, 11800000.0, 1000.0}, 100.0, 30.9},
    };
    for (const auto& row : units) {
        const auto placed = AxModelPlacement::Of(row.system, row.origin, &why);
        ASSERT_TRUE(placed) << row.system << why.toStdString();
        const osg::Matrixd matrix = *placed->At({});
        const osg::Vec3d zero = osg::Vec3d() * matrix;
        EXPECT_NEAR((osg::Vec3d(0, 0, 100) * matrix - zero).length(), row.metresUp, 0.05) << row.system;
        EXPECT_NEAR((osg::Vec3d(100, 0, 0) * matrix - zero).length(), row.metresAside, 0.4) << row.system;
        const auto low = AxModelPlacement::Of(row.system, {row.origin.x(), row.origin.y(), 0.0});
        EXPECT_NEAR((zero - osg::Vec3d() * *low->At({})).length(), 10.0 * row.metresUp, 0.05) << row.system;
    }

    const auto enu = AxModelPlacement::Of(" ENU:37.25, -105.5 ", {10.0, 20.0, 30.0});
    ASSERT_TRUE(enu);
    const GeographicLib::LocalCartesian plane(37.25, -105.5, 0.0);
    double latitude = 0.0;
    double longitude = 0.0;
    double height = 0.0;
    plane.Reverse(2010.0, -980.0, 80.0, latitude, longitude, height);
    EXPECT_LT(
        (osg::Vec3d(2000.0, -1000.0, 50.0) * *enu->At({}) - AxGlobe::WorldOf({longitude, latitude, height}))
            .length(),
        1e-6);

    EXPECT_FALSE(utm->IsAboveSea() || enu->IsAboveSea());
    EXPECT_TRUE(AxModelPlacement::Of("EPSG:32613+5773", {5e5, 4e6, 0})->IsAboveSea());
    for (const char* wrong : {"", "DMS", "EPSG:5773", "ENU:1", "ENU:95,0", "EPSG:999999"})
        EXPECT_FALSE(AxModelPlacement::Of(wrong, {}, &why)) << wrong;
}

TEST(ModelSource, IsReadFromWhatLiesBesideTheModel)
{
    const QTemporaryDir folder;
    const auto write = [&folder](const char* name, const char* text) {
        QFile file(folder.filePath(name));
        QDir().mkpath(QFileInfo(file).path());
        file.open(QIODevice::WriteOnly);
        file.write(text);
        return file.fileName();
    };
    const QString metadata = write(
        "city/metadata.xml", "<?xml version=\"1.0\"?><!-- a --><ModelMetadata version=\"1\"><Texture><A/>"
                             "</Texture><SRS> ENU:1.5,2 </SRS><SRSOrigin>1, 2,-3.5</SRSOrigin>"
                             "</ModelMetadata>");
    const QString tile = write("city/Data/T_1/T_1.osgb", "");
    write("city/Data/T_1/T_1_L2.osgb", "");
    write("city/Data/notes/readme.txt", "");
    for (const QString& path : {metadata, folder.filePath("city"), folder.filePath("city/Data")}) {
        const AxModelSource source = AxExamineModel(path);
        EXPECT_EQ(source.fault, "");
        EXPECT_TRUE(source.isTree);
        EXPECT_EQ(source.path, metadata);
        EXPECT_EQ(source.name, "city");
        EXPECT_EQ(source.coordinateSystem, "ENU:1.5,2");
        EXPECT_EQ(source.origin, osg::Vec3d(1.0, 2.0, -3.5));
        EXPECT_EQ(AxModelRoots(source), QStringList{tile});
    }
    EXPECT_EQ(AxExamineModel(tile).coordinateSystem, "ENU:1.5,2") << "a tile on its own knows where it is";
    EXPECT_FALSE(AxExamineModel(tile).isTree);
    for (const char* catalogue : {"metadata.xml", "city/Data/T_1/metadata.xml"})
        write(catalogue, "<?xml version=\"1.0\"?><MD_Metadata><SRS>EPSG:4326</SRS></MD_Metadata>");
    EXPECT_EQ(AxExamineModel(tile).coordinateSystem, "ENU:1.5,2") << "what a catalogue says is no system";

    const QString dam = write("dam.obj", "v 0 0 0\n");
    EXPECT_EQ(AxExamineModel(dam).coordinateSystem + AxExamineModel(dam).fault, "");
    write("dam.prj", "EPSG:32613");
    write("dam_offset.xyz", "500000 4100000 12.5\n");
    EXPECT_EQ(AxExamineModel(dam).coordinateSystem, "EPSG:32613");
    EXPECT_EQ(AxExamineModel(dam).origin, osg::Vec3d(500000.0, 4100000.0, 12.5));
    write("dam_offset.xyz", "500000 4100000");
    EXPECT_TRUE(AxExamineModel(dam).fault.contains("dam_offset.xyz"));
}

TEST(ModelGeometry, ManyNodesArePutTogetherAndFarOnesMoved)
{
    osg::ref_ptr<osg::Group> many = new osg::Group;
    constexpr int count = 20000;
    for (int i = 0; i < count; ++i) {
        osg::ref_ptr<osg::Geometry> triangle = new osg::Geometry;
        const osg::Vec3 corners[] = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
        triangle->setVertexArray(new osg::Vec3Array(3, corners));
        triangle->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLES, 0, 3));
        osg::ref_ptr<osg::Geode> geode = new osg::Geode;
        geode->addDrawable(triangle);
        osg::ref_ptr<osg::MatrixTransform> place =
            new osg::MatrixTransform(osg::Matrixd::translate(500000.0 + 2 * i, 4100000.3, 0.0));
        place->setDataVariance(osg::Object::STATIC);
        place->addChild(geode);
        many->addChild(place);
    }
    osg::ref_ptr<osg::Node> model = many;
    many = nullptr;
    AxPrepareModel(*model, nullptr);
    const osg::BoundingSphere before = model->getBound();
    const osg::Vec3d zero = AxGatherModel(model);
    EXPECT_NEAR(zero.x(), before.center().x(), 100.0);
    EXPECT_LT(model->getBound().center().length(), 100.0f);
    struct Count : osg::NodeVisitor
    {
        Count() : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN) {}
        void apply(osg::Node& node) override { ++nodes, traverse(node); }
        void apply(osg::Geometry& geometry) override
        {
            ++nodes;
            const auto& places = static_cast<osg::Vec3Array&>(*geometry.getVertexArray());
            vertices += static_cast<unsigned>(places.size());
            north = places[0].y();
        }
        int nodes = 0;
        unsigned vertices = 0;
        double north = 0.0;
    } left;
    model->accept(left);
    EXPECT_LT(left.nodes, 1000);
    EXPECT_EQ(left.vertices, 3u * count);
    EXPECT_NEAR(left.north + zero.y(), 4100000.3, 0.001) << "single precision has steps of 0.5 m there";
}

TEST(ModelGeometry, FaultyTrianglesGoAndTheOthersStayWhereTheyAre)
{
    const osg::Vec3d far(500000.0, 4100000.3, 0.0);
    osg::ref_ptr<osg::Vec3dArray> vertices = new osg::Vec3dArray;
    for (const osg::Vec3d& at : {osg::Vec3d(), {1, 0, 0}, {0, 1, 0}, {NAN, 0, 0}})
        vertices->push_back(at + far);
    // One that shares the vertices, and one of which nothing is left.
    osg::ref_ptr<osg::Geometry> sharer = new osg::Geometry;
    sharer->setVertexArray(vertices);
    sharer->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLES, 1, 3));
    osg::ref_ptr<osg::Geometry> nowhere = new osg::Geometry;
    nowhere->setVertexArray(new osg::Vec3Array(3));
    static_cast<osg::Vec3Array&>(*nowhere->getVertexArray())[0].x() = NAN;
    nowhere->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLES, 0, 3));
    osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
    geometry->setVertexArray(vertices);
    geometry->setNormalArray(new osg::Vec3Array(osg::Array::BIND_PER_VERTEX, 2));
    const unsigned indices[] = {0, 1, 2, 0, 1, 3, 0, 1, 4000000000u};
    geometry->addPrimitiveSet(new osg::DrawElementsUInt(GL_TRIANGLES, 9, indices));
    geometry->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLES, 2, 30));
    MadeUpExport made;
    constexpr int cells = 120;
    osg::ref_ptr<osg::LOD> levels = new osg::LOD;
    levels->addChild(made.Surface(far.x(), far.y(), cells, MadeUpExport::Picture()), 0.0f, 100.0f);
    osg::ref_ptr<osg::Geode> coarse = new osg::Geode;
    for (const auto& part : {geometry, sharer, nowhere})
        coarse->addDrawable(part);
    levels->addChild(coarse, 100.0f, 1e9f);
    osg::ref_ptr<osg::Node> model = levels;
    EXPECT_EQ(AxPrepareModel(*model, nullptr), 14);
    EXPECT_EQ(sharer->getNumPrimitiveSets(), 0u);
    EXPECT_FALSE(nowhere->getBoundingBox().valid());
    const osg::Vec3d zero = AxGatherModel(model);
    ASSERT_EQ(levels->getNumChildren(), 2u) << "parts of a level are no levels";
    EXPECT_GE(levels->getChild(0)->asGroup()->getNumChildren(), 2u);
    const auto* left = dynamic_cast<const osg::Vec3Array*>(geometry->getVertexArray());
    ASSERT_TRUE(left);
    EXPECT_LT((osg::Vec3d((*left)[1]) + zero - far - osg::Vec3d(1, 0, 0)).length(), 0.001);
    EXPECT_EQ(geometry->getPrimitiveSet(0)->getNumIndices(), 3u);
}

TEST(ModelGeometry, LargeSurfacesAreSplitInSpaceAndLoseNothing)
{
    MadeUpExport made;
    constexpr int cells = 200;
    osg::ref_ptr<osg::Geode> geode = new osg::Geode;
    geode->addDrawable(made.Surface(0.0, 0.0, cells, MadeUpExport::Picture()));
    osg::ref_ptr<osg::Node> model = geode;
    AxPrepareModel(*model, nullptr);
    AxGatherModel(model);
    ASSERT_GE(geode->getNumDrawables(), 4u);
    unsigned triangles = 0;
    for (unsigned i = 0; i < geode->getNumDrawables(); ++i) {
        const osg::Geometry& part = *geode->getDrawable(i)->asGeometry();
        triangles += part.getPrimitiveSet(0)->getNumIndices() / 3;
        EXPECT_LT(part.getBoundingBox().radius(), 50.0f) << "the whole has 71";
        EXPECT_EQ(part.getVertexArray(), geode->getDrawable(0)->asGeometry()->getVertexArray());
    }
    EXPECT_EQ(triangles, 2u * cells * cells);
}
