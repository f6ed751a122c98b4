#include "ModalBox.h"
#include "ViewerFixture.h"

#include "viewer/AxSceneLog.h"
#include "viewer/overlay/AxHeadUpText.h"

#include <osg/observer_ptr>
#include <osgEarth/MapNode>

#include <QApplication>
#include <QTextStream>

#include <cstdlib>

namespace {
// Parts of the viewer's behaviour end the process or need another driver, so
// tests run this program again in one of these roles.
ModalBox* answered = nullptr;

int OpenInVain(bool network, const QString& map, const QString& zones)
{
    CAxControl::GetInstance()->SetNetworkProbe([network] { return network; });
    CAxNoflyZoneMgr::SetNoflyFile(zones);
    CAxEarthViewer viewer(nullptr);
    viewer.SetMapFile(map);
    viewer.show();
    answered = new ModalBox;
    std::atexit([] {
        QTextStream(stdout) << answered->count << '|' << answered->title << '|' << answered->texts.join('|')
                            << '|' << answered->buttons.size() << " button" << Qt::endl;
    });
    viewer.InitEarthViewer();
    constexpr int stillHere = 99;
    return stillHere;
}

// Tells whether it opened, and what of the scene is left when the viewer is not.
int OpenAndClose(const QString& map, const QString& zones)
{
    CAxControl::GetInstance()->SetNetworkProbe([] { return false; });
    CAxNoflyZoneMgr::SetNoflyFile(zones);
    osg::observer_ptr<osg::Node> mapNode;
    osg::observer_ptr<osg::Node> texts;
    osg::observer_ptr<osg::Referenced> manipulator;
    {
        CAxEarthViewer viewer(nullptr);
        viewer.SetMapFile(map);
        viewer.show();
        viewer.InitEarthViewer();
        mapNode = viewer.getMapNode();
        texts = AxHeadUpText::Instance().GetCamera();
        manipulator = viewer.getManipulator();
        QTextStream(stdout) << (mapNode.valid() && texts.valid() ? "opened" : "closed") << Qt::endl;
    }
    for (const auto& [name, isLeft] :
         {std::pair{"map", mapNode.valid()}, {"texts", texts.valid()}, {"manipulator", manipulator.valid()}})
        if (isLeft)
            QTextStream(stdout) << name << Qt::endl;
    return 0;
}

int CheckAdapter()
{
    CAxEarthViewer viewer(nullptr);
    ModalBox box;
    const bool good = viewer.CheckAdapterGLSupport();
    QTextStream(stdout) << (good ? "supported" : "refused") << '|' << box.count << '|' << box.title << '|'
                        << box.texts.join('|') << Qt::endl;
    return 0;
}
} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    AxRouteSceneLog();
    const QStringList arguments = QApplication::arguments();
    if (arguments.contains(QStringLiteral("--open-without-map")))
        return OpenInVain(arguments.contains(QStringLiteral("--network")), QString(), QString());
    if (arguments.value(1) == QStringLiteral("--open-with"))
        return OpenInVain(false, arguments.value(2), arguments.value(3));
    if (arguments.value(1) == QStringLiteral("--open-and-close"))
        return OpenAndClose(arguments.value(2), arguments.value(3));
    if (arguments.contains(QStringLiteral("--check-adapter")))
        return CheckAdapter();

    testing::InitGoogleTest(&argc, argv);
    testing::AddGlobalTestEnvironment(new ViewerEnvironment);
    return RUN_ALL_TESTS();
}
