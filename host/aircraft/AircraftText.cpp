#include "host/aircraft/AircraftText.h"

#include <AxTelemetry/record/AxFlightRecord.h>

#include <AxAlgorthm/AxMath.h>

#include <QDateTime>
#include <QLocale>

#include <cmath>

namespace {
const QString dash = QStringLiteral("-");
constexpr qint64 second = 1000;
constexpr qint64 minute = 60 * second;
constexpr qint64 hour = 60 * minute;

std::optional<double> Degrees(const std::optional<double>& radians)
{
    return radians ? std::make_optional(RadiansToDegree(*radians)) : std::nullopt;
}

std::optional<double> Compass(const std::optional<double>& degrees)
{
    if (!degrees || !std::isfinite(*degrees))
        return {};
    // 359.96 is not to be shown as 360.0.
    const double rounded = std::round(*degrees * 10.0) / 10.0;
    return std::fmod(std::fmod(rounded, 360.0) + 360.0, 360.0);
}

QString Fix(int type)
{
    switch (type) {
    case 0:
        return AircraftText::tr("no receiver");
    case 1:
        return AircraftText::tr("no fix");
    case 2:
        return AircraftText::tr("2D fix");
    case 3:
        return AircraftText::tr("3D fix");
    case 4:
        return AircraftText::tr("3D fix with corrections");
    case 5:
        return AircraftText::tr("RTK float");
    case 6:
        return AircraftText::tr("RTK fixed");
    default:
        return AircraftText::tr("fix of kind %1").arg(type);
    }
}

QString Satellites(const AxAircraftState& state)
{
    if (state.fixType == 0 && !state.satellites)
        return dash;
    const QString count = state.satellites ? QString::number(*state.satellites) : dash;
    return QStringLiteral("%1, %2").arg(count, Fix(state.fixType));
}

QString Battery(const AxAircraftState& state)
{
    QStringList parts;
    if (state.batteryPercent)
        parts += QStringLiteral("%1 %").arg(*state.batteryPercent);
    if (state.batteryVolts)
        parts += AircraftText::Number(state.batteryVolts, 1, QStringLiteral("V"));
    if (state.batteryAmperes)
        parts += AircraftText::Number(state.batteryAmperes, 1, QStringLiteral("A"));
    return parts.isEmpty() ? dash : parts.join(QStringLiteral(", "));
}

QString Armed(const AxAircraftState& state)
{
    // Before its first heartbeat nothing is known of that, and a replayed table never says it.
    if (state.mode.isEmpty())
        return dash;
    const QString armed = state.isArmed ? AircraftText::tr("armed") : AircraftText::tr("disarmed");
    if (!state.isLanded)
        return armed;
    return QStringLiteral("%1, %2").arg(armed, *state.isLanded ? AircraftText::tr("on the ground")
                                                               : AircraftText::tr("in the air"));
}

QString Mission(const AxAircraftState& state)
{
    if (state.missionCurrent < 0)
        return dash;
    const QString current = QString::number(state.missionCurrent + 1);
    return state.missionCount > 0 ? AircraftText::tr("item %1 of %2").arg(current).arg(state.missionCount)
                                  : AircraftText::tr("item %1").arg(current);
}

QString Wind(const AxAircraftState& state)
{
    const QString speed = AircraftText::Number(state.windSpeed, 1, QStringLiteral("m/s"));
    return state.windSpeed && state.windFrom
               ? AircraftText::tr("%1 from %2")
                     .arg(speed, AircraftText::Number(Compass(state.windFrom), 0, QStringLiteral("\u00b0")))
               : speed;
}
} // namespace

QString AircraftText::Number(std::optional<double> value, int decimals, const QString& unit)
{
    if (!value || !std::isfinite(*value))
        return dash;
    // Nothing is shown as less than 0 that is 0 with these decimals.
    const bool isZero = std::fabs(*value) < 0.5 * std::pow(10.0, -decimals);
    const QString number = QLocale().toString(isZero ? 0.0 : *value, 'f', decimals);
    // A degree sign stands at its number.
    return unit.startsWith(QChar(0xb0)) ? number + unit : QStringLiteral("%1 %2").arg(number, unit);
}

