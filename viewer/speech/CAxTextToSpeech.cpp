#include "viewer/speech/CAxTextToSpeech.h"
#include "viewer/speech/CAxTextToSpeechRelay.h"
#include "viewer/speech/CAxTextToSpeechVoices.h"

#include <QTextToSpeech>

#include <limits>

namespace {
// Some engines still call themselves ready for a moment after a message was
// handed to them. One that never reports must not silence later messages.
constexpr qint64 longestReportMs = 1000;
// A failed message is spoken by nobody: from here on later ones are tried again, whatever their level.
constexpr qint64 longestFailureMs = 1000;

bool ReportsLate(const QString& engine)
{
    return engine == QLatin1String("sapi") || engine == QLatin1String("winrt") ||
           engine == QLatin1String("android");
}
} // namespace

int CAxTextToSpeech::currentLevel = std::numeric_limits<int>::max();

CAxTextToSpeech::CAxTextToSpeech(QObject* parent, const QString& engine) : QObject(parent), engineName(engine)
{
}

CAxTextToSpeech::~CAxTextToSpeech() = default;

void CAxTextToSpeech::slotStartSpeech()
{
    if (speech)
        return;
    if (engineName.isEmpty())
        engineName = AxPreferredSpeechEngine(QTextToSpeech::availableEngines());
    speech = new QTextToSpeech(CAxTextToSpeechRelay::For(engineName), this);
    voices = std::make_unique<CAxTextToSpeechVoices>(*speech);
    lastStart.start();
    connect(speech, &QTextToSpeech::stateChanged, this, [this](QTextToSpeech::State state) {
        if (state != QTextToSpeech::Ready)
            unreported.invalidate();
    });
}

void CAxTextToSpeech::slotStopSpeech()
{
    if (!speech)
        return;
    unreported.invalidate();
    speech->stop();
}

void CAxTextToSpeech::slotSpeechEnabled(bool on)
{
    enabled = on;
}

void CAxTextToSpeech::slotSayCurText(const QString& text, int level)
{
    if (!enabled || !speech)
        return;
    if (IsReady()) {
        Say(text, level);
    } else if (level < currentLevel || HasFailed()) {
        speech->stop();
        Say(text, level);
    }
}

bool CAxTextToSpeech::IsReady() const
{
    return speech->state() == QTextToSpeech::Ready &&
           !(unreported.isValid() && unreported.elapsed() < longestReportMs);
}

bool CAxTextToSpeech::HasFailed() const
{
    return speech->state() == QTextToSpeech::BackendError && lastStart.elapsed() > longestFailureMs;
}

void CAxTextToSpeech::Say(const QString& text, int level)
{
    currentLevel = level;
    lastStart.start();
    unreported.invalidate();
    if (ReportsLate(engineName) && !text.trimmed().isEmpty())
        unreported.start();
    voices->SelectFor(text);
    speech->say(AxSpokenText(text));
}
