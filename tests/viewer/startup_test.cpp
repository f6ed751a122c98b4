// Start-up: its order, the scene skeleton, a second call, and what makes it fail.
#include "ViewerFixture.h"

#include "analysis/CAxAncillaryProcess.h"
#include "viewer/overlay/AxHeadUpText.h"

#include <osg/Switch>
#include <osgDB/DatabasePager>
#include <osgEarth/DrapeableNode>
#include <osgEarth/MapNode>
#include <osgEarthAnnotation/CircleNode>
#include <osgEarthUtil/AutoClipPlaneHandler>
#include <osgEarthUtil/Sky>
#include <osgText/Text>
#include <osgViewer/GraphicsWindow>

#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>

using osgEarth::MapNode;

class Startup : public ViewerFixture
{
};

TEST_F(Startup, TellsItsProgressInOrderAndReportsLoadedOnce)
{
    EXPECT_EQ(startupLog, (QStringList{"Create tile map service...", "Loading Sky...",
                                       "Loading prohibited area...", "signalLoadEarth"}));
}

TEST_F(Startup, BuildsTheNamedSkeleton)
{
    struct Row
    {
        const char* name;
        const char* parent;
    };
    const Row rows[] = {
        {"SceneData", "root"},       {"SkyNode", "root"},
        {"MapNode", "SkyNode"},      {"GeodeticGraticule", "SceneData"},
        {"Draw Group", "SceneData"}, {"Bound Group", "SceneData"},
    };
    EXPECT_EQ(Root()->getName(), "root");
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        osg::Node* node = findNode(Root(), row.name);
        ASSERT_TRUE(node);
        ASSERT_EQ(node->getNumParents(), 1u);
        EXPECT_EQ(node->getParent(0)->getName(), row.parent);
    }
    const osg::Group* scene = findNode(Root(), "SceneData")->asGroup();
    EXPECT_LT(scene->getChildIndex(viewer->GetDrawNodeGroup()),
              scene->getChildIndex(viewer->GetBoundGroup()));
    EXPECT_EQ(findNode(Root(), "MapNode"), viewer->getMapNode());
    for (osg::Node* node : {Root(), static_cast<osg::Node*>(viewer->getMapNode())})
        EXPECT_EQ(node->getStateSet()->getMode(GL_LIGHTING), unsigned(osg::StateAttribute::ON))
            << node->getName();
    EXPECT_EQ(Root()->getStateSet()->getMode(GL_DEPTH_TEST), unsigned(osg::StateAttribute::ON));
}

TEST_F(Startup, PutsTheHeadUpTextsIntoAFlatCameraOfTheWidgetsSize)
{
    auto* subtitles = dynamic_cast<osgText::Text*>(findNode(Root(), "Subtitles"));
    auto* prompt = dynamic_cast<osgText::Text*>(findNode(Root(), "Prompt"));
    ASSERT_TRUE(subtitles && prompt);
    EXPECT_EQ(subtitles->getCharacterHeight(), 35.0f);
    EXPECT_EQ(subtitles->getAlignment(), osgText::Text::LEFT_TOP);
    EXPECT_EQ(prompt->getCharacterHeight(), 18.0f);
    EXPECT_EQ(prompt->getAlignment(), osgText::Text::RIGHT_BOTTOM);

    const osg::Camera* camera = AxHeadUpText::Instance().GetCamera();
    EXPECT_EQ(camera->getReferenceFrame(), osg::Transform::ABSOLUTE_RF);
    ASSERT_EQ(camera->getNumParents(), 1u);
    EXPECT_EQ(camera->getParent(0)->getName(), "SceneData");
    double left, right, bottom, top, zNear, zFar;
    ASSERT_TRUE(camera->getProjectionMatrixAsOrtho(left, right, bottom, top, zNear, zFar));
    EXPECT_NEAR(left, 0.0, 1e-9);
    EXPECT_NEAR(bottom, 0.0, 1e-9);
    EXPECT_NEAR(right, viewer->width(), 1e-6);
    EXPECT_NEAR(top, viewer->height(), 1e-6);
}

