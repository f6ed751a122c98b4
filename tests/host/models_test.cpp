// Models beside the map: what a project keeps of them, and where the pilot puts those that tell nothing.
#include "host/models/ModelPanel.h"
#include "host/models/ModelPlaceBox.h"
#include "host/models/ModelsKept.h"
#include "interaction/AxModelLayers.h"
#include "ModalBox.h"
#include "SuiteViewer.h"

#include <QDir>
#include <QDoubleSpinBox>
#include <QFile>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTreeWidget>

class Models : public SuiteViewer
{
protected:
    void TearDown() override { Layers().Clear(); }
    static AxModelLayers& Layers() { return *viewer->GetModelLayers(); }
    static bool WaitForLoaded(int count)
    {
        return waitFor([count] {
            const QList<AxModelLayer> all = Layers().All();
            return all.size() == count && std::none_of(all.begin(), all.end(),
                                                       [](const AxModelLayer& one) { return one.isLoading; });
        });
    }
    QString Pyramid(const char* name) const
    {
        QFile file(folder.filePath(QString::fromLatin1(name)));
        file.open(QIODevice::WriteOnly);
        file.write("v 0 0 0\nv 10 0 0\nv 0 10 0\nv 3 3 8\nf 1 2 4\nf 2 3 4\nf 3 1 4\n");
        return file.fileName();
    }

    QTemporaryDir folder;
};

TEST_F(Models, GoWithTheProjectAndStayInItWhenTheyAreMissing)
{
    ModelPanel panel(viewer);
    ModelsKept& kept = *panel.Kept();
    const auto* list = panel.findChild<QTreeWidget*>();
    AxModelOptions options;
    options.name = "gone";
    options.coordinateSystem = "ENU:37.4,-105";
    options.origin = osg::Vec3d(1.5, -2.0, 2500.0);
    options.heights = AxModelHeights::SeaLevel;
    options.isVisible = false;
    const QString first = Pyramid("first.obj");
    ASSERT_NE(Layers().Add(first, options), "");
    options = {};
    options.coordinateSystem = "EPSG:32613";
    options.origin = osg::Vec3d(500000.0, 4140000.0, 0.0);
    options.isYUp = true;
    options.lift = 12.25;
    ASSERT_NE(Layers().Add(Pyramid("second.obj"), options), "");
    ASSERT_TRUE(WaitForLoaded(2));
    const QString text = kept.Text();
    kept.SetText(QString());
    EXPECT_EQ(kept.Text(), QString());
    EXPECT_TRUE(Layers().All().isEmpty());

    QFile::rename(first, first + ".away");
    kept.SetText(text);
    EXPECT_EQ(kept.Text(), text) << "opening changes nothing, whatever is missing";
    ASSERT_TRUE(WaitForLoaded(1));
    EXPECT_EQ(kept.Text(), text);
    ASSERT_EQ(kept.GetMissing().size(), 1);
    EXPECT_EQ(kept.GetMissing()[0].name, "gone");
    EXPECT_TRUE(kept.GetMissing()[0].reason.contains("first.obj"));
    EXPECT_EQ(list->topLevelItemCount(), 2);
    EXPECT_EQ(panel.findChild<QDoubleSpinBox*>("ModelLift")->isEnabled(), false) << "none is chosen";

    // It is there again, but not as a model.
    QFile torn(first);
    ASSERT_TRUE(torn.open(QIODevice::WriteOnly));
    torn.close();
    kept.TryAgain(kept.GetMissing()[0].id);
    ASSERT_TRUE(waitFor([&] { return kept.GetMissing().size() == 1; }));
    EXPECT_EQ(kept.Text(), text);
    QFile::remove(first);
    QFile::rename(first + ".away", first);
    kept.TryAgain(kept.GetMissing()[0].id);
    ASSERT_TRUE(WaitForLoaded(2));
    EXPECT_EQ(kept.Text(), text);
    for (const AxModelLayer& layer : Layers().All()) {
        EXPECT_EQ(layer.options.isVisible, layer.options.lift == 12.25);
        EXPECT_EQ(layer.options.heights == AxModelHeights::SeaLevel, layer.name == "gone");
    }
    // The folder of the project is moved, with its models.
    QString home = folder.path();
    kept.SetHome([&home] { return home; });
    const QString fromHome = kept.Text();
    home = folder.filePath("moved");
    ASSERT_TRUE(QDir().mkpath(home));
    for (const char* name : {"first.obj", "second.obj"})
        QFile::rename(folder.filePath(name), home + '/' + name);
    kept.SetText(fromHome);
    ASSERT_TRUE(WaitForLoaded(2)) << "found from there";
    EXPECT_TRUE(Layers().All().constFirst().path.startsWith(home));
    panel.findChild<QTreeWidget*>()->setCurrentItem(list->topLevelItem(1));
    const QString chosen = list->currentItem()->text(0);
    Layers().Remove(Layers().All().constFirst().id);
    ASSERT_TRUE(list->currentItem());
    EXPECT_EQ(list->currentItem()->text(0), chosen) << "the choice stays with its model";
    Layers().Clear();
    EXPECT_EQ(kept.Text(), QString());

    QSignalSpy told(&kept, &ModelsKept::Told);
    for (const char* wrong : {"no list", "[3]", R"([{"name": "x"}])"}) {
        told.clear();
        kept.SetText(QString::fromUtf8(wrong));
        EXPECT_EQ(told.count(), 1) << wrong;
    }
    kept.SetText(QString());
}

