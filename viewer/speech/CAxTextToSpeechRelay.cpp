#include "viewer/speech/CAxTextToSpeechRelay.h"
#include "scene/base/AxViewerLog.h"
#include "viewer/speech/AxBrokenPipe.h"
#include "viewer/speech/AxSpeechDaemon.h"
#include "viewer/speech/CAxTextToSpeechVoices.h"

#include <QMutex>
#include <QTextToSpeech>
#include <QtPlugin>
#include <QVector>

Q_IMPORT_PLUGIN(CAxTextToSpeechRelayPlugin)

namespace {
// Starting the daemon and reading its 13,000 voices takes two seconds, and
// fifteen were seen on a machine with much else to do.
constexpr int longestStartMs = 60000;
constexpr int longestAnswerMs = 10000;
constexpr int longestBeginMs = 2000;
// Espeak needs a quarter of a second for a Chinese character, less for a letter.
constexpr int longestCharacterMs = 500;
// An engine whose daemon answers is there in two seconds.
constexpr unsigned long longestFarewellMs = 3000;
constexpr unsigned long shortestFarewellMs = 500;
// Each attempt to reach a missing daemon writes a line into the log.
constexpr qint64 shortestRetryMs = 60000;

QString RelayedEngine()
{
    return QStringLiteral("speechd");
}
} // namespace

CAxTextToSpeechWorker::~CAxTextToSpeechWorker()
{
    GiveUp();
}

void CAxTextToSpeechWorker::GiveUp()
{
    // An engine that never reached its daemon tries again when it is deleted,
    // which takes time and writes into the log. So it stays.
    static QMutex mutex;
    static QVector<QTextToSpeech*> failed;
    const QMutexLocker lock(&mutex);
    if (speech && !voices)
        failed += speech.release();
    voices.reset();
    speech.reset();
}

void CAxTextToSpeechWorker::Start()
{
    GiveUp();
    // The daemon's client library writes on although the daemon has died.
    AxSurviveBrokenPipes();
    lastStart.start();
    if (AxIsSpeechDaemonSilent(leaving, longestStartMs)) {
        emit Started(false);
        return;
    }
    speech = std::make_unique<QTextToSpeech>(RelayedEngine());
    const bool ready = speech->state() == QTextToSpeech::Ready;
    if (ready) {
        voices = std::make_unique<CAxTextToSpeechVoices>(*speech);
        connect(speech.get(), &QTextToSpeech::stateChanged, this, &CAxTextToSpeechWorker::OnState);
    }
    emit Started(ready);
}

void CAxTextToSpeechWorker::Say(int message, const QString& text)
{
    // Also the way back: the daemon may have been installed or repaired meanwhile.
    if (!voices && (!lastStart.isValid() || lastStart.elapsed() > shortestRetryMs))
        Start();
    current = message;
    begun = false;
    if (!voices) {
        emit Ended(current, true);
        return;
    }
    voices->SelectFor(text);
    speech->say(text);
}

void CAxTextToSpeechWorker::Stop()
{
    begun = false;
    if (voices)
        speech->stop();
}

void CAxTextToSpeechWorker::OnState(QTextToSpeech::State state)
{
    if (state == QTextToSpeech::Speaking)
        begun = true;
    else if (state == QTextToSpeech::BackendError || (state == QTextToSpeech::Ready && begun))
        emit Ended(current, state == QTextToSpeech::BackendError);
    else if (state == QTextToSpeech::Ready)
        // The end of the interrupted message, unless the daemon dropped this one with it.
        QTimer::singleShot(longestBeginMs, this, [this, message = current] {
            if (message == current && !begun)
                emit Ended(message, false);
        });
}

CAxTextToSpeechRelay::CAxTextToSpeechRelay(QObject* parent)
    : QTextToSpeechEngine(parent), thread(new QThread), worker(new CAxTextToSpeechWorker)
{
    overdue.setSingleShot(true);
    connect(&overdue, &QTimer::timeout, this, &CAxTextToSpeechRelay::OnOverdue);
    connect(worker, &CAxTextToSpeechWorker::Started, this, &CAxTextToSpeechRelay::OnStarted);
    connect(worker, &CAxTextToSpeechWorker::Ended, this, &CAxTextToSpeechRelay::OnEnded);
    connect(thread, &QThread::finished, worker, &QObject::deleteLater);
    worker->moveToThread(thread);
    thread->setObjectName(QStringLiteral("AxSpeech"));
    thread->start();
    overdue.start(longestStartMs);
    QMetaObject::invokeMethod(worker, &CAxTextToSpeechWorker::Start);
}

CAxTextToSpeechRelay::~CAxTextToSpeechRelay()
{
    worker->Leave();
    thread->quit();
    // A thread that waits for a stuck daemon cannot be ended; the process can.
    if (thread->wait(stuck ? shortestFarewellMs : longestFarewellMs))
        delete thread;
}

QString CAxTextToSpeechRelay::Name()
{
    return QStringLiteral("axrelay");
}

QString CAxTextToSpeechRelay::For(const QString& engine)
{
    const bool relayed = engine == RelayedEngine() && QTextToSpeech::availableEngines().contains(Name());
    return relayed ? Name() : engine;
}

bool CAxTextToSpeechRelay::setLocale(const QLocale& locale)
{
    return locale == this->locale();
}

void CAxTextToSpeechRelay::say(const QString& text)
{
    if (text.trimmed().isEmpty())
        return;
    const int message = ++lastMessage;
    overdue.start((started ? longestAnswerMs : longestStartMs) + longestCharacterMs * text.size());
    QMetaObject::invokeMethod(worker, [worker = worker, message, text] { worker->Say(message, text); });
    SetState(QTextToSpeech::Speaking);
}

void CAxTextToSpeechRelay::stop()
{
    ++lastMessage;
    QMetaObject::invokeMethod(worker, &CAxTextToSpeechWorker::Stop);
    if (currentState == QTextToSpeech::Speaking) {
        overdue.stop();
        SetState(working ? QTextToSpeech::Ready : QTextToSpeech::BackendError);
    }
}

void CAxTextToSpeechRelay::SetState(QTextToSpeech::State state)
{
    if (state == currentState)
        return;
    currentState = state;
    emit stateChanged(state);
}

void CAxTextToSpeechRelay::OnStarted(bool ready)
{
    started = true;
    stuck = false;
    working = ready;
    if (!ready) {
        overdue.stop();
        SetState(QTextToSpeech::BackendError);
    } else if (currentState != QTextToSpeech::Speaking) {
        overdue.stop();
        SetState(QTextToSpeech::Ready);
    }
}

void CAxTextToSpeechRelay::OnEnded(int message, bool failed)
{
    if (message != lastMessage)
        return;
    overdue.stop();
    working = !failed;
    SetState(failed ? QTextToSpeech::BackendError : QTextToSpeech::Ready);
}

void CAxTextToSpeechRelay::OnOverdue()
{
    if (!warned)
        qCWarning(axViewerLog) << "speech-dispatcher does not answer; announcements may stay silent";
    warned = true;
    stuck = true;
    working = false;
    ++lastMessage;
    SetState(QTextToSpeech::BackendError);
    QMetaObject::invokeMethod(worker, &CAxTextToSpeechWorker::Start);
}

QTextToSpeechEngine* CAxTextToSpeechRelayPlugin::createTextToSpeechEngine(const QVariantMap&, QObject* parent,
                                                                          QString*) const
{
    return new CAxTextToSpeechRelay(parent);
}
