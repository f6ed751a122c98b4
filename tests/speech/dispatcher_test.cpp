// The engine of speech-dispatcher, with a daemon of the test's own that plays
// into nowhere, with one that never answers, and with none.
#include "Announcer.h"

#include <QElapsedTimer>
#include <QFile>
#include <QLocalSocket>
#include <QProcess>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTextToSpeech>

namespace {
constexpr int daemonLimitMs = 100000;
#if defined(__SANITIZE_THREAD__)
// The daemon's client takes minutes to list its 13,000 voices, and leaves a thread behind.
constexpr bool usesDaemon = false;
#else
constexpr bool usesDaemon = true;
#endif

class Dispatcher : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!QTextToSpeech::availableEngines().contains("speechd"))
            GTEST_SKIP() << "Qt's plug-in for speech-dispatcher is not installed";
#if defined(__SANITIZE_ADDRESS__)
        GTEST_SKIP() << "the daemon's client library leaks";
#endif
        ASSERT_TRUE(folder.isValid());
    }

    void TearDown() override
    {
        qunsetenv("SPEECHD_ADDRESS");
        if (daemon.state() == QProcess::NotRunning)
            return;
        daemon.terminate();
        if (!daemon.waitForFinished(daemonLimitMs))
            daemon.kill();
    }

    /// False if this machine has no daemon that can speak: asked by the
    /// daemon's own client.
    bool StartDaemon()
    {
        if (!usesDaemon || QStandardPaths::findExecutable("speech-dispatcher").isEmpty())
            return false;
        const auto write = [this](const QString& name, const QByteArray& text) {
            QFile file(folder.filePath(name));
            return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
        };
        if (!write(".libao", "default_driver=null\n") ||
            !write("speechd.conf", "LogLevel 1\nAudioOutputMethod \"libao\"\n"
                                   "AddModule \"espeak-ng\" \"sd_espeak-ng\"\nDefaultModule espeak-ng\n"))
            return false;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("HOME", folder.path());
        daemon.setProcessEnvironment(environment);
        daemon.setStandardErrorFile(QProcess::nullDevice());
        daemon.setStandardOutputFile(QProcess::nullDevice());
        const QString socket = folder.filePath("socket");
        daemon.start("speech-dispatcher", {"-s", "-t", "0", "-S", socket, "-P", folder.filePath("pid"), "-C",
                                           folder.path(), "-L", folder.path()});
        qputenv("SPEECHD_ADDRESS", "unix_socket:" + socket.toLocal8Bit());
        const bool answers = QTest::qWaitFor(
            [&] {
                QLocalSocket knock;
                knock.connectToServer(socket);
                return knock.state() == QLocalSocket::ConnectedState ||
                       daemon.state() == QProcess::NotRunning;
            },
            daemonLimitMs);
        QProcess client;
        client.start("spd-say", {"--wait", "ready"});
        constexpr int clientLimitMs = 20000;
        return answers && client.waitForFinished(clientLimitMs) &&
               client.exitStatus() == QProcess::NormalExit && client.exitCode() == 0;
    }

    static bool WaitFor(CAxTextToSpeech& announcer, QTextToSpeech::State state)
    {
        const auto* engine = announcer.findChild<QTextToSpeech*>();
        return QTest::qWaitFor([&] { return engine->state() == state; }, daemonLimitMs);
    }

    QTemporaryDir folder;
    QProcess daemon;
};
} // namespace

TEST_F(Dispatcher, SpeaksChineseAndEnglishToTheEndAndOutlivesTheDaemonsDeath)
{
    if (!StartDaemon() || daemon.state() != QProcess::Running)
        GTEST_SKIP() << "speech-dispatcher does not speak here";
    CAxTextToSpeech announcer(nullptr, "speechd");
    announcer.slotStartSpeech();
    const auto* engine = announcer.findChild<QTextToSpeech*>();
    ASSERT_TRUE(engine);
    // The first is handed over while the daemon's list of voices is still being read.
    for (const char* text : {"电池电量低", "Battery low", "1 < 2 & <break/>"}) {
        announcer.slotSayCurText(text, 2);
        EXPECT_EQ(engine->state(), QTextToSpeech::Speaking) << text;
        EXPECT_TRUE(WaitFor(announcer, QTextToSpeech::Ready)) << text;
    }
    announcer.slotSayCurText(QString("电池电量低 ").repeated(1000), 2);
    announcer.slotSayCurText("Obstacle", 1);
    EXPECT_TRUE(WaitFor(announcer, QTextToSpeech::Ready));
    announcer.slotSayCurText(QString("电池电量低 ").repeated(1000), 2);
    announcer.slotStopSpeech();
    EXPECT_EQ(engine->state(), QTextToSpeech::Ready);

    daemon.kill();
    ASSERT_TRUE(daemon.waitForFinished(daemonLimitMs));
    announcer.slotSayCurText("Battery low", 5);
    announcer.slotSayCurText("Obstacle", 1);
    EXPECT_TRUE(WaitFor(announcer, QTextToSpeech::BackendError));
}

TEST_F(Dispatcher, MissingDaemonIsSilentAndSaidOnce)
{
    qputenv("SPEECHD_ADDRESS", "unix_socket:" + folder.filePath("nobody").toLocal8Bit());
    LogLines log;
    CAxTextToSpeech announcer(nullptr, "speechd");
    announcer.slotStartSpeech();
    ASSERT_TRUE(WaitFor(announcer, QTextToSpeech::BackendError));
    for (const int level : {3, 2, 1})
        announcer.slotSayCurText("Battery low", level);
    announcer.slotStopSpeech();
    ASSERT_TRUE(WaitFor(announcer, QTextToSpeech::BackendError));
    EXPECT_LE(LogLines::lines.size(), 1) << LogLines::lines.join('\n').toStdString();
}

TEST_F(Dispatcher, NeverWaitsForADaemonThatDoesNotAnswer)
{
    // Left open: Qt's plug-in does not survive a connection that ends before the first answer.
    static auto* const silent = new QTcpServer;
    ASSERT_TRUE(silent->listen(QHostAddress::LocalHost));
    qputenv("SPEECHD_ADDRESS", "inet_socket:127.0.0.1:" + QByteArray::number(silent->serverPort()));
    auto announcer = std::make_unique<CAxTextToSpeech>(nullptr, "speechd");
    announcer->slotStartSpeech();
    announcer->slotSayCurText("Battery low", 2);
    announcer->slotSayCurText("Obstacle", 1);
    ASSERT_TRUE(QTest::qWaitFor([&] { return silent->hasPendingConnections(); }, daemonLimitMs));
    announcer->slotStopSpeech();
    announcer->slotSayCurText("Battery low", 3);
    EXPECT_EQ(announcer->findChild<QTextToSpeech*>()->state(), QTextToSpeech::Speaking);
    QElapsedTimer farewell;
    farewell.start();
    announcer.reset();
    EXPECT_LT(farewell.elapsed(), 1500);
}
