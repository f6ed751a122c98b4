#include "viewer/speech/CAxTextToSpeechVoices.h"
#include "viewer/speech/CAxTextToSpeechRelay.h"

#include <QTextToSpeech>

#include <algorithm>

namespace {
QStringList PlatformEngines()
{
#if defined(Q_OS_WIN)
    return {QStringLiteral("sapi"), QStringLiteral("winrt")};
#elif defined(Q_OS_MACOS)
    return {QStringLiteral("osx")};
#else
    return {QStringLiteral("speechd"), QStringLiteral("flite")};
#endif
}

// speech-dispatcher lists each voice again with funny variants, as "English (America)+croak".
bool IsVariant(const QVoice& voice)
{
    return voice.name().contains(QLatin1Char('+'));
}
} // namespace

QString AxPreferredSpeechEngine(QStringList installed)
{
    installed.removeAll(CAxTextToSpeechRelay::Name());
    for (const QString& name : PlatformEngines()) {
        if (installed.contains(name))
            return name;
    }
    return installed.isEmpty() ? QString() : *std::min_element(installed.cbegin(), installed.cend());
}

bool AxIsEnglishText(const QString& text)
{
    bool latin = false;
    for (const uint letter : text.toUcs4()) {
        const QChar::Script script = QChar::script(letter);
        if (script == QChar::Script_Han)
            return false;
        latin = latin || script == QChar::Script_Latin;
    }
    return latin;
}

QString AxSpokenText(const QString& text)
{
    const bool english = AxIsEnglishText(text);
    QString spoken = text;
    return spoken.replace(QLatin1Char('<'), english ? QStringLiteral(" less than ") : QStringLiteral("小于"))
        .replace(QLatin1Char('>'), english ? QStringLiteral(" more than ") : QStringLiteral("大于"))
        .replace(QLatin1Char('&'), english ? QStringLiteral(" and ") : QStringLiteral("和"));
}

CAxTextToSpeechVoices::CAxTextToSpeechVoices(QTextToSpeech& engine) : speech(engine)
{
    const Choice before{speech.locale(), speech.voice()};
    speech.setLocale(QLocale(QLocale::Chinese, QLocale::China));
    if (speech.availableLocales().isEmpty())
        return;
    chinese = FindChinese();
    english = FindEnglish();
    Use(chinese.value_or(before));
}

void CAxTextToSpeechVoices::SelectFor(const QString& text)
{
    if (!chinese || !english)
        return;
    const bool wantsEnglish = AxIsEnglishText(text);
    if (wantsEnglish != speaksEnglish)
        Use(wantsEnglish ? *english : *chinese);
    speaksEnglish = wantsEnglish;
}

void CAxTextToSpeechVoices::Use(const Choice& choice)
{
    speech.setLocale(choice.locale);
    if (!choice.voice.name().isEmpty())
        speech.setVoice(choice.voice);
}

std::optional<CAxTextToSpeechVoices::Choice> CAxTextToSpeechVoices::VoiceOf(const QLocale& locale)
{
    if (!speech.availableLocales().contains(locale))
        return std::nullopt;
    speech.setLocale(locale);
    const QVector<QVoice> voices = speech.availableVoices();
    if (voices.isEmpty())
        return std::nullopt;
    const auto plain = std::find_if_not(voices.cbegin(), voices.cend(), IsVariant);
    return Choice{locale, plain == voices.cend() ? voices.front() : *plain};
}

std::optional<CAxTextToSpeechVoices::Choice> CAxTextToSpeechVoices::FindChinese()
{
    for (const QLocale::Country country : {QLocale::China, QLocale::Singapore, QLocale::Taiwan}) {
        if (const auto found = VoiceOf(QLocale(QLocale::Chinese, country)))
            return found;
    }
    // espeak calls Mandarin "cmn", which Qt does not know and files under the C locale.
    if (!speech.availableLocales().contains(QLocale::c()))
        return std::nullopt;
    speech.setLocale(QLocale::c());
    std::optional<Choice> found;
    for (const QVoice& voice : speech.availableVoices()) {
        const QString name = voice.name();
        if (IsVariant(voice) || !name.contains(QLatin1String("Mandarin"), Qt::CaseInsensitive))
            continue;
        // espeak has Mandarin twice. "latin as English" reads its own Pinyin as
        // English words ("dian4" as "die an four"); "latin as Pinyin" speaks both well.
        const bool isSound = name.contains(QLatin1String("Pinyin"), Qt::CaseInsensitive);
        if (!found || isSound)
            found = Choice{QLocale::c(), voice};
    }
    return found;
}

std::optional<CAxTextToSpeechVoices::Choice> CAxTextToSpeechVoices::FindEnglish()
{
    for (const QLocale::Country country : {QLocale::UnitedStates, QLocale::UnitedKingdom}) {
        if (const auto found = VoiceOf(QLocale(QLocale::English, country)))
            return found;
    }
    for (const QLocale& locale : speech.availableLocales()) {
        if (locale.language() == QLocale::English)
            return VoiceOf(locale);
    }
    return std::nullopt;
}
