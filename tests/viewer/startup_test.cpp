// Start-up: its order, the scene skeleton, a second call, and what makes it fail.
#include "ModalBox.h"
#include "ViewerFixture.h"

#include "analysis/volume/AxVolumeAnalysis.h"
#include "viewer/AxSceneStartup.h"

#include <osgEarth/MapNode>
#include <osgViewer/GraphicsWindow>

#include <QFile>
#include <QPointer>
#include <QProcess>
#include <QSignalSpy>
#include <QSplashScreen>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTimer>

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
    // A drawing thread of osg's own could never use a context that Qt owns.
    EXPECT_FALSE(viewer->getOSGViewer()->areThreadsRunning());
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
    EXPECT_FALSE(bare.getMapNode() || bare.getSRS() || bare.GetDrawNodeGroup() || bare.GetAncillaryProcess());
    EXPECT_FALSE(bare.IsPictureComplete());
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

TEST(Construction, AListenerMayEndTheViewerWhenItHasLoaded)
{
    CAxControl::GetInstance()->SetNetworkProbe([] { return false; });
    QPointer<CAxEarthViewer> second = new CAxEarthViewer(nullptr);
    QObject::connect(second, &CAxEarthViewer::signalLoadEarth, [&second] { delete second; });
    second->InitEarthViewer();
    EXPECT_FALSE(second);
}

TEST(Construction, AViewerMayGoWhileItAsksAboutALargeVolume)
{
    CAxControl::GetInstance()->SetNetworkProbe([] { return false; });
    QPointer<CAxEarthViewer> second = new CAxEarthViewer(nullptr);
    second->InitEarthViewer();
    AxVolumeQuestion question;
    question.ring = {{-105.02, 37.36}, {-104.96, 37.36}, {-104.96, 37.40}};
    question.cell = 2.0;
    ModalBox box;
    box.answers = {[&second](QDialog&) { delete second; }};
    EXPECT_FALSE(second->GetVolumeAnalysis()->Ask("large", "large", question));
    EXPECT_TRUE(waitFor([&] { return !second; }));
}

TEST(Construction, TheSplashScreenMayBeClosedWhileTheMapLoads)
{
    CAxControl::GetInstance()->SetNetworkProbe([] { return false; });
    CAxEarthViewer second(nullptr);
    bool isClosed = false;
    QTimer closing;
    QObject::connect(&closing, &QTimer::timeout, [&] {
        if (auto* splash = second.findChild<QSplashScreen*>())
            isClosed |= splash->close();
    });
    closing.start(0);
    second.InitEarthViewer();
    EXPECT_TRUE(isClosed);
    EXPECT_TRUE(second.getMapNode());
}

TEST(Construction, WithoutASkyTheMapHangsUnderTheRoot)
{
    osg::ref_ptr<MapNode> map = new MapNode;
    osg::ref_ptr<osg::Group> root = new osg::Group;
    osg::ref_ptr<osgViewer::Viewer> view = new osgViewer::Viewer;
    AxSceneStartup::AttachSky(nullptr, map, *view, root);
    EXPECT_TRUE(root->containsNode(map));
}

