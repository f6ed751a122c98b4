// Outlines of model layers on the ground, the blocks that they meet, and heights below blocks.
#include "ShapeFixture.h"

#include "analysis/AxHeightGrid.h"
#include "analysis/CAxAncillaryProcess.h"
#include "analysis/CAxElevationQuery.h"
#include "interaction/AxModelLayers.h"
#include "viewer/AxMapLayers.h"

#include <AxData/geofiles/AxGeoHeights.h>

#include <osg/Geode>
#include <osg/Geometry>
#include <osgDB/WriteFile>
#include <osgEarth/ModelLayer>

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

namespace {
using Names = QStringList;
} // namespace

class ModelOutlines : public ShapeFixture
{
protected:
    void TearDown() override
    {
        viewer->GetModelLayers()->Clear();
        ShapeFixture::TearDown();
    }

    /// A square of 2 km around 20 E 10 N, or elsewhere.
    QString AddModel(const char* name, const char* system = "ENU:10,20") const
    {
        const osg::ref_ptr<osg::Geometry> mesh = new osg::Geometry;
        const std::vector<osg::Vec3> corners{{-1000.0f, -1000.0f, 0.0f},
                                             {1000.0f, -1000.0f, 0.0f},
                                             {1000.0f, 1000.0f, 0.0f},
                                             {-1000.0f, 1000.0f, 50.0f}};
        mesh->setVertexArray(new osg::Vec3Array(4, corners.data()));
        mesh->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLE_FAN, 0, 4));
        const QString file = folder.filePath(QString(name) + ".osgb");
        EXPECT_TRUE(osgDB::writeNodeFile(*mesh, file.toStdString()));
        AxModelOptions options;
        options.name = name;
        options.coordinateSystem = system;
        QString why;
        const QString id = viewer->GetModelLayers()->Add(file, options, &why);
        EXPECT_FALSE(id.isEmpty()) << why.toStdString();
        return id;
    }
    /// The same as an export of one tile without finer levels, far from its zero.
    QString AddExport(const char* name, const char* system) const
    {
        const osg::ref_ptr<osg::Geometry> mesh = new osg::Geometry;
        const osg::ref_ptr<osg::Vec3Array> corners = new osg::Vec3Array;
        for (const osg::Vec3d& corner : {osg::Vec3d(-1, -1, 0), {1, -1, 0}, {1, 1, 0}, {-1, 1, 0.05}})
            corners->push_back(osg::Vec3d(500000.0, 0.0, 0.0) + corner * 1000.0);
        mesh->setVertexArray(corners);
        mesh->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLE_FAN, 0, 4));
        const QString there = folder.filePath(name);
        QFile metadata(there + "/metadata.xml");
        EXPECT_TRUE(QDir().mkpath(there + "/Data/T") && metadata.open(QIODevice::WriteOnly));
        metadata.write(
            QString("<ModelMetadata><SRS>%1</SRS><SRSOrigin>-500000,0,0</SRSOrigin></ModelMetadata>")
                .arg(system)
                .toUtf8());
        metadata.close();
        EXPECT_TRUE(osgDB::writeNodeFile(*mesh, (there + "/Data/T/T.osgb").toStdString()));
        AxModelOptions options;
        options.name = name;
        QString why;
        const QString id = viewer->GetModelLayers()->Add(metadata.fileName(), options, &why);
        EXPECT_FALSE(id.isEmpty()) << why.toStdString();
        return id;
    }
    static const osg::Node* Drawn(const QString& id)
    {
        const osg::Node* outlines = findNode(viewer->GetBoundGroup(), "ModelOutlines");
        return outlines ? findNode(const_cast<osg::Node*>(outlines), id.toStdString()) : nullptr;
    }
    static Names Met(const QString& block)
    {
        return CAxBlockManager::instance().GetBlock(block)->GetIntersections();
    }

    const QTemporaryDir folder;
};

