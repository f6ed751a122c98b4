#pragma once

#include <AxTelemetry/AxAircraftState.h>

#include <QStringList>

#include <cstddef>
#include <limits>
#include <memory>
#include <optional>
#include <vector>

// Times are milliseconds since 1970, UTC; in a file that knows no date they are those of the file's own
// clock.

/// Whether a time has a date: clocks that nobody has set count from 0.
constexpr bool AxHasDate(quint64 time)
{
    return time >= 946684800000; // the year 2000
}

/// Radians, as in AxTelemetrySource::attitudeChanged(); NaN where unknown.
struct AXTELEMETRY_EXPORT AxFlightAttitude
{
    quint64 time = 0;                                      ///< when the aircraft was so, milliseconds
    float roll = std::numeric_limits<float>::quiet_NaN();  ///< right wing down
    float pitch = std::numeric_limits<float>::quiet_NaN(); ///< nose up
    float yaw = std::numeric_limits<float>::quiet_NaN();   ///< clockwise from north
};

/// Where an aircraft was.
struct AXTELEMETRY_EXPORT AxFlightSample
{
    quint64 time = 0;                                                ///< when it was there, milliseconds
    double longitude = 0.0;                                          ///< degrees
    double latitude = 0.0;                                           ///< degrees
    double altitude = 0.0;                                           ///< metres above the ellipsoid
    float heightAboveHome = std::numeric_limits<float>::quiet_NaN(); ///< metres; NaN unknown
    /// The attitude at that time, as in AxFlightAttitude.
    float roll = std::numeric_limits<float>::quiet_NaN();
    float pitch = std::numeric_limits<float>::quiet_NaN();
    float yaw = std::numeric_limits<float>::quiet_NaN();
};

/// What an aircraft has said.
struct AXTELEMETRY_EXPORT AxFlightMessage
{
    quint64 time = 0; ///< when it was heard, milliseconds
    int severity = 6; ///< MAV_SEVERITY: 0 emergency to 7 debug
    QString text;     ///< for people, in the words of the autopilot
};

/// Where its camera looked from a time on.
struct AXTELEMETRY_EXPORT AxFlightCamera
{
    quint64 time = 0;              ///< milliseconds
    double angle = 0.0;            ///< degrees from straight down towards ahead
    std::optional<double> heading; ///< degrees clockwise from north, 0 to 360; none: that of the aircraft
};

/// All that was known at a time.
struct AXTELEMETRY_EXPORT AxFlightState
{
    quint64 time = 0;      ///< milliseconds
    AxAircraftState state; ///< it holds until the next one
};

/// Silence between two times, both of them heard. One that lasts until the end of its flight ends just
/// behind it.
struct AXTELEMETRY_EXPORT AxFlightGap
{
    quint64 begin = 0; ///< the last that was heard before it, milliseconds
    quint64 end = 0;   ///< the first that was heard after it, milliseconds
};

/// The recorded flight of one aircraft. A reader fills it in order of time; from then on nobody changes it,
/// and any thread may read it. It begins with its first sample and ends with the last that was heard. A
/// flight without samples is no flight: begin and end are 0.
class AXTELEMETRY_EXPORT AxFlightRecord
{
public:
    /// A silence longer than this, in milliseconds, is a gap.
    explicit AxFlightRecord(quint64 longestSilence = 3000) : m_longestSilence(longestSilence) {}

    QString name;     ///< for people
    int systemId = 0; ///< of the aircraft in its file; 0 where files have no such number

    /// Each adds to the end, and refuses (false) what is older than the last of its kind. Samples and photos
    /// must be on the globe, samples must have an altitude.
    bool AddSample(const AxFlightSample& sample);
    bool AddAttitude(const AxFlightAttitude& attitude);
    bool AddPhoto(const AxPhotoRecord& photo);
    bool AddMessage(const AxFlightMessage& message);
    bool AddCamera(const AxFlightCamera& camera);
    bool AddState(const AxFlightState& state);
    /// The component that flies was heard; samples and attitudes say so, too. What a camera or another
    /// component of the aircraft tells does not end a silence.
    void AddHeard(quint64 time);
    /// The last: some component of the aircraft was heard up to this time.
    void EndAt(quint64 time);
    /// Makes room for so many samples.
    void Reserve(std::size_t samples) { m_samples.reserve(samples); }

    /// What has been added, each list in order of time. They belong to the record.
    const std::vector<AxFlightSample>& Samples() const { return m_samples; }
    const std::vector<AxFlightAttitude>& Attitudes() const { return m_attitudes; }
    const std::vector<AxPhotoRecord>& Photos() const { return m_photos; }
    const std::vector<AxFlightMessage>& Messages() const { return m_messages; }
    const std::vector<AxFlightCamera>& Cameras() const { return m_cameras; }
    const std::vector<AxFlightState>& States() const { return m_states; }
    /// In order of time.
    const std::vector<AxFlightGap>& Gaps() const { return m_gaps; }

    /// Without samples it is no flight, whatever else was heard.
    bool IsEmpty() const { return m_samples.empty(); }
    /// The time of the first sample, milliseconds; 0 without samples.
    quint64 Begin() const { return IsEmpty() ? 0 : m_samples.front().time; }
    /// The time of the last that was heard, milliseconds; 0 without samples.
    quint64 End() const { return IsEmpty() ? 0 : m_end; }

    /// The last sample at a time or before it, 0 for earlier times; -1 without samples.
    int IndexAt(quint64 time) const;
    /// The time of a sample, that of the nearest one for an index that does not exist; 0 without samples.
    quint64 TimeAt(int index) const;
    /// The gap that a time lies in; null outside, and for times at which something was heard.
    const AxFlightGap* GapAt(quint64 time) const;
    /// The panel's values of a time. In a gap the aircraft is not heard and its values are the last ones.
    AxAircraftState StateAt(quint64 time) const;

private:
    quint64 m_longestSilence;
    quint64 m_lastHeard = 0;
    quint64 m_end = 0;
    bool m_isHeard = false;
    std::vector<AxFlightSample> m_samples;
    std::vector<AxFlightAttitude> m_attitudes;
    std::vector<AxPhotoRecord> m_photos;
    std::vector<AxFlightMessage> m_messages;
    std::vector<AxFlightCamera> m_cameras;
    std::vector<AxFlightState> m_states;
    std::vector<AxFlightGap> m_gaps;
};

/// How many of a list in order of time are at a time or before it.
template <typename Timed> std::size_t AxCountTo(const std::vector<Timed>& list, quint64 time)
{
    std::size_t begin = 0;
    for (std::size_t left = list.size(); left > 0;) {
        const std::size_t half = left / 2;
        const bool isPassed = list[begin + half].time <= time;
        begin += isPassed ? half + 1 : 0;
        left = isPassed ? left - half - 1 : half;
    }
    return begin;
}

/// The flights of a file, one for each aircraft, none of them empty; with a fault there are none. Cancelled
/// reading leaves neither flights nor fault.
struct AXTELEMETRY_EXPORT AxFlightRead
{
    std::vector<std::shared_ptr<const AxFlightRecord>> flights; ///< in order of their systems' numbers
    QString fault;                                              ///< for people
    QStringList notes;        ///< for people: what of the file was not taken over, or is doubtful
    bool isCancelled = false; ///< whoever was told of the progress wanted no more
};
Q_DECLARE_METATYPE(AxFlightRead)