TEST_F(Models, OfAProjectAreListedOnceAndWithTheFieldThatCannotBeMeant)
{
    ModelPanel panel(viewer);
    ModelsKept& kept = *panel.Kept();
    const QString path = folder.filePath("late.obj");
    const QString model = QStringLiteral(R"([{"path":"%1","system":"ENU:37.4,-105"%2}])").arg(path);
    kept.SetText(model.arg(QString()));
    ASSERT_EQ(kept.GetMissing().size(), 1);
    Pyramid("late.obj");
    AxModelOptions options;
    options.coordinateSystem = "ENU:37.5,-105";
    ASSERT_NE(Layers().Add(path, options), "") << "by hand";
    ASSERT_TRUE(WaitForLoaded(1));
    EXPECT_TRUE(kept.GetMissing().isEmpty());
    EXPECT_EQ(panel.findChild<QTreeWidget*>()->topLevelItemCount(), 1);
    EXPECT_EQ(kept.Text().count("\"path\""), 1);

    const QPair<const char*, const char*> wrong[] = {
        {"lift", R"(,"lift":"x")"},           {"lift", R"(,"lift":20000)"},
        {"origin", R"(,"origin":["1",2,3])"}, {"origin", R"(,"origin":[1,2])"},
        {"heights", R"(,"heights":"moon")"},  {"y_up", R"(,"y_up":1)"},
    };
    for (const auto& [field, value] : wrong) {
        const QString text = model.arg(QString::fromLatin1(value));
        kept.SetText(text);
        EXPECT_TRUE(Layers().All().isEmpty()) << value;
        ASSERT_EQ(kept.GetMissing().size(), 1) << value;
        EXPECT_TRUE(kept.GetMissing()[0].reason.contains(QLatin1String(field))) << value;
        EXPECT_TRUE(kept.Text().contains(QLatin1String(value + 1))) << "it stays: " << value;
    }
    kept.SetText(QString());
}

