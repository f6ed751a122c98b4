#include <AxTelemetry/simulator/AxSimulatedAutopilot.h>
#include <AxTelemetry/simulator/AxSimulatedFlight.h>
#include <AxTelemetry/simulator/AxSimulatorLink.h>

#include <AxTelemetry/mavlink/AxMavParser.h>

#include <QDateTime>
#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <random>
#include <utility>
#include <vector>

namespace {
constexpr int tickMs = 20;
constexpr double longestTick = 0.25; // real seconds: after a standstill time does not leap
constexpr int mostAircraft = 250;    // the numbers above are those of ground stations
constexpr int datagram = 1200;       // bytes: what passes any network in one piece
} // namespace

struct AxSimulatorLink::State
{
    std::vector<std::unique_ptr<AxSimulatedAutopilot>> aircraft;
    AxMavParser parser;
    QByteArray heard; // from ground stations, not looked at yet
    QByteArray key;
    QTimer timer;
    QElapsedTimer clock;
    bool hasOwnTimer = true;
    bool isHearing = false; // a call of hear() is under way or on its way
    bool isTelling = false;
    double speed = 1.0;
    double now = 0.0; // real seconds since the link was made
    double silentUntil = 0.0;
    double loss = 0.0;
    std::mt19937 chance{1};
    double positions = 0.0; // a second; 0: as usual
    double attitudes = 0.0;

    AxSimulatedAutopilot::Moment Moment() const
    {
        return {now, speed, quint64(QDateTime::currentMSecsSinceEpoch()) * 1000};
    }
    bool IsLost()
    {
        // Not std::bernoulli_distribution: it differs between standard libraries.
        return loss > 0.0 && double(chance()) < loss * double(std::mt19937::max());
    }
};

AxSimulatorLink::AxSimulatorLink(QObject* parent)
    : AxTelemetryLink(parent), m_state(std::make_unique<State>())
{
    m_state->timer.setTimerType(Qt::PreciseTimer);
    m_state->timer.setInterval(tickMs);
    connect(&m_state->timer, &QTimer::timeout, this, &AxSimulatorLink::tick);
}

AxSimulatorLink::~AxSimulatorLink() = default;

int AxSimulatorLink::Add(const AxSimulatedAircraft& aircraft, Autopilot autopilot)
{
    if (Count() >= mostAircraft)
        return 0;
    const int systemId = Count() + 1;
    auto made = std::make_unique<AxSimulatedAutopilot>(aircraft, systemId, int(autopilot));
    if (m_state->positions > 0.0)
        made->SetRates(m_state->positions, m_state->attitudes);
    made->Writer().SetKey(m_state->key, 1);
    m_state->aircraft.push_back(std::move(made));
    return systemId;
}

int AxSimulatorLink::Count() const
{
    return int(m_state->aircraft.size());
}

AxSimulatedVehicle* AxSimulatorLink::Vehicle(int systemId) const
{
    if (systemId < 1 || systemId > Count())
        return nullptr;
    return &m_state->aircraft[std::size_t(systemId - 1)]->Vehicle();
}

void AxSimulatorLink::SetSpeed(double times)
{
    if (std::isfinite(times))
        m_state->speed = std::clamp(times, 0.0, 100.0);
}

double AxSimulatorLink::Speed() const
{
    return m_state->speed;
}

void AxSimulatorLink::SetRates(double positions, double attitudes)
{
    if (!(positions > 0.0) || !(attitudes > 0.0))
        return;
    m_state->positions = positions;
    m_state->attitudes = attitudes;
    for (const auto& aircraft : m_state->aircraft)
        aircraft->SetRates(positions, attitudes);
}

void AxSimulatorLink::SetLoss(double share, unsigned seed)
{
    m_state->loss = share > 0.0 ? std::min(share, 1.0) : 0.0;
    m_state->chance.seed(seed);
}

void AxSimulatorLink::Drop(double seconds)
{
    if (std::isfinite(seconds))
        m_state->silentUntil = m_state->now + seconds;
}

