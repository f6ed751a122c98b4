// Opens the map named on the command line and the zone file beside it with the installed library; ends
// with 0 once its picture is complete, with 1 after a minute without one.
#include <AxData/CAxNoflyZoneMgr.h>
#include <viewer/CAxEarthViewer.h>

#include <QApplication>
#include <QFileInfo>
#include <QTimer>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    CAxEarthViewer viewer(nullptr);
    viewer.resize(320, 240);
    viewer.show();
    if (argc != 2 || !viewer.CheckAdapterGLSupport())
        return 2;
    const QString map = QString::fromLocal8Bit(argv[1]);
    viewer.SetMapFile(map);
    CAxNoflyZoneMgr::SetNoflyFile(QFileInfo(map).path() + "/NoflyZone.db");
    QTimer::singleShot(0, &viewer, &CAxEarthViewer::InitEarthViewer);
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, [&viewer] {
        if (viewer.IsPictureComplete())
            QApplication::exit(0);
    });
    look.start(50);
    QTimer::singleShot(60000, [] { QApplication::exit(1); });
    const int status = QApplication::exec();
    viewer.ReleaseAll();
    return status;
}