TEST_F(Models, ArePutOntoTheFinestGroundAndOrbitedWhileTheyAreShown)
{
    ModelPanel panel(viewer);
    viewer->getManipulator()->setViewpoint(osgEarth::Viewpoint("", 60.0, 0.0, 0.0, 0.0, -90.0, 1e7), 0.0);
    AxModelOptions options;
    options.coordinateSystem = "ENU:37.4,-105";
    const QString id = Layers().Add(Pyramid("ground.obj"), options);
    ASSERT_TRUE(WaitForLoaded(1));
    auto* list = panel.findChild<QTreeWidget*>();
    list->setCurrentItem(list->topLevelItem(0));
    QSignalSpy ground(viewer, &CAxEarthViewer::signalRequestElevationReturn);
    panel.findChild<QPushButton*>("ModelOntoGround")->click();
    ASSERT_TRUE(waitFor([&] { return ground.count() == 1; }));
    ASSERT_TRUE(ground[0][3].toBool());
    EXPECT_NEAR(Layers().Find(id)->lowest, ground[0][2].toDouble(), 0.01);
    auto* orbit = panel.findChild<QPushButton*>("ModelOrbit");
    orbit->click();
    EXPECT_EQ(viewer->getManipulator()->getOperateMode(), CAxEarthManipulator::OperateModel);
    Layers().SetVisible(id, false);
    EXPECT_EQ(viewer->getManipulator()->getOperateMode(), CAxEarthManipulator::OperateGlobe);
    EXPECT_FALSE(orbit->isEnabled());
}

TEST_F(Models, ThatAreRefusedAreListedWithTheReasonAndDoNotGoWithTheProject)
{
    ModelPanel panel(viewer);
    ModelsKept& kept = *panel.Kept();
    const auto* list = panel.findChild<QTreeWidget*>();
    const QString path = Pyramid("refused.obj");
    ASSERT_TRUE(QFile::rename(path, path + ".whole") && QFile(path).open(QIODevice::WriteOnly));
    AxModelOptions options;
    options.coordinateSystem = "ENU:37.4,-105";
    options.lift = 3.0;
    ASSERT_NE(Layers().Add(path, options), "");
    ASSERT_TRUE(waitFor([&] { return kept.GetMissing().size() == 1; }));
    EXPECT_TRUE(waitFor([&] { return Layers().All().isEmpty(); }));
    ASSERT_EQ(list->topLevelItemCount(), 1);
    EXPECT_TRUE(list->topLevelItem(0)->toolTip(0).contains("refused.obj"));
    EXPECT_EQ(kept.Text(), QString());
    QFile::remove(path);
    QFile::rename(path + ".whole", path);
    kept.TryAgain(kept.GetMissing()[0].id);
    ASSERT_TRUE(WaitForLoaded(1));
    EXPECT_EQ(Layers().All().constFirst().options.lift, 3.0);
    EXPECT_NE(kept.Text(), QString()) << "now the project has it";
}

TEST_F(Models, AreFlownToWhenTheyAreThereUnlessTheMapIsInUse)
{
    ModelPanel panel(viewer);
    CAxEarthManipulator& camera = *viewer->getManipulator();
    const struct
    {
        const char* meanwhile;
        std::function<void()> happens;
        bool isFlownTo;
    } rows[] = {
        {"nothing", [] {}, true},
        {"another tool was taken up", [] { viewer->SetToolType(ToolMeasureDistance); }, false},
        {"the camera was moved",
         [&] { camera.setViewpoint(osgEarth::Viewpoint("", 10.0, 40.0, 0.0, 0.0, -90.0, 5e6), 0.0); }, false},
        {"a mouse button is held down", [] { QTest::mousePress(viewer, Qt::LeftButton); }, false},
    };
    QFile system(folder.filePath("flown.prj"));
    ASSERT_TRUE(system.open(QIODevice::WriteOnly) && system.write("EPSG:32613") > 0);
    system.close();
    QFile offset(folder.filePath("flown_offset.xyz"));
    ASSERT_TRUE(offset.open(QIODevice::WriteOnly) && offset.write("500000 4140000 2500") > 0);
    offset.close();
    const QString path = Pyramid("flown.obj");
    for (const auto& row : rows) {
        camera.setViewpoint(osgEarth::Viewpoint("", -104.0, 37.0, 0.0, 0.0, -90.0, 1e6), 0.0);
        ASSERT_TRUE(panel.Load(path)) << row.meanwhile;
        row.happens();
        ASSERT_TRUE(WaitForLoaded(1)) << row.meanwhile;
        EXPECT_EQ(camera.isSettingViewpoint(), row.isFlownTo) << row.meanwhile;
        viewer->SetToolType(ToolNavigate);
        Layers().Clear();
    }
    QTest::mouseRelease(viewer, Qt::LeftButton);
}

