#include "FakeEngine.h"

#include <QtPlugin>

Q_IMPORT_PLUGIN(FakeSpeechPlugin)

bool FakeEngine::late = false;
QMap<QString, QStringList> FakeEngine::offered;
QVector<FakeEngine*> FakeEngine::all;

FakeEngine::FakeEngine() : voices(offered), currentLocale(QLocale(voices.firstKey()))
{
    currentVoice = availableVoices().front();
    all += this;
}

FakeEngine::~FakeEngine()
{
    all.removeOne(this);
}

void FakeEngine::Report(QTextToSpeech::State newState)
{
    currentState = newState;
    emit stateChanged(newState);
}

QVector<QLocale> FakeEngine::availableLocales() const
{
    QVector<QLocale> locales;
    for (const QString& name : voices.keys())
        locales += QLocale(name);
    return locales;
}

QVector<QVoice> FakeEngine::availableVoices() const
{
    QVector<QVoice> found;
    for (const QString& name : voices.value(currentLocale.name()))
        found += createVoice(name, QVoice::Unknown, QVoice::Other, {});
    return found;
}

void FakeEngine::say(const QString& text)
{
    said += {text, currentVoice.name()};
    if (!late)
        Report(QTextToSpeech::Speaking);
}

void FakeEngine::stop()
{
    ++stops;
    if (currentState == QTextToSpeech::Speaking)
        Report(QTextToSpeech::Ready);
}

bool FakeEngine::setLocale(const QLocale& locale)
{
    if (!voices.contains(locale.name()))
        return false;
    currentLocale = locale;
    currentVoice = availableVoices().front();
    return true;
}

bool FakeEngine::setVoice(const QVoice& voice)
{
    currentVoice = voice;
    return true;
}
