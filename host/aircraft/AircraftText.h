#pragma once
#include "host/aircraft/BatteryAlarm.h"

#include <AxTelemetry/AxAircraftState.h>

#include <QCoreApplication>
#include <QList>
#include <QString>

#include <optional>

/// What is known of an aircraft, in words and numbers with their units. What is not known is a dash. Any
/// thread.
class AircraftText
{
    Q_DECLARE_TR_FUNCTIONS(AircraftText)
public:
    struct Line
    {
        QString name;
        QString value;
        BatteryLevel level = BatteryLevel::Usual; ///< of that of the battery
    };
    /// The lines of the panel, the same ones in the same order whatever is known. `aboveGround`, metres;
    /// `heardAgo`, milliseconds, negative: never.
    static QList<Line> Lines(const AxAircraftState& state, std::optional<double> aboveGround,
                             qint64 heardAgo);

    /// The number with the unit, a dash for none and for what is no finite one.
    static QString Number(std::optional<double> value, int decimals, const QString& unit);
    /// MAV_SEVERITY in words.
    static QString Severity(int severity);
    /// A stretch of time, milliseconds: "12 s", "3 min 05 s", "2 h 03 min".
    static QString Span(qint64 milliseconds);
    /// Milliseconds since 1970 as date and time in UTC, or as hours, minutes and seconds where they bear no
    /// date.
    static QString Time(quint64 milliseconds);
};

/// Whether an aircraft is in the air, as far as it says; where it does not, it is while it is armed.
bool IsInTheAir(const AxAircraftState& state);