QList<AircraftText::Line> AircraftText::Lines(const AxAircraftState& state, std::optional<double> aboveGround,
                                              qint64 heardAgo)
{
    const QString metres = QStringLiteral("m");
    const QString speed = QStringLiteral("m/s");
    const QString degrees = QStringLiteral("\u00b0");
    constexpr qint64 oldAttitude = 3 * second;
    const bool isAttitudeOld = state.WithoutAttitude() >= oldAttitude;
    const auto angle = [&](const std::optional<double>& degreesOf) {
        return isAttitudeOld ? dash : Number(degreesOf, 1, degrees);
    };
    const qint64 withoutAttitude = state.WithoutAttitude() + std::max<qint64>(0, heardAgo);
    const QString lost =
        state.framesHeard == 0
            ? dash
            : tr("%1 of %2 messages").arg(state.framesLost).arg(state.framesLost + state.framesHeard);
    return {
        {tr("Heard"), heardAgo < 0 ? dash : tr("%1 ago").arg(Span(heardAgo))},
        {tr("Mode"), state.mode.isEmpty() ? dash : state.mode},
        {tr("Motors"), Armed(state)},
        {tr("Latitude"), Number(state.latitude, 7, degrees)},
        {tr("Longitude"), Number(state.longitude, 7, degrees)},
        {tr("Height above the sea"), Number(state.altitudeAboveSea, 1, metres)},
        {tr("Height above home"), Number(state.heightAboveHome, 1, metres)},
        {tr("Height above the ground"), Number(aboveGround, 1, metres)},
        {tr("Ground speed"), Number(state.groundSpeed, 1, speed)},
        {tr("Air speed"), Number(state.airSpeed, 1, speed)},
        {tr("Climb"), Number(state.climbRate, 1, speed)},
        {tr("Heading"), Number(Compass(state.heading), 0, degrees)},
        {tr("Roll"),
         isAttitudeOld ? tr("no attitude for %1").arg(Span(withoutAttitude)) : angle(Degrees(state.roll))},
        {tr("Pitch"), angle(Degrees(state.pitch))},
        {tr("Yaw"), angle(Compass(Degrees(state.yaw)))},
        {tr("Battery"), Battery(state), BatteryLevelOf(state)},
        {tr("Satellites"), Satellites(state)},
        {tr("Mission"), Mission(state)},
        {tr("Wind"), Wind(state)},
        {tr("Lost on the way"), lost},
    };
}

QString AircraftText::Severity(int severity)
{
    switch (severity) {
    case 0:
        return tr("Emergency");
    case 1:
        return tr("Alert");
    case 2:
        return tr("Critical");
    case 3:
        return tr("Error");
    case 4:
        return tr("Warning");
    case 5:
        return tr("Notice");
    case 6:
        return tr("Info");
    default:
        return tr("Debug");
    }
}

QString AircraftText::Span(qint64 milliseconds)
{
    const qint64 span = std::max<qint64>(0, milliseconds);
    const auto two = [](qint64 number) { return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0')); };
    if (span < minute)
        return tr("%1 s").arg(span / second);
    if (span < hour)
        return tr("%1 min %2 s").arg(span / minute).arg(two(span % minute / second));
    return tr("%1 h %2 min").arg(span / hour).arg(two(span % hour / minute));
}

QString AircraftText::Time(quint64 milliseconds)
{
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(milliseconds), Qt::UTC);
    if (AxHasDate(milliseconds))
        return time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz")).chopped(2) + QStringLiteral(" UTC");
    const qint64 hours = static_cast<qint64>(milliseconds) / hour;
    return QStringLiteral("%1:%2").arg(hours).arg(time.toString(QStringLiteral("mm:ss.zzz")).chopped(2));
}

bool IsInTheAir(const AxAircraftState& state)
{
    return state.isLanded ? !*state.isLanded : state.isArmed;
}