TEST_F(Startup, HangsAnInvisibleDrapedDiscOverTheWholeGlobeUnderRoot)
{
    using osgEarth::Annotation::CircleNode;
    const osg::Group* root = Root()->asGroup();
    const CircleNode* disc = nullptr;
    for (unsigned i = 0; i < root->getNumChildren(); ++i)
        if (!disc)
            disc = dynamic_cast<const CircleNode*>(root->getChild(i));
    ASSERT_TRUE(disc);
    EXPECT_NEAR(disc->getRadius().as(osgEarth::Units::METERS), 6378137.0, 0.5);
    EXPECT_NEAR(disc->getArcStart().as(osgEarth::Units::DEGREES), 0.0, 1e-9);
    EXPECT_NEAR(disc->getArcEnd().as(osgEarth::Units::DEGREES), 360.0, 1e-9);
    EXPECT_TRUE(disc->getPie());
}

TEST_F(Startup, SetsTheViewUpForAGlobe)
{
    osgViewer::Viewer* view = viewer->getOSGViewer();
    EXPECT_EQ(view->getName(), "MainView");
    EXPECT_EQ(view->getThreadingModel(), osgViewer::ViewerBase::DrawThreadPerContext);
    // A drawing thread of osg's own could never use a context that Qt owns.
    EXPECT_FALSE(view->areThreadsRunning());
    EXPECT_EQ(view->getDatabasePager()->getTargetMaximumNumberOfPageLOD(), 100u);
    EXPECT_DOUBLE_EQ(view->getCamera()->getNearFarRatio(), 1e-10);
    EXPECT_EQ(view->getCamera()->getComputeNearFarMode(),
              osg::CullSettings::COMPUTE_NEAR_FAR_USING_PRIMITIVES);
    EXPECT_TRUE(
        dynamic_cast<osgEarth::Util::AutoClipPlaneCullCallback*>(view->getCamera()->getCullCallback()));
    EXPECT_DOUBLE_EQ(viewer->getManipulator()->getSettings()->getMinPitch(), -90.0);
    EXPECT_DOUBLE_EQ(viewer->getManipulator()->getSettings()->getMaxPitch(), -10.0);
    auto* sky = dynamic_cast<osgEarth::Util::SkyNode*>(findNode(Root(), "SkyNode"));
    ASSERT_TRUE(sky);
    EXPECT_FALSE(sky->getSunVisible());
}

TEST_F(Startup, StartsWithTheNoFlyZonesHiddenUnderTheDrawGroup)
{
    osg::Node* zones = findNode(viewer->GetDrawNodeGroup(), "NoFlyGroup");
    ASSERT_TRUE(dynamic_cast<osgEarth::DrapeableNode*>(zones));
    const auto* zoneRoot = dynamic_cast<osg::Switch*>(zones->getParent(0));
    ASSERT_TRUE(zoneRoot);
    CAxAncillaryProcess* process = viewer->GetAncillaryProcess();
    EXPECT_FALSE(process->NoFlyZoneMask());
    EXPECT_EQ(zoneRoot->getNodeMask(), 0u);
    process->SetNoFlyZoneMask(true);
    EXPECT_TRUE(process->NoFlyZoneMask());
    EXPECT_EQ(zoneRoot->getNodeMask(), 1u);
    process->SetNoFlyZoneMask(false);
}

TEST_F(Startup, SecondCallOnlyEndsTheMultiSelection)
{
    QSignalSpy loaded(viewer, &CAxEarthViewer::signalLoadEarth);
    const MapNode* mapBefore = viewer->getMapNode();
    const unsigned childrenBefore = Root()->asGroup()->getNumChildren();
    const unsigned sceneBefore = findNode(Root(), "SceneData")->asGroup()->getNumChildren();
    viewer->SetMultiSelect(true);

    viewer->InitEarthViewer();

    EXPECT_FALSE(viewer->IsMultiSelect());
    EXPECT_EQ(loaded.count(), 0);
    EXPECT_EQ(viewer->getMapNode(), mapBefore);
    EXPECT_EQ(Root()->asGroup()->getNumChildren(), childrenBefore);
    EXPECT_EQ(findNode(Root(), "SceneData")->asGroup()->getNumChildren(), sceneBefore);
}