TEST_F(ModelOutlines, MeetBlocksAndAreToldAsModelsComeAndGo)
{
    QSignalSpy told(viewer, &CAxEarthViewer::signalIntersection);
    QSignalSpy answers(viewer, &CAxEarthViewer::signalRequestIntersectionReturn);
    Import("over", square);
    Import("beside", {{21, 8}, {22, 8}, {22, 12}});
    const QString quarry = AddModel("Quarry");
    ASSERT_TRUE(waitFor([&] { return Met("over") == Names{"Quarry"}; }));
    EXPECT_EQ(Met("beside"), Names());
    ASSERT_EQ(told.size(), 1);
    EXPECT_EQ(told[0], (QVariantList{"over", Names{"Quarry"}}));
    ASSERT_TRUE(Drawn(quarry));
    EXPECT_EQ(Drawn(quarry)->asGroup()->getNumChildren(), 1u);
    EXPECT_NE(Drawn(quarry)->getNodeMask(), 0u);

    for (const char* id : {"over", "beside", "nobody"})
        viewer->slotRequestIntersection(id);
    ASSERT_TRUE(waitFor([&] { return answers.size() == 3; }));
    EXPECT_EQ(answers[0][0].toBool(), true);
    EXPECT_EQ(answers[1][0].toBool(), false);
    EXPECT_EQ(answers[2][0].toBool(), false);

    // A question while a model is loaded, or its outline is looked for, is answered when that is known.
    told.clear();
    answers.clear();
    QObject receiver;
    QObject::connect(viewer->GetModelLayers(), &AxModelLayers::loaded, &receiver,
                     [] { viewer->slotRequestIntersection("beside"); });
    const QString mine = AddExport("Mine", "ENU:10,21.5");
    viewer->slotRequestIntersection("beside");
    ASSERT_TRUE(waitFor([&] { return answers.size() == 2; }));
    EXPECT_TRUE(answers[0][0].toBool() && answers[1][0].toBool());
    viewer->GetModelLayers()->Remove(AddModel("Gone"));
    viewer->slotRequestIntersection("nobody");
    ASSERT_TRUE(waitFor([&] { return answers.size() == 3; })) << "what is called off is not waited for";
    ASSERT_TRUE(waitFor([&] { return told.size() == 2; }));
    EXPECT_EQ(Met("over"), (Names{"Quarry", "Mine"}));

    // A block that is drawn or moved is tested, a hidden model counts and is not outlined.
    viewer->GetModelLayers()->SetVisible(quarry, false);
    EXPECT_EQ(Drawn(quarry)->getNodeMask(), 0u);
    CAxBlockManager::instance().GetBlock("beside")->SetAnchor({{19.9, 9.9}, {20.1, 9.9}, {20, 10.1}});
    viewer->FindExistNode("beside")->ImportGeometry({{19.9, 9.9, 0}, {20.1, 9.9, 0}, {20, 10.1, 0}}, false);
    ASSERT_TRUE(waitFor([&] { return Met("beside") == Names{"Quarry"}; }));
    CAx3DGeometry* const drawn = DrawTriangle();
    ASSERT_TRUE(drawn);
    ASSERT_TRUE(waitFor([&] { return drawn->GetContainedBlock()->GetIntersections() == (Names{"Quarry"}); }));

    told.clear();
    viewer->GetModelLayers()->Remove(quarry);
    EXPECT_FALSE(Drawn(quarry));
    ASSERT_TRUE(waitFor([&] { return Met("over") == Names{"Mine"} && Met("beside").isEmpty(); }));
    EXPECT_TRUE(told.contains({"beside", Names()}));
    viewer->GetModelLayers()->Remove(mine);
    ASSERT_TRUE(waitFor([&] { return Met("over").isEmpty(); }));
}

TEST_F(ModelOutlines, StandBesideTheZonesOfAnApplication)
{
    CAxBlockManager::instance()
        .AddBlock("area", CAxBlock::ProhibitedAreaBlock)
        ->SetAnchor({{60.0, 45.2}, {60.4, 45.2}, {60.4, 45.4}, {60.0, 45.4}});
    CAxHandleAdapter* const area = viewer->ImportShapeNode("area");
    ASSERT_EQ(Met("area"), Names{"T1"});
    QSignalSpy told(viewer, &CAxEarthViewer::signalIntersection);
    const QString id = AddModel("Tower", "ENU:45.3,60.2");
    ASSERT_TRUE(waitFor([&] { return Met("area") == (Names{"T1", "Tower"}); }));
    EXPECT_EQ(told.takeLast(), (QVariantList{"area", Names{"Tower"}}));
    area->CheckGeometry();
    EXPECT_EQ(Met("area"), (Names{"T1", "Tower"}));
    EXPECT_TRUE(told.contains({"area", Names{"T1"}})) << "the zones are told as ever";
    viewer->GetModelLayers()->Remove(id);
    ASSERT_TRUE(waitFor([&] { return Met("area") == Names{"T1"}; }));
}

