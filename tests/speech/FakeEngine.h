#pragma once
#include <QMap>
#include <QTextToSpeechEngine>
#include <QTextToSpeechPlugin>

/**
 * A speech engine without sound. It notes what it is told, and the test says
 * when speaking begins, ends or fails.
 */
class FakeEngine : public QTextToSpeechEngine
{
    Q_OBJECT
public:
    struct Said
    {
        QString text;
        QString voice;
    };

    /// Its name, which is that of an engine known to report late.
    static QString Name() { return QStringLiteral("android"); }
    /// Whether speaking is reported only by Report().
    static bool late;
    /// Voices by the name of their locale, for engines made from now on.
    static QMap<QString, QStringList> offered;
    /// The engines that exist, oldest first.
    static QVector<FakeEngine*> all;

    FakeEngine();
    ~FakeEngine() override;

    void Report(QTextToSpeech::State newState);

    QVector<Said> said;
    int stops = 0;

    QVector<QLocale> availableLocales() const override;
    QVector<QVoice> availableVoices() const override;
    void say(const QString& text) override;
    void stop() override;
    void pause() override {}
    void resume() override {}
    double rate() const override { return 0.0; }
    bool setRate(double) override { return true; }
    double pitch() const override { return 0.0; }
    bool setPitch(double) override { return true; }
    QLocale locale() const override { return currentLocale; }
    bool setLocale(const QLocale& locale) override;
    double volume() const override { return 1.0; }
    bool setVolume(double) override { return true; }
    QVoice voice() const override { return currentVoice; }
    bool setVoice(const QVoice& voice) override;
    QTextToSpeech::State state() const override { return currentState; }

private:
    QMap<QString, QStringList> voices;
    QLocale currentLocale;
    QVoice currentVoice;
    QTextToSpeech::State currentState = QTextToSpeech::Ready;
};

class FakeSpeechPlugin : public QObject, public QTextToSpeechPlugin
{
    Q_OBJECT
    Q_INTERFACES(QTextToSpeechPlugin)
    Q_PLUGIN_METADATA(IID "org.qt-project.qt.speech.tts.plugin/5.0" FILE "FakeEngine.json")
public:
    QTextToSpeechEngine* createTextToSpeechEngine(const QVariantMap&, QObject*, QString*) const override
    {
        return new FakeEngine;
    }
};