class StartupInChild : public ViewerFixture
{
protected:
    // Runs this program in another role from a folder that holds no maps.
    void Run(const QStringList& arguments, const QStringList& environment = {})
    {
        ASSERT_TRUE(folder.isValid());
        const QString copy = folder.filePath(QStringLiteral("viewer_in_child"));
        ASSERT_TRUE(QFile::exists(copy) || QFile::copy(QCoreApplication::applicationFilePath(), copy));
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

TEST_F(StartupInChild, WithoutMapAsksForThatOfTheNetworkStateThenTellsAndEndsWithStatusZero)
{
    for (const auto& [network, file] :
         {std::pair{true, "google_cn.earth"}, {false, "google_cn_net_no.earth"}}) {
        Run(network ? QStringList{"--open-without-map", "--network"} : QStringList{"--open-without-map"});
        EXPECT_EQ(exitCode, 0);
        EXPECT_TRUE(errors.contains(folder.filePath(QString::fromLatin1(file)) + '\n'))
            << errors.toStdString();
        EXPECT_TRUE(output.startsWith("1|Route Information|")) << output.toStdString();
        EXPECT_TRUE(output.contains("|Create tile map service error.")) << output.toStdString();
        EXPECT_TRUE(output.contains(folder.filePath(QString::fromLatin1(file)) + "\nThere is no such file."))
            << output.toStdString();
    }
}

TEST_F(StartupInChild, WithoutZonesTellsWhyAndEndsWithStatusZero)
{
    const QString unreadable = "|The no-fly zone document parsing error!May file has been corrupted, please "
                               "login in the case of networking for Launcher!|";
    const QString liftsAlone = folder.filePath("lifts.db");
    {
        QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE", "lifts");
        database.setDatabaseName(liftsAlone);
        ASSERT_TRUE(database.open());
        QSqlQuery query(database);
        for (const char* line :
             {"CREATE TABLE no_fly_zone (lng, lat, local_id, enable, area)",
              "CREATE TABLE lift_no_fly_zone (begin_at, expired_at, area, local_ids, user_id, status)",
              "INSERT INTO lift_no_fly_zone VALUES ('', '', '1,2|3,4|5,6', 'zone', '', 2)"})
            ASSERT_TRUE(query.exec(line)) << line;
    }
    QSqlDatabase::removeDatabase("lifts");
    const QString damaged = folder.filePath("damaged.db");
    ASSERT_TRUE(QFile::copy(TestZones(), damaged));
    QFile file(damaged);
    char byte = 0;
    ASSERT_TRUE(file.open(QIODevice::ReadWrite) && file.seek(file.size() / 2) && file.getChar(&byte));
    ASSERT_TRUE(file.seek(file.size() / 2) && file.putChar(static_cast<char>(byte ^ 1)));
    file.close();
    const struct
    {
        QString zones, told, cause;
    } rows[] = {
        {folder.filePath("nowhere.db"), "|The no-fly zone document does not exist .|",
         "There is no such file."},
        {liftsAlone, unreadable, "It holds no zone."},
        {damaged, unreadable, "damaged.db\": "},
    };
    for (const auto& [zones, told, cause] : rows) {
        SCOPED_TRACE(zones.toStdString());
        Run({"--open-with", QCoreApplication::applicationDirPath() + "/google_cn_net_no.earth", zones});
        EXPECT_EQ(exitCode, 0);
        EXPECT_TRUE(output.startsWith("1|no-fly zone Information|")) << output.toStdString();
        EXPECT_TRUE(output.contains(told)) << output.toStdString();
        EXPECT_TRUE(output.contains('|' + zones + '\n') && output.contains(cause)) << output.toStdString();
        EXPECT_TRUE(output.endsWith("|1 button\n")) << output.toStdString();
    }
    QFile sealed(liftsAlone);
    ASSERT_TRUE(sealed.open(QIODevice::ReadOnly));
    EXPECT_FALSE(sealed.readAll().contains("SQLite")) << "it was left readable";
}

TEST_F(StartupInChild, LeavesNoNodeBehindWhenTheViewerIsGone)
{
    Run({"--open-and-close", QCoreApplication::applicationDirPath() + "/google_cn_net_no.earth",
         TestZones()});
    EXPECT_EQ(exitCode, 0) << errors.toStdString();
    EXPECT_EQ(output, "opened\n");
}

TEST_F(StartupInChild, RefusesGlslBelow330WithAMessage)
{
    const struct
    {
        const char* gl;
        const char* glsl;
        bool supported;
    } rows[] = {{"2.1", "120", false}, {"3.2COMPAT", "150", false}, {"3.3COMPAT", "330", true}};
    for (const auto& row : rows) {
        // Mesa's software renderer plays the older adapters.
        Run({"--check-adapter"}, {QStringLiteral("MESA_GL_VERSION_OVERRIDE=") + row.gl,
                                  QStringLiteral("MESA_GLSL_VERSION_OVERRIDE=") + row.glsl});
        EXPECT_EQ(exitCode, 0);
        EXPECT_TRUE(output.startsWith(row.supported ? "supported|0" : "refused|1|Video adapter tips|"))
            << output.toStdString();
        EXPECT_NE(output.contains("the video adapter not support GLSL 330"), row.supported);
    }
}
