#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <QLocale>
#include <QString>
#include <QStringList>
#include <QVoice>

#include <optional>

class QTextToSpeech;

/// The engine to use among the installed ones: the platform's own first, then
/// by name, because Qt lists them in an order that changes from run to run.
/// Empty if there is none.
AXEARTHVIEWER_EXPORT QString AxPreferredSpeechEngine(QStringList installed);

/// True for a text that a pilot expects in English: it has Latin letters and no Chinese character.
AXEARTHVIEWER_EXPORT bool AxIsEnglishText(const QString& text);

/// The text with words in place of "<", ">" and "&", in the language of the
/// text: speech-dispatcher leaves the signs out, and SAPI takes them for markup.
AXEARTHVIEWER_EXPORT QString AxSpokenText(const QString& text);

/**
 * The Chinese and the English voice of one engine. Belongs to whoever owns the
 * engine and is used on the engine's thread.
 */
class CAxTextToSpeechVoices
{
public:
    /// Sets Chinese, China; where the engine lacks it, another Mandarin voice;
    /// where it has none of those, what the engine had before.
    explicit CAxTextToSpeechVoices(QTextToSpeech& engine);

    /// Gives the engine the voice for a text.
    void SelectFor(const QString& text);

private:
    struct Choice
    {
        QLocale locale;
        QVoice voice;
    };
    void Use(const Choice& choice);
    std::optional<Choice> VoiceOf(const QLocale& locale);
    std::optional<Choice> FindChinese();
    std::optional<Choice> FindEnglish();

    QTextToSpeech& speech;
    std::optional<Choice> chinese;
    std::optional<Choice> english;
    bool speaksEnglish = false;
};
