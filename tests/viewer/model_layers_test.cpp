// Models that are loaded from files: on the map, under the mouse, and gone again.
#include "LogLines.h"
#include "MadeUpExport.h"
#include "ProtocolFixture.h"

#include "interaction/models/AxModelLayers.h"
#include "interaction/models/AxModelPick.h"
#include "scene/AxEditAids.h"
#include "scene/AxScene.h"
#include "scene/AxViewerParts.h"

#include <QFileInfo>
#include <QTemporaryDir>

#include <cmath>

class ModelFiles : public ProtocolFixture
{
protected:
    void SetUp() override
    {
        ProtocolFixture::SetUp();
        models = viewer->GetModelLayers();
        listening += QObject::connect(models, &AxModelLayers::loaded, viewer,
                                      [this](const QString& id) { loaded += id; });
        listening += QObject::connect(models, &AxModelLayers::failed, viewer,
                                      [this](const QString& id, const QString& why) {
                                          failed += id;
                                          reason = why;
                                      });
        listening += QObject::connect(models, &AxModelLayers::removed, viewer,
                                      [this](const QString& id) { removed += id; });
    }
    void TearDown() override
    {
        for (const auto& one : listening)
            QObject::disconnect(one);
        models->Clear();
        ProtocolFixture::TearDown();
    }

    QString File(const char* name, const QByteArray& content) const
    {
        QFile file(folder.filePath(QString::fromLatin1(name)));
        QDir().mkpath(QFileInfo(file).path());
        return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() ? file.fileName()
                                                                                        : QString();
    }
    /// Waits for the end of what was added; how it ended, in words.
    QString End(const QString& id)
    {
        if (!waitFor([&] { return loaded.contains(id) || failed.contains(id); }))
            return "neither";
        return loaded.contains(id) ? "loaded" : reason;
    }
    /// A place so many metres from the origin of the made-up export.
    static osg::Vec3d Place(double east, double north)
    {
        const auto place =
            AxCoordinateSystem::Of("EPSG:32613")->ToPlace({500000.0 + east, 4100000.0 + north});
        return {place->Lng(), place->Lat(), 2500.0 + MadeUpExport::HeightAt(east, north)};
    }
    static double HeightOfModels(const osg::Vec3d& place)
    {
        QList<osg::Vec3d> points{osg::Vec3d(place.x(), place.y(), -9999.0)};
        viewer->getManipulator()->GetElevations(points, true);
        return points.front().z();
    }

    QTemporaryDir folder;
    AxModelLayers* models = nullptr;
    QList<QMetaObject::Connection> listening;
    QStringList loaded;
    QStringList failed;
    QStringList removed;
    QString reason;
};

