#pragma once
#include <QElapsedTimer>
#include <QTextToSpeechEngine>
#include <QTextToSpeechPlugin>
#include <QThread>
#include <QTimer>

#include <atomic>
#include <memory>

class CAxTextToSpeechVoices;
class QTextToSpeech;

/**
 * The engine that is relayed to, on its own thread.
 */
class CAxTextToSpeechWorker : public QObject
{
    Q_OBJECT
public:
    ~CAxTextToSpeechWorker() override;

    /// Creates the engine, anew where there is one.
    void Start();
    void Say(int message, const QString& text);
    void Stop();
    /// The program ends: nothing waits for the daemon any more. Any thread.
    void Leave() { leaving = true; }

signals:
    void Started(bool ready);
    void Ended(int message, bool failed);

private:
    void GiveUp();
    void OnState(QTextToSpeech::State state);

    std::unique_ptr<QTextToSpeech> speech;
    std::unique_ptr<CAxTextToSpeechVoices> voices;
    QElapsedTimer lastStart;
    std::atomic<bool> leaving{false};
    int current = 0;
    bool begun = false;
};

/**
 * A speech engine that hands everything to speech-dispatcher's engine on a
 * thread of its own. That engine waits for the daemon's answers, which takes
 * about two seconds at its start and for ever once the daemon is stuck, as it
 * is after the first message on a machine without audio.
 *
 * Lives on the GUI thread, owned by its QTextToSpeech. It counts as speaking
 * from say() on, so that the delay of the daemon's report does not show. When
 * a message takes far longer than it can, the state is BackendError and the
 * thread is told to start again; a thread that never answers is left behind.
 */
class CAxTextToSpeechRelay : public QTextToSpeechEngine
{
    Q_OBJECT
public:
    explicit CAxTextToSpeechRelay(QObject* parent = nullptr);
    ~CAxTextToSpeechRelay() override;

    /// The name of this engine.
    static QString Name();
    /// The engine to ask Qt for in order to speak through the named one.
    static QString For(const QString& engine);

    QVector<QLocale> availableLocales() const override { return {}; }
    QVector<QVoice> availableVoices() const override { return {}; }
    void say(const QString& text) override;
    void stop() override;
    void pause() override {}
    void resume() override {}
    double rate() const override { return 0.0; }
    bool setRate(double) override { return false; }
    double pitch() const override { return 0.0; }
    bool setPitch(double) override { return false; }
    QLocale locale() const override { return {QLocale::Chinese, QLocale::China}; }
    bool setLocale(const QLocale& locale) override;
    double volume() const override { return 1.0; }
    bool setVolume(double) override { return false; }
    QVoice voice() const override { return {}; }
    bool setVoice(const QVoice&) override { return false; }
    QTextToSpeech::State state() const override { return currentState; }

private:
    void SetState(QTextToSpeech::State state);
    void OnStarted(bool ready);
    void OnEnded(int message, bool failed);
    void OnOverdue();

    QThread* thread;
    CAxTextToSpeechWorker* worker;
    QTimer overdue;
    QTextToSpeech::State currentState = QTextToSpeech::Ready;
    int lastMessage = 0;
    bool started = false;
    /// The thread has not answered since the last message was overdue.
    bool stuck = false;
    /// The engine's last start or message went well.
    bool working = true;
    bool warned = false;
};

class CAxTextToSpeechRelayPlugin : public QObject, public QTextToSpeechPlugin
{
    Q_OBJECT
    Q_INTERFACES(QTextToSpeechPlugin)
    Q_PLUGIN_METADATA(IID "org.qt-project.qt.speech.tts.plugin/5.0" FILE "CAxTextToSpeechRelay.json")
public:
    QTextToSpeechEngine* createTextToSpeechEngine(const QVariantMap& parameters, QObject* parent,
                                                  QString* errorString) const override;
};
