#include <viewer/CAxEarthViewer.h>

#include <QApplication>
#include <QTimer>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    CAxEarthViewer viewer(nullptr);
    viewer.resize(1024, 768);
    viewer.show();
    if (!viewer.CheckAdapterGLSupport())
        return 1;
    // From this signal on blocks, routes and layers may be added.
    QObject::connect(&viewer, &CAxEarthViewer::signalLoadEarth, [] { qInfo("the globe is there"); });
    QTimer::singleShot(0, &viewer, &CAxEarthViewer::InitEarthViewer);
    const int status = QApplication::exec();
    viewer.ReleaseAll();
    return status;
}