bool AxSimulatorLink::SetKey(const QByteArray& key)
{
    if (!m_state->parser.SetKey(key))
        return false;
    m_state->key = key;
    for (const auto& aircraft : m_state->aircraft)
        aircraft->Writer().SetKey(key, 1);
    return true;
}

void AxSimulatorLink::SetOwnTimer(bool isOn)
{
    m_state->hasOwnTimer = isOn;
    m_state->clock.start();
    if (isOn && GetPhase() == Phase::Open)
        m_state->timer.start();
    else
        m_state->timer.stop();
}

bool AxSimulatorLink::Open(QString* /*fault*/)
{
    if (GetPhase() == Phase::Open)
        return true;
    m_state->heard.clear();
    m_state->parser.Reset();
    m_state->clock.start();
    if (m_state->hasOwnTimer)
        m_state->timer.start();
    SetPhase(Phase::Open);
    return true;
}

void AxSimulatorLink::Close()
{
    m_state->timer.stop();
    m_state->heard.clear();
    for (const auto& aircraft : m_state->aircraft)
        aircraft->TakeFrames();
    SetPhase(Phase::Closed);
}

QString AxSimulatorLink::Name() const
{
    return AxSimulatorText(QT_TRANSLATE_NOOP("AxSimulator", "Simulator"));
}

void AxSimulatorLink::tick()
{
    const double passed = double(m_state->clock.nsecsElapsed()) * 1e-9;
    m_state->clock.start();
    Advance(std::min(passed, longestTick));
}

void AxSimulatorLink::Advance(double seconds)
{
    if (!(seconds > 0.0) || GetPhase() != Phase::Open)
        return;
    // In ticks as the timer's, so that what is told does not depend on who drives.
    const QPointer<AxSimulatorLink> self(this);
    for (double left = std::min(seconds, 10.0); left > 1e-9 && self && GetPhase() == Phase::Open;) {
        const double share = std::min(left, m_state->hasOwnTimer ? longestTick : tickMs * 1e-3);
        left -= share;
        m_state->now += share;
        hear();
        for (const auto& aircraft : m_state->aircraft)
            aircraft->Step(share * m_state->speed, m_state->Moment());
        tell();
    }
}

void AxSimulatorLink::Write(const QByteArray& bytes)
{
    if (GetPhase() != Phase::Open || m_state->now < m_state->silentUntil)
        return;
    m_state->heard += bytes;
    // Answered from the event loop: the answer to an answer would come within this call, and so on.
    if (m_state->isHearing || !m_state->hasOwnTimer)
        return;
    m_state->isHearing = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_state->isHearing = false;
            hear();
            tell();
        },
        Qt::QueuedConnection);
}

void AxSimulatorLink::hear()
{
    const QByteArray bytes = std::exchange(m_state->heard, {});
    const auto take = [this](const AxMavFrame& frame) {
        for (const auto& aircraft : m_state->aircraft)
            aircraft->Take(frame, m_state->Moment());
    };
    m_state->parser.Feed(bytes, take);
    m_state->parser.Flush(take);
}

void AxSimulatorLink::tell()
{
    if (GetPhase() != Phase::Open || m_state->isTelling)
        return;
    std::vector<QByteArray> datagrams(1);
    for (const auto& aircraft : m_state->aircraft)
        for (const QByteArray& frame : aircraft->TakeFrames()) {
            if (m_state->now < m_state->silentUntil || m_state->IsLost())
                continue;
            if (datagrams.back().size() + frame.size() > datagram)
                datagrams.emplace_back();
            datagrams.back() += frame;
        }
    // Whoever hears may close this link, or destroy it.
    m_state->isTelling = true;
    const QPointer<AxSimulatorLink> self(this);
    for (const QByteArray& bytes : datagrams) {
        if (!bytes.isEmpty())
            emit signalBytes(bytes);
        if (!self)
            return;
        if (GetPhase() != Phase::Open)
            break;
    }
    m_state->isTelling = false;
}