TEST_F(ModelFiles, AnExportIsShownPickedHiddenLiftedAndRemoved)
{
    QVariantList told;
    listening += QObject::connect(viewer, &CAxEarthViewer::signalAddModelLayer, viewer,
                                  [&told](const QString& id, const QString& name, const QStringList& files,
                                          bool isVisible, const QString& path, const QString& system) {
                                      told = {id, name, files.size(), isVisible, path, system};
                                  });
    MadeUpExport made;
    made.origin = "500000,4100000,2500";
    const QString path = made.Write(folder.filePath("Dam"));
    ASSERT_FALSE(path.isEmpty());
    QString why;
    const QString id = models->Add(path, {}, &why);
    ASSERT_EQ(why, "");
    EXPECT_TRUE(models->Find(id)->isLoading);
    ASSERT_EQ(End(id), "loaded");
    EXPECT_EQ(told, (QVariantList{id, "Dam", 4, true, path, "EPSG:32613+5773"}));
    EXPECT_EQ(models->Add(folder.filePath("Dam")), id) << "what is there is not loaded twice";
    const AxModelLayer layer = *models->Find(id);
    EXPECT_NEAR(layer.extent->center().x(), Place(0, 0).x(), 1e-6);
    EXPECT_NEAR(layer.extent->height() * 110900.0, 200.0, 1.0);
    EXPECT_NEAR(layer.lowest, 2512.0, 0.5);
    EXPECT_NEAR(layer.highest, 2528.0, 0.5);
    EXPECT_EQ(layer.note, "");

    osg::Node* node = findNode(AxFindModelRoot(Root()), id.toStdString());
    ASSERT_TRUE(node);
    EXPECT_EQ(node, models->NodeOf(id));
    EXPECT_EQ(node->getNodeMask(), 0x123u);
    EXPECT_EQ(node->getParent(0)->getName(), "ModelLayer");
    EXPECT_EQ(node->getParent(0)->getParent(0)->getParent(0)->getName(), "SceneData");

    // The finest level is there when the picture is complete.
    const osg::Vec3d place = Place(-37.0, 23.0);
    manipulator->setViewpoint(osgEarth::Viewpoint("", place.x(), place.y(), 2500.0, 0.0, -60.0, 400.0));
    ASSERT_TRUE(WaitForPicture());
    EXPECT_NEAR(HeightOfModels(place), place.z(), 0.05);
    const osg::Vec2f window = WindowOf(FrameAt(place.x(), place.y(), place.z()).getTrans());
    Move(window.x(), window.y());
    EXPECT_NEAR(lngLatPos.x(), place.x(), 2e-5);
    EXPECT_NEAR(lngLatPos.y(), place.y(), 2e-5);
    EXPECT_NEAR(lngLatPos.z(), place.z(), 0.5);
    Push(window.x(), window.y());
    Release(window.x(), window.y());
    EXPECT_EQ(names, (QStringList{"Tile_0_1", id}));
    const double range = manipulator->getDistance();
    EXPECT_TRUE(Scroll(osgGA::GUIEventAdapter::SCROLL_DOWN, window.x(), window.y()));
    EXPECT_NE(manipulator->getDistance(), range) << "the wheel works around the model";
    manipulator->setOperateMode(CAxEarthManipulator::OperateModel);
    Move(window.x(), window.y());
    EXPECT_NEAR(lngLatPos.z(), place.z(), 5.0);

    AxEditAids aids;
    for (const bool isOn : {true, false}) {
        aids.clampToModels = isOn;
        viewer->SetEditAids(aids);
        QList<osg::Vec3d> vertex{osg::Vec3d(place.x(), place.y(), 0.0)};
        AxPartsOf(viewer)->Scene().GetElevations(vertex);
        EXPECT_EQ(std::abs(vertex.front().z() - place.z()) < 0.05, isOn) << vertex.front().z();
        EXPECT_LT(viewer->GetElevation(place.x(), place.y()), 2500.0) << "the ground is what it was";
    }

    EXPECT_TRUE(models->SetLift(id, 50.0));
    EXPECT_NEAR(HeightOfModels(place), place.z() + 50.0, 0.05);
    EXPECT_NEAR(models->Find(id)->highest, 2578.0, 0.5);
    EXPECT_FALSE(models->SetLift(id, NAN));
    EXPECT_TRUE(models->SetVisible(id, false));
    EXPECT_LT(HeightOfModels(place), 2500.0) << "what is hidden is not met";
    EXPECT_TRUE(models->Remove(id));
    EXPECT_EQ(removed, QStringList{id});
    EXPECT_FALSE(findNode(Root(), id.toStdString()));
    EXPECT_FALSE(models->Remove(id) || models->SetVisible(id, true) || models->SetLift(id, 1.0) ||
                 models->NodeOf(id));
}

TEST_F(ModelFiles, WhatIsAmissIsToldAndTheRestShown)
{
    MadeUpExport made;
    made.missingPicture = "gone.jpg";
    made.withBadVertex = true;
    const QString path = made.Write(folder.filePath("Export"));
    QFile(folder.filePath("Export/Data/Tile_1_1/Tile_1_1.osgb")).resize(40);
    const QString id = models->Add(path);
    ASSERT_EQ(End(id), "loaded");
    const AxModelLayer layer = *models->Find(id);
    EXPECT_EQ(layer.files.size(), 3);
    for (const char* text : {"gone.jpg", "Tile_1_1.osgb", "nowhere: 2,"})
        EXPECT_EQ(layer.note.count(QLatin1String(text)), 1) << text << " in " << layer.note.toStdString();
    EXPECT_TRUE(std::isfinite(layer.extent->width()) && std::isfinite(layer.highest));
}