TEST(Construction, GivesASceneSkeletonWithoutAMap)
{
    CAxEarthViewer bare(nullptr);
    osg::Node* root = bare.getOSGViewer()->getSceneData();
    ASSERT_TRUE(findNode(root, "SceneData"));
    EXPECT_EQ(findNode(root, "SceneData")->asGroup()->getNumChildren(), 0u);
    EXPECT_FALSE(bare.getMapNode());
    EXPECT_FALSE(bare.getSRS());
    EXPECT_FALSE(bare.GetDrawNodeGroup());
    EXPECT_FALSE(bare.GetAncillaryProcess());
    EXPECT_FALSE(bare.GetCurHandleAdapter());
    EXPECT_FALSE(bare.IsPictureComplete());
    EXPECT_EQ(bare.GetToolType(), ToolNavigate);
    EXPECT_TRUE(bare.IsEnabledPickHandle());
    EXPECT_EQ(bare.GetCoordSys(), QString());
    // Switches for parts that are not there yet are harmless.
    bare.SetSkyNodeVisible(false);
    bare.ReleaseAll();
    bare.ReleaseAll();
}

TEST(Construction, AViewerClosedWhileItsTilesLoadLeavesNothingBehind)
{
    CAxControl::GetInstance()->SetNetworkProbe([] { return false; });
    auto* second = new CAxEarthViewer(nullptr);
    osg::observer_ptr<osg::Node> root = second->getOSGViewer()->getSceneData();
    second->resize(320, 240);
    second->show();
    second->InitEarthViewer();
    ASSERT_TRUE(waitFor([&] { return second->getOSGViewer()->getFrameStamp()->getFrameNumber() > 3; }));
    second->ReleaseAll();
    delete second;
    EXPECT_FALSE(root.valid());
}

class StartupInChild : public ViewerFixture
{
protected:
    // Runs this program in another role from a folder that holds no maps.
    void Run(const QStringList& arguments, const QStringList& environment = {})
    {
        ASSERT_TRUE(folder.isValid());
        const QString copy = folder.filePath(QStringLiteral("viewer_in_child"));
        ASSERT_TRUE(QFile::copy(QCoreApplication::applicationFilePath(), copy));
        QProcess child;
        QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
        // The process ends in the middle of things, which is no leak.
        variables.insert("ASAN_OPTIONS", "detect_leaks=0");
        for (const QString& variable : environment)
            variables.insert(variable.section('=', 0, 0), variable.section('=', 1));
        child.setProcessEnvironment(variables);
        child.start(copy, arguments);
        ASSERT_TRUE(child.waitForFinished(60000));
        ASSERT_EQ(child.exitStatus(), QProcess::NormalExit);
        exitCode = child.exitCode();
        output = QString::fromUtf8(child.readAllStandardOutput());
        errors = QString::fromUtf8(child.readAllStandardError());
    }

    QTemporaryDir folder;
    int exitCode = -1;
    QString output;
    QString errors;
};

class WithoutMap : public StartupInChild, public testing::WithParamInterface<std::pair<bool, const char*>>
{
};

TEST_P(WithoutMap, AsksForTheMapOfTheNetworkStateThenTellsAndEndsWithStatusZero)
{
    const auto [network, file] = GetParam();
    Run(network ? QStringList{"--open-without-map", "--network"} : QStringList{"--open-without-map"});
    EXPECT_EQ(exitCode, 0);
    EXPECT_TRUE(errors.contains(folder.filePath(QString::fromLatin1(file)) + '\n')) << errors.toStdString();
    EXPECT_TRUE(output.startsWith("1|Route Information|")) << output.toStdString();
    EXPECT_TRUE(output.contains("|Create tile map service error.")) << output.toStdString();
}

INSTANTIATE_TEST_SUITE_P(NetworkStates, WithoutMap,
                         testing::Values(std::pair{true, "google_cn.earth"},
                                         std::pair{false, "google_cn_net_no.earth"}));

