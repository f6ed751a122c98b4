#include "host/EventLog.h"
#include "host/HostOptions.h"
#include "host/MainWindow.h"
#include "viewer/AxSceneLog.h"
#include "viewer/AxTranslations.h"

#include <AxData/CAxNoflyZoneMgr.h>

#include <QApplication>
#include <QTextStream>
#include <QTimer>

namespace {
constexpr int exitNoGraphics = 1;

// Qt itself ends with an abort and a core file where there is none.
bool IsDisplayKnown()
{
#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN)
    for (const char* variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        if (!qEnvironmentVariableIsEmpty(variable) && qgetenv(variable) != "xcb")
            return true;
    return false;
#else
    return true;
#endif
}

// Numbers are written as in the language of the texts, and all alike: coordinates, areas and lengths have no
// separators in them.
void SetNumbers(QLocale locale)
{
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    QLocale::setDefault(locale);
}

int Fail(int status, const QString& reason)
{
    QTextStream(stderr) << "AxGroundControl: " << reason << Qt::endl;
    return status;
}
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
        if (!options)
            return Fail(exitWrongUse, error);
        if (options->help) {
            QTextStream(stdout) << HostHelpText();
            return 0;
        }
        if (!CAxNoflyZoneMgr::TakeNoflyKey(options->keyFile, error))
            return Fail(exitWrongUse, error);
        if (!IsDisplayKnown())
            return Fail(exitNoGraphics, MainWindow::tr("There is no display: DISPLAY is not set."));
    }

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("AxGroundControl"));
    QApplication::setApplicationVersion(QStringLiteral(AX_VERSION));
    AxRouteSceneLog();
    const QLocale language = options->language.isEmpty() ? QLocale::system() : QLocale(options->language);
    SetNumbers(AxInstallTranslations(language) > 0 ? language : QLocale(QLocale::English));

    EventLog events;
    QString error;
    if (!options->logFile.isEmpty() && !events.Open(options->logFile, error))
        return Fail(exitWrongUse,
                    HostOptions::tr("--log: '%1' cannot be written: %2").arg(options->logFile, error));
    MainWindow window(*options, events);
    if (!window.HasOpenGl())
        return Fail(exitNoGraphics, MainWindow::tr("The display offers no OpenGL."));
    QObject::connect(&window, &MainWindow::Done, &app, &QApplication::exit);
    const QSize most = window.LargestPicture();
    if (options->size && (options->size->width() > most.width() || options->size->height() > most.height()))
        return Fail(exitWrongUse, HostOptions::tr("--size: this display draws at most %1x%2 pixels.")
                                      .arg(most.width())
                                      .arg(most.height()));
    window.show();
    // The window stands before the map loads, and the viewer's boxes have a running event loop.
    QTimer::singleShot(0, &window, [&window] {
        if (!window.StartViewer())
            QApplication::exit(exitNoGraphics);
    });
    return QApplication::exec();
}
