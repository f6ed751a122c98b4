#include "host/EventLog.h"
#include "host/HostOptions.h"
#include "host/MainWindow.h"
#include "viewer/AxSceneLog.h"
#include "viewer/AxTranslations.h"

#include <QApplication>
#include <QTextStream>
#include <QTimer>

namespace {
constexpr int exitWrongUse = 2;
constexpr int exitNoGraphics = 1;
} // namespace

int main(int argc, char** argv)
{
    // Read before Qt connects to a display, so that help and complaints need none.
    std::optional<HostOptions> options;
    {
        QCoreApplication early(argc, argv);
        AxInstallTranslations(QLocale::system());
        QString error;
        options = ParseHostOptions(QCoreApplication::arguments().mid(1), error);
        if (!options) {
            QTextStream(stderr) << "AxGroundControl: " << error << Qt::endl;
            return exitWrongUse;
        }
        if (options->help) {
            QTextStream(stdout) << HostHelpText();
            return 0;
        }
    }

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("AxGroundControl"));
    QApplication::setApplicationVersion(QStringLiteral(AX_VERSION));
    AxRouteSceneLog();
    AxInstallTranslations(options->language.isEmpty() ? QLocale::system() : QLocale(options->language));

    EventLog events;
    QString error;
    if (!options->logFile.isEmpty() && !events.Open(options->logFile, error)) {
        QTextStream(stderr)
            << "AxGroundControl: "
            << HostOptions::tr("--log: '%1' cannot be written: %2").arg(options->logFile, error) << Qt::endl;
        return exitWrongUse;
    }
    MainWindow window(*options, events);
    QObject::connect(&window, &MainWindow::Done, &app, &QApplication::exit);
    window.show();
    // The window stands before the map loads, and the viewer's boxes have a running event loop.
    QTimer::singleShot(0, &window, [&window] {
        if (!window.StartViewer())
            QApplication::exit(exitNoGraphics);
    });
    return QApplication::exec();
}