class WithoutZones : public StartupInChild
{
protected:
    /// What the operator is told when this is the zone file.
    void Open(const QString& zones)
    {
        Run({"--open-with", QCoreApplication::applicationDirPath() + "/google_cn_net_no.earth", zones});
        EXPECT_EQ(exitCode, 0);
        EXPECT_TRUE(output.startsWith("1|no-fly zone Information|")) << output.toStdString();
        EXPECT_TRUE(output.endsWith("|1 button\n")) << output.toStdString();
    }
    static QString Unreadable()
    {
        return QStringLiteral(
            "|The no-fly zone document parsing error!May file has been corrupted, please login in "
            "the case of networking for Launcher!|");
    }
};

TEST_F(WithoutZones, TellsThatThereIsNoFileAndEndsWithStatusZero)
{
    Open(folder.filePath("nowhere.db"));
    EXPECT_TRUE(output.contains("|The no-fly zone document does not exist .|")) << output.toStdString();
}

TEST_F(WithoutZones, TellsThatTheFileHoldsNoneAndEndsWithStatusZero)
{
    const QString file = folder.filePath("lifts.db");
    {
        QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE", "lifts");
        database.setDatabaseName(file);
        ASSERT_TRUE(database.open());
        QSqlQuery query(database);
        for (const char* line :
             {"CREATE TABLE no_fly_zone (lng, lat, local_id, enable, area)",
              "CREATE TABLE lift_no_fly_zone (begin_at, expired_at, area, local_ids, user_id, status)",
              "INSERT INTO lift_no_fly_zone VALUES ('', '', '1,2|3,4|5,6', 'zone', '', 2)"})
            ASSERT_TRUE(query.exec(line)) << line;
    }
    QSqlDatabase::removeDatabase("lifts");
    Open(file);
    EXPECT_TRUE(output.contains(Unreadable())) << output.toStdString();
    QFile sealed(file);
    ASSERT_TRUE(sealed.open(QIODevice::ReadOnly));
    EXPECT_FALSE(sealed.readAll().contains("SQLite")) << "it was left readable";
}

TEST_F(WithoutZones, TellsThatTheFileIsDamagedAndEndsWithStatusZero)
{
    QFile sealed(TestZones());
    ASSERT_TRUE(sealed.open(QIODevice::ReadOnly));
    QByteArray bytes = sealed.readAll();
    bytes[bytes.size() / 2] = static_cast<char>(bytes[bytes.size() / 2] ^ 1);
    QFile damaged(folder.filePath("damaged.db"));
    ASSERT_TRUE(damaged.open(QIODevice::WriteOnly));
    damaged.write(bytes);
    damaged.close();
    Open(damaged.fileName());
    EXPECT_TRUE(output.contains(Unreadable())) << output.toStdString();
}

struct Adapter
{
    const char* gl;
    const char* glsl;
    bool supported;
};

class AdapterCheck : public StartupInChild, public testing::WithParamInterface<Adapter>
{
};

TEST_P(AdapterCheck, RefusesGlslBelow330WithAMessage)
{
    // Mesa's software renderer plays the older adapters.
    Run({"--check-adapter"}, {QStringLiteral("MESA_GL_VERSION_OVERRIDE=") + GetParam().gl,
                              QStringLiteral("MESA_GLSL_VERSION_OVERRIDE=") + GetParam().glsl});
    EXPECT_EQ(exitCode, 0);
    if (GetParam().supported) {
        EXPECT_TRUE(output.startsWith("supported|0")) << output.toStdString();
    } else {
        EXPECT_TRUE(output.startsWith("refused|1|Video adapter tips|")) << output.toStdString();
        EXPECT_TRUE(
            output.contains("Unable to run application,the video adapter not support GLSL 330 .Please check "
                            "you adapter driver version or hardware supported."));
    }
}

INSTANTIATE_TEST_SUITE_P(Versions, AdapterCheck,
                         testing::Values(Adapter{"2.1", "120", false}, Adapter{"3.2COMPAT", "150", false},
                                         Adapter{"3.3COMPAT", "330", true}));