TEST_F(ModelOutlines, HeightsBelowABlockComeFromTheWorkerAndFollowTheGround)
{
    CAxAncillaryProcess* const process = viewer->GetAncillaryProcess();
    const QList<QPointF> ring{{20.0, 10.0}, {20.01, 10.0}, {20.01, 10.01}, {20.0, 10.01}};
    CAxBlock* const block = Import("block", ring)->GetContainedBlock();
    CAxBlock* const typed = Import("typed", ring)->GetContainedBlock();
    typed->SetAverageAltitude(7.0);
    ASSERT_TRUE(waitFor([&] { return block->GetAverageAltitude() != 0.0; }));
    const double before = block->GetAverageAltitude();

    AxGeoHeights hill;
    hill.west = 19.99;
    hill.south = 9.99;
    hill.stepLng = hill.stepLat = 3e-4;
    hill.columns = hill.rows = 100;
    hill.heights.assign(10000, 4321.0f);
    const QString file = folder.filePath("hill.tif");
    ASSERT_EQ(AxWriteGeoHeights(file, hill), QString());
    const int layer = viewer->GetMapLayers()->AddElevation(file);
    ASSERT_NE(layer, 0);
    EXPECT_TRUE(waitFor([&] { return std::abs(block->GetAverageAltitude() - 4321.0) < 1.0; }))
        << block->GetAverageAltitude();

    AxHeightsQuestion question;
    question.ring.assign(ring.begin(), ring.end());
    CAxElevationQuery query;
    CAxElevationQuery calledOff;
    QSignalSpy silence(&calledOff, &CAxElevationQuery::signalElevations);
    process->SetHeightsPara(question, viewer->getMapNode()->getMap(), nullptr, &calledOff);
    process->SetHeightsPara(question, viewer->getMapNode()->getMap(), nullptr, &query);
    process->CancelElevationQuery(&calledOff);
    ASSERT_TRUE(waitFor([&] { return query.GetResult().isValid(); }));
    const auto grid = query.GetResult().value<AxHeightGridPointer>();
    ASSERT_TRUE(grid);
    EXPECT_NEAR(grid->cell, 33.4, 0.5);
    EXPECT_GT(grid->known, 800u);
    EXPECT_NEAR(grid->mean, 4321.0, 0.1);
    EXPECT_TRUE(silence.isEmpty());

    EXPECT_TRUE(viewer->GetMapLayers()->Remove(layer));
    EXPECT_TRUE(waitFor([&] { return std::abs(block->GetAverageAltitude() - before) < 0.01; }));
    EXPECT_EQ(typed->GetAverageAltitude(), 7.0) << "what a host has set stays";
}

TEST_F(ModelOutlines, BoundariesOfAFileBecomeTheLayerWorld)
{
    QString why;
    EXPECT_FALSE(viewer->AddBoundaries(folder.filePath("none.shp"), &why));
    EXPECT_TRUE(why.contains("none.shp")) << why.toStdString();
    osgEarth::Map& map = *viewer->getMapNode()->getMap();
    ASSERT_FALSE(map.getModelLayerByName("world"));
    for (int turn = 0; turn < 2; ++turn)
        ASSERT_TRUE(viewer->AddBoundaries(QString(AX_TEST_DATA) + "/olinda1.shp", &why)) << why.toStdString();
    osgEarth::ModelLayerVector layers;
    map.getModelLayers(layers);
    EXPECT_EQ(std::count_if(layers.begin(), layers.end(),
                            [](const auto& one) { return one->getName() == "world"; }),
              1);
    osgEarth::ModelLayer* const world = map.getModelLayerByName("world");
    ASSERT_TRUE(world && world->getStatus().isOK());
    osg::Node* const scene = world->getOrCreateSceneGraph(&map, nullptr);
    ASSERT_TRUE(scene);
    manipulator->setViewpoint(Straight(-34.85, -8.0, 3e4));
    EXPECT_TRUE(waitFor([&] { return scene->getBound().valid(); })) << "no line is there";
    map.removeModelLayer(world);
}
