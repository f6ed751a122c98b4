#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>

#include <memory>

class QTextToSpeech;
class CAxTextToSpeechVoices;

/**
 * Speaks short status messages. While one is being spoken only a more urgent
 * one interrupts it; others are dropped, none is queued. After a message that
 * failed, the service is tried again with the next one a second later.
 *
 * Owned by the host, which connects its slots to its own signals and to
 * CAxEarthViewer::signalTextSpeechEnabled. GUI thread only; no slot waits for
 * the speech service. Where there is no engine, no service or no audio it
 * stays silent and says so once in the log.
 *
 * Texts with Chinese characters are spoken by a Chinese voice, texts without
 * any by an English one where the engine has both.
 */
class AXEARTHVIEWER_EXPORT CAxTextToSpeech : public QObject
{
    Q_OBJECT
public:
    /// @param engine name of a QTextToSpeech engine. Empty takes the platform's
    ///     own ("sapi" on Windows, "osx" on macOS, "speechd" before "flite" on
    ///     Linux), then the alphabetically first that is installed.
    explicit CAxTextToSpeech(QObject* parent = nullptr, const QString& engine = QString());
    ~CAxTextToSpeech() override;

public slots:
    /// Creates the engine and sets Chinese, China. Nothing is spoken before; a second call does nothing.
    void slotStartSpeech();
    /// Stops what is being spoken.
    void slotStopSpeech();
    /// Switches messages on and off; what is being spoken is finished.
    void slotSpeechEnabled(bool on);
    /// Speaks text, if its level allows it now: a lower level is more urgent.
    void slotSayCurText(const QString& text, int level);

private:
    bool IsReady() const;
    /// Whether the last message failed a while ago.
    bool HasFailed() const;
    void Say(const QString& text, int level);

    QTextToSpeech* speech = nullptr;
    bool enabled = true;
    /// Level of the message that was last started, by whichever instance.
    static int currentLevel;

    QString engineName;
    std::unique_ptr<CAxTextToSpeechVoices> voices;
    /// Runs since the last message, or the engine, was started.
    QElapsedTimer lastStart;
    /// Runs from a message's start until the engine reports that it speaks it.
    QElapsedTimer unreported;
};
