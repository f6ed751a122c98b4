#pragma once

#include <AxTelemetry/AxTelemetrySource.h>
#include <AxTelemetry/record/AxFlightRecord.h>

#include <QElapsedTimer>

#include <memory>

class QTimer;

/// Shows a recorded flight as if its aircraft flew now. Owned by whoever made it; GUI thread.
///
/// Playing, it emits what its time passes: every photo and message, of positions and attitudes the newest of
/// each step, so that what is emitted does not grow with the speed. In a gap of the record nothing is
/// emitted, and State() is not heard; a jump into one emits the last position before it. A jump forwards or
/// backwards emits one position, one attitude and signalPhotosTo(), however far it goes. Nothing is emitted
/// before the first Play(), SetTime() or SetIndex(). Receivers may call any operation and may delete the
/// source.
class AXTELEMETRY_EXPORT AxReplaySource : public AxTelemetrySource
{
    Q_OBJECT

public:
    /// What makes time pass while it plays.
    enum class Clock
    {
        Own,   ///< a timer
        Driven ///< Advance() alone
    };
    static constexpr double slowest = 0.1; ///< times the true speed
    static constexpr double fastest = 100.0;

    /// A null flight is one without samples; it plays nothing.
    explicit AxReplaySource(std::shared_ptr<const AxFlightRecord> flight, QObject* parent = nullptr,
                            Clock clock = Clock::Own);
    ~AxReplaySource() override;

    /// The one that it was made with; one without samples where that was null.
    const AxFlightRecord& Flight() const { return *m_flight; }
    /// That of Time(), which is the "now" of AxAircraftState::HeardAgo(), too.
    const AxAircraftState& State() const override { return m_state; }

    /// Goes on from Time(); from the beginning once the end is reached.
    void Play();
    void Pause();
    bool IsPlaying() const { return m_isPlaying; }

    /// Times the true speed, brought between slowest and fastest; what is no number changes nothing.
    void SetSpeed(double times);
    double Speed() const { return m_speed; }

    /// Jumps to a time between Begin() and End() of the flight, or to the nearer of them.
    void SetTime(quint64 time);
    /// Jumps to the time of a sample, the nearest one for an index that does not exist.
    void SetIndex(int index);

    /// Where in the flight it is: milliseconds since 1970, UTC, between Begin() and End(); 0 without samples.
    quint64 Time() const { return m_time; }
    /// The last sample that is passed; -1 in a flight without samples.
    int Index() const { return m_index; }
    /// Whether Time() lies in a gap of the record.
    bool IsInGap() const { return m_isInGap; }

    /// Lets so many true milliseconds pass, if it plays.
    void Advance(double milliseconds);

signals:
    /// IsPlaying() is another one: by Play() or Pause(), or because the end was reached.
    void signalPlaying(bool isPlaying);
    /// Index() is another one.
    void signalIndex(int index);
    /// Time() is another one.
    void signalTime(quint64 time);
    /// Of the flight's photos the first so many are taken. Emitted by jumps; while playing, signalPhoto() and
    /// picture_Idx() tell of each.
    void signalPhotosTo(int count);
    /// The end was reached by playing, which has stopped.
    void signalEnded();

private:
    struct Moment;

    Moment at(quint64 time) const;
    void go(quint64 time, bool isJump);
    void setPlaying(bool isPlaying);

    std::shared_ptr<const AxFlightRecord> m_flight;
    AxAircraftState m_state;
    QTimer* m_timer = nullptr; // null when driven
    QElapsedTimer m_sinceStep;
    double m_speed = 1.0;
    double m_rest = 0.0; // milliseconds of the flight that have passed beyond m_time, below 1
    quint64 m_time = 0;
    int m_index = -1;
    bool m_isPlaying = false;
    bool m_isInGap = false;
    bool m_isLost = false; // as signalLinkLost() and signalLinkBack() have told
    bool m_isShown = false;
    quint64 m_moves = 0; // counts calls of go(), so that one knows when a receiver has moved on
};
