#include "viewer/speech/AxSpeechDaemon.h"

#include <QDeadlineTimer>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QStringList>
#include <QTcpSocket>

#include <memory>

namespace {
constexpr int lookEveryMs = 50;
constexpr int longestConnectMs = 1000;
constexpr quint16 usualPort = 6560;

// As the client library looks for it, which is GLib's way: the user's cache where there is no run-time
// folder.
QString UsualSocket()
{
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const QString folder =
        runtime.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) : runtime;
    return folder + QStringLiteral("/speech-dispatcher/speechd.sock");
}

// Null where nobody listens.
std::unique_ptr<QIODevice> Connect()
{
    // "unix_socket:PATH" or "inet_socket:HOST:PORT"; all but the first word may be missing.
    const QStringList address = qEnvironmentVariable("SPEECHD_ADDRESS").split(QLatin1Char(':'));
    const QString second = address.value(1);
    if (address.first() == QLatin1String("inet_socket")) {
        auto socket = std::make_unique<QTcpSocket>();
        const quint16 port = address.value(2).toUShort();
        socket->connectToHost(second.isEmpty() ? QStringLiteral("127.0.0.1") : second,
                              port ? port : usualPort);
        if (!socket->waitForConnected(longestConnectMs))
            return nullptr;
        return socket;
    }
    auto socket = std::make_unique<QLocalSocket>();
    socket->connectToServer(second.isEmpty() ? UsualSocket() : second);
    if (!socket->waitForConnected(longestConnectMs))
        return nullptr;
    return socket;
}
} // namespace

bool AxIsSpeechDaemonSilent(const std::atomic<bool>& cancelled, int limitMs)
{
    const std::unique_ptr<QIODevice> connection = Connect();
    if (!connection)
        return false;
    // Answered with a number and a text, or with an error, which is an answer as well.
    connection->write("HELP\r\n");
    for (QDeadlineTimer limit(limitMs); !cancelled && !limit.hasExpired();)
        if (connection->waitForReadyRead(lookEveryMs))
            return false;
    return true;
}
