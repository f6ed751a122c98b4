#pragma once
#include "interaction/input/CAxEarthManipulator.h"
#include "viewer/CAxEarthViewer.h"

#include <AxData/CAxControl.h>
#include <AxData/CAxNoflyZoneMgr.h>

#include <osg/NodeVisitor>
#include <osgViewer/Viewer>

#include <QCoreApplication>
#include <QEvent>
#include <QSplashScreen>
#include <QStringList>
#include <QTest>

#include <gtest/gtest.h>

/// Lets events run until the predicate holds; false when the limit passes first.
template <typename Predicate> bool waitFor(Predicate predicate, int limitMs = 60000)
{
    return QTest::qWaitFor(predicate, limitMs);
}

/// The first node of that name below (or at) `from`, or null.
inline osg::Node* findNode(osg::Node* from, const std::string& name)
{
    struct Finder : osg::NodeVisitor
    {
        explicit Finder(const std::string& wanted) : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN), name(wanted)
        {
            setNodeMaskOverride(~0u);
        }
        void apply(osg::Node& node) override
        {
            if (found)
                return;
            if (node.getName() == name)
                found = &node;
            else
                traverse(node);
        }
        std::string name;
        osg::Node* found = nullptr;
    } finder(name);
    if (from)
        from->accept(finder);
    return finder.found;
}

/**
 * One viewer for all tests of a program, open on the shipped map that needs no
 * network, which lies beside the program. Tests leave it as they found it.
 */
class ViewerFixture : public testing::Test
{
public:
    static CAxEarthViewer* viewer;
    /// What start-up told in its order: progress texts, then "signalLoadEarth".
    static QStringList startupLog;

    static void Open()
    {
        CAxControl::GetInstance()->SetNetworkProbe([] { return false; });
        CAxNoflyZoneMgr::SetNoflyFile(TestZones());
        viewer = new CAxEarthViewer(nullptr);
        viewer->resize(800, 600);
        viewer->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(viewer));
        SplashWatch watch;
        qApp->installEventFilter(&watch);
        QObject::connect(viewer, &CAxEarthViewer::signalLoadEarth, viewer,
                         [] { startupLog += QStringLiteral("signalLoadEarth"); });
        viewer->InitEarthViewer();
    }

    static void Close()
    {
        if (viewer)
            viewer->ReleaseAll();
        delete viewer;
        viewer = nullptr;
    }

    /// A zone file whose zones lie far from where tests draw.
    static QString TestZones()
    {
        return QCoreApplication::applicationDirPath() + QStringLiteral("/TestZones.db");
    }
    static osg::Node* Root() { return viewer->getOSGViewer()->getSceneData(); }
    static bool WaitForPicture()
    {
        return waitFor([] { return viewer->IsPictureComplete(); });
    }

private:
    struct SplashWatch : QObject
    {
        bool eventFilter(QObject* object, QEvent* event) override
        {
            auto* splash = qobject_cast<QSplashScreen*>(object);
            if (splash && event->type() == QEvent::Show)
                QObject::connect(splash, &QSplashScreen::messageChanged, splash,
                                 [](const QString& text) { startupLog += text; });
            return false;
        }
    };
};

inline CAxEarthViewer* ViewerFixture::viewer = nullptr;
inline QStringList ViewerFixture::startupLog;

/// Opens the shared viewer before the first test and closes it after the last.
class ViewerEnvironment : public testing::Environment
{
public:
    void SetUp() override { ViewerFixture::Open(); }
    void TearDown() override { ViewerFixture::Close(); }
};