TEST_F(Models, AreSeenAsAWholeHoweverTallTheyAreAndNarrowTheMap)
{
    ModelPanel panel(viewer);
    QFile file(folder.filePath("tower.obj"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("v 0 0 0\nv 300 0 0\nv 0 300 0\nv 300 300 300\nf 1 2 4\nf 2 3 4\nf 3 1 4\n");
    file.close();
    AxModelOptions options;
    options.coordinateSystem = "ENU:37.4,-105.25";
    options.origin = osg::Vec3d(0.0, 0.0, 3000.0);
    const QSize before = viewer->size();
    viewer->resize(300, before.height());
    ASSERT_NE(Layers().Add(file.fileName(), options), "");
    ASSERT_TRUE(WaitForLoaded(1));
    auto* list = panel.findChild<QTreeWidget*>();
    list->setCurrentItem(list->topLevelItem(0));
    panel.findChild<QPushButton*>("ModelFly")->click();
    const osg::Camera& camera = *viewer->getOSGViewer()->getCamera();
    const AxModelLayer layer = Layers().All().constFirst();
    const auto isInPicture = [&] {
        for (unsigned corner = 0; corner < 8; ++corner) {
            const osgEarth::GeoPoint place(viewer->getSRS()->getGeographicSRS(),
                                           corner & 1 ? layer.extent->left() : layer.extent->right(),
                                           corner & 2 ? layer.extent->top() : layer.extent->bottom(),
                                           corner & 4 ? layer.lowest : layer.highest);
            osg::Vec3d world;
            place.toWorld(world);
            const osg::Vec3d seen = world * camera.getViewMatrix() * camera.getProjectionMatrix();
            if (std::abs(seen.x()) >= 1.0 || std::abs(seen.y()) >= 1.0)
                return false;
        }
        return true;
    };
    EXPECT_TRUE(waitFor(
        [&] { return viewer->IsPictureComplete() && !viewer->getManipulator()->isSettingViewpoint(); }));
    EXPECT_TRUE(isInPicture());
    viewer->resize(before);
}

TEST_F(Models, ThatTellNoPlaceAreAskedFor)
{
    ModelPanel panel(viewer);
    const QString path = Pyramid("bare.obj");
    ModalBox box;
    const auto fill = [](const char* place, const char* button) {
        return [place, button](QDialog& asked) {
            auto* field = asked.findChild<QLineEdit*>("ModelPlace");
            field->setText(place);
            asked.findChild<QDoubleSpinBox*>("ModelHeight")->setValue(2400.0);
            const bool isPlace = QString(place).contains("-105");
            for (auto* one : asked.findChildren<QPushButton*>())
                if (one->text() == "OK") {
                    EXPECT_EQ(one->isEnabled(), isPlace) << place;
                }
            ModalBox::Press(button)(asked);
        };
    };
    box.answers = {fill("nowhere", "Cancel"), fill("37.4, -105.25", "OK")};
    EXPECT_FALSE(panel.Load(path));
    EXPECT_TRUE(Layers().All().isEmpty());
    EXPECT_TRUE(panel.Load(path));
    ASSERT_TRUE(WaitForLoaded(1));
    const AxModelLayer layer = Layers().All().constFirst();
    EXPECT_EQ(layer.options.coordinateSystem, "ENU:37.400000000,-105.250000000");
    EXPECT_NEAR(layer.extent->left(), -105.25, 1e-6);
    EXPECT_NEAR(layer.lowest, 2400.0, 0.01);
    EXPECT_NEAR(layer.highest, 2408.0, 0.01);
    EXPECT_EQ(box.count, 2);
    const QString unknown = Pyramid("unknown.obj");
    QFile system(folder.filePath("unknown.prj"));
    ASSERT_TRUE(system.open(QIODevice::WriteOnly) && system.write("LOCAL_CS[\"site\"]") > 0);
    system.close();
    box.answers = {ModalBox::Press("Cancel")};
    EXPECT_FALSE(panel.Load(unknown));
    EXPECT_TRUE(box.texts.join('\n').contains("LOCAL_CS")) << "a system that is not known is asked for, too";
}
