#include <AxTelemetry/record/AxReplaySource.h>

#include <AxAlgorthm/AxConstants.h>

#include <QPointer>
#include <QTimer>

#include <algorithm>
#include <cmath>

namespace {
constexpr int stepMilliseconds = 25;
/// A program that stood still (a box that is open, a computer asleep) goes on where it was.
constexpr double longestStepMilliseconds = 250.0;

double KnownOr0(float angle)
{
    return std::isnan(angle) ? 0.0 : static_cast<double>(angle);
}
} // namespace

/// How much of each list is passed.
struct AxReplaySource::Moment
{
    int index = -1;
    std::size_t attitudes = 0;
    std::size_t photos = 0;
    std::size_t messages = 0;
    std::size_t cameras = 0;
    std::size_t states = 0;
};

AxReplaySource::AxReplaySource(std::shared_ptr<const AxFlightRecord> flight, QObject* parent, Clock clock)
    : AxTelemetrySource(parent),
      m_flight(flight ? std::move(flight) : std::make_shared<const AxFlightRecord>()),
      m_time(m_flight->Begin()), m_index(m_flight->IsEmpty() ? -1 : 0)
{
    m_state = m_flight->StateAt(m_time);
    if (clock == Clock::Driven)
        return;
    m_timer = new QTimer(this);
    m_timer->setTimerType(Qt::PreciseTimer);
    m_timer->setInterval(stepMilliseconds);
    connect(m_timer, &QTimer::timeout, this, [this] {
        const double passed = static_cast<double>(m_sinceStep.nsecsElapsed()) * 1e-6;
        m_sinceStep.start();
        Advance(std::min(passed, longestStepMilliseconds));
    });
}

AxReplaySource::~AxReplaySource() = default;

void AxReplaySource::Play()
{
    if (m_isPlaying || m_flight->IsEmpty())
        return;
    const QPointer<AxReplaySource> alive(this);
    const bool isAtEnd = m_time >= m_flight->End();
    if (isAtEnd || !m_isShown)
        go(isAtEnd ? m_flight->Begin() : m_time, true);
    if (alive)
        setPlaying(true);
}

void AxReplaySource::Pause()
{
    setPlaying(false);
}

void AxReplaySource::SetSpeed(double times)
{
    if (!std::isnan(times))
        m_speed = std::clamp(times, slowest, fastest);
}

void AxReplaySource::SetTime(quint64 time)
{
    if (m_flight->IsEmpty())
        return;
    m_rest = 0.0;
    go(std::clamp(time, m_flight->Begin(), m_flight->End()), true);
}

void AxReplaySource::SetIndex(int index)
{
    if (m_flight->IsEmpty())
        return;
    SetTime(m_flight->TimeAt(index));
}

void AxReplaySource::Advance(double milliseconds)
{
    if (!m_isPlaying || !(milliseconds > 0.0))
        return;
    const quint64 left = m_flight->End() - m_time;
    m_rest += milliseconds * m_speed;
    const bool isEnd = m_rest >= static_cast<double>(left);
    const quint64 passed = isEnd ? left : static_cast<quint64>(m_rest);
    m_rest = isEnd ? 0.0 : m_rest - static_cast<double>(passed);
    const QPointer<AxReplaySource> alive(this);
    const quint64 move = m_moves + 1;
    if (passed > 0)
        go(m_time + passed, false);
    if (!alive || !isEnd || (passed > 0 && m_moves != move) || !m_isPlaying)
        return;
    setPlaying(false);
    if (alive)
        emit signalEnded();
}

AxReplaySource::Moment AxReplaySource::at(quint64 time) const
{
    const AxFlightRecord& flight = *m_flight;
    return {flight.IndexAt(time),
            AxCountTo(flight.Attitudes(), time),
            AxCountTo(flight.Photos(), time),
            AxCountTo(flight.Messages(), time),
            AxCountTo(flight.Cameras(), time),
            AxCountTo(flight.States(), time)};
}

void AxReplaySource::go(quint64 time, bool isJump)
{
    const std::shared_ptr<const AxFlightRecord> flight = m_flight;
    const Moment before = at(m_time);
    const Moment now = at(time);
    const bool wasLost = m_isLost;
    const bool isInGap = flight->GapAt(time) != nullptr;
    const bool isAll = isJump || !m_isShown;
    const bool isOtherTime = time != m_time || !m_isShown;
    const bool isOtherIndex = now.index != m_index || !m_isShown;
    m_isShown = true;
    m_time = time;
    m_index = now.index;
    m_isInGap = isInGap;
    m_state = flight->StateAt(time);

    const QPointer<AxReplaySource> alive(this);
    const quint64 move = ++m_moves;
    const auto tell = [&](auto&& emission) {
        if (alive && m_moves == move)
            emission();
    };
    const AxFlightSample& sample = flight->Samples()[static_cast<std::size_t>(now.index)];
    if (isAll || isOtherIndex)
        tell([&] {
            emit globalPositionChanged(sample.longitude, sample.latitude, sample.altitude, sample.time);
        });
    // A record without attitudes of their own has those of its samples; what a file leaves out of one is
    // level.
    const bool isOfSample = now.attitudes == 0 || flight->Attitudes()[now.attitudes - 1].time < sample.time;
    if (isAll || (isOfSample ? isOtherIndex : now.attitudes != before.attitudes)) {
        AxFlightAttitude turn = {sample.time, sample.roll, sample.pitch, sample.yaw};
        if (!isOfSample)
            turn = flight->Attitudes()[now.attitudes - 1];
        if (!std::isnan(turn.roll) || !std::isnan(turn.pitch) || !std::isnan(turn.yaw))
            tell([&] {
                emit attitudeChanged(KnownOr0(turn.roll), KnownOr0(turn.pitch), KnownOr0(turn.yaw),
                                     turn.time);
            });
    }
    if (now.cameras > 0 && (isAll || now.cameras != before.cameras)) {
        const double angle =
            std::clamp(flight->Cameras()[now.cameras - 1].angle / DVAngleFactor, 0.0, 65535.0);
        tell([&] { emit VideoData(static_cast<quint16>(std::lround(angle)), 1, 0, 1); });
    }
    if (isAll)
        tell([&] { emit signalPhotosTo(static_cast<int>(now.photos)); });
    for (std::size_t i = before.photos; !isAll && i < now.photos; ++i) {
        const AxPhotoRecord& photo = flight->Photos()[i];
        tell([&] { emit picture_Idx(photo.index, photo.longitude, photo.latitude); });
        tell([&] { emit signalPhoto(photo); });
    }
    for (std::size_t i = before.messages; !isAll && i < now.messages; ++i)
        tell([&] { emit signalMessage(flight->Messages()[i].severity, flight->Messages()[i].text); });
    if (isInGap != wasLost)
        tell([&] {
            m_isLost = isInGap;
            if (isInGap)
                emit signalLinkLost();
            else
                emit signalLinkBack();
        });
    if (isOtherIndex)
        tell([&] { emit signalIndex(now.index); });
    if (isOtherTime)
        tell([&] { emit signalTime(time); });
    if (isAll || isOtherIndex || now.attitudes != before.attitudes || now.states != before.states ||
        now.photos != before.photos || isInGap || wasLost)
        tell([&] { emit signalState(); });
}

void AxReplaySource::setPlaying(bool isPlaying)
{
    if (isPlaying == m_isPlaying)
        return;
    m_isPlaying = isPlaying;
    m_sinceStep.start();
    if (m_timer && isPlaying) {
        m_timer->start();
    } else if (m_timer) {
        m_timer->stop();
    }
    emit signalPlaying(isPlaying);
}