TEST_F(ModelFiles, MaterialsThatNobodyHasAreToldInTheNoteAndNotByTheReader)
{
    AxModelOptions placed;
    placed.coordinateSystem = "EPSG:32613";
    placed.origin = osg::Vec3d(500000.0, 4100000.0, 2500.0);
    const LogLines log;
    for (const char* material : {"", "usemtl nobody\n"}) {
        const QByteArray text = QByteArray("v 0 0 0\nv 10 0 0\nv 0 10 5\n") + material + "f 1 2 3\n";
        const QString id = models->Add(File(*material ? "named.obj" : "plain.obj", text), placed);
        ASSERT_EQ(End(id), "loaded");
        EXPECT_EQ(models->Find(id)->note.contains("nobody"), *material != 0);
    }
    EXPECT_EQ(LogLines::lines.filter("material").size(), 0) << LogLines::lines.join('\n').toStdString();
}

TEST_F(ModelFiles, WhatCannotBeShownIsRefusedWithTheReason)
{
    const QByteArray triangle = "v 0 0 0\nv 10 0 0\nv 0 10 5\nf 1 2 3\n";
    const QString bare = File("bare.obj", triangle);
    AxModelOptions placed;
    placed.coordinateSystem = "EPSG:32613";
    placed.origin = osg::Vec3d(500000.0, 4100000.0, 200.0);
    AxModelOptions beyond = placed;
    beyond.origin = osg::Vec3d(1e9, 0.0, 0.0);
    AxModelOptions endless = placed;
    endless.lift = INFINITY;
    const struct
    {
        QString path;
        AxModelOptions options;
        const char* words;
    } rows[] = {
        {folder.filePath("none.obj"), placed, "none.obj"},
        {folder.path(), placed, "metadata.xml"},
        {bare, {}, "bare"},
        {bare, beyond, "UTM zone 13N"},
        {bare, endless, "lift"},
        {File("model.nonsense", "x"), placed, ".nonsense"},
        {File("unknown/metadata.xml", "<ModelMetadata><SRS>EPSG:999999</SRS></ModelMetadata>"), {}, "999999"},
        {File("local/metadata.xml", "<ModelMetadata><SRS>ENU:91,2</SRS></ModelMetadata>"), {}, "ENU:91,2"},
        {File("torn/metadata.xml", "<ModelMetadata><SRS>EPSG:32613</SR"), {}, "metadata.xml, line 1"},
        {File("page/metadata.xml", "<html><SRS>EPSG:32613</SRS></html>"), {}, "model"},
        {File("two/metadata.xml",
              "<ModelMetadata><SRS>EPSG:32613</SRS><SRSOrigin>1,2</SRSOrigin></ModelMetadata>"),
         {},
         "SRSOrigin \"1,2\""},
    };
    for (const auto& row : rows) {
        QString why;
        EXPECT_EQ(models->Add(row.path, row.options, &why), "") << row.words;
        EXPECT_TRUE(why.contains(QLatin1String(row.words))) << why.toStdString();
    }
    // Known only once the file was read.
    const struct
    {
        QString path;
        AxModelOptions options;
        const char* words;
    } later[] = {
        {File("empty.obj", "# nothing\n"), placed, "empty.obj"},
        {File("numbers.obj", "v nan 0 0\nv nan 0 0\nv 0 nan 0\nf 1 2 3\n"), placed, "numbers.obj"},
        {File("torn.osgb", "no model"), placed, "torn.osgb"},
        {File("bald/metadata.xml", "<ModelMetadata><SRS>EPSG:32613</SRS>"
                                   "<SRSOrigin>500000,4100000,0</SRSOrigin></ModelMetadata>"),
         {},
         "Tile_1.osgb"},
    };
    for (const auto& row : later) {
        const QString id = models->Add(row.path, row.options);
        ASSERT_NE(id, "") << row.words;
        EXPECT_TRUE(End(id).contains(QLatin1String(row.words))) << reason.toStdString();
    }
    EXPECT_EQ(models->All().size(), 0);

    // Called off before it is read, it tells no more.
    const QString id = models->Add(bare, placed);
    EXPECT_TRUE(models->Remove(id));
    const QString other = models->Add(bare, placed);
    ASSERT_EQ(End(other), "loaded");
    EXPECT_FALSE(loaded.contains(id) || failed.contains(id));
    EXPECT_NEAR(models->Find(other)->highest - models->Find(other)->lowest, 5.0, 0.01);
}
