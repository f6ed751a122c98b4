#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <array>
#include <cstddef>

/// What a column of a flight's table is.
enum class AxCsvColumn
{
    Milliseconds,
    Microseconds,
    Seconds,
    AnyTime, ///< a date with time, or a number since 1970 whose size tells its unit
    Latitude,
    Longitude,
    SeaAltitude,
    EllipsoidAltitude,
    Altitude, ///< above what is not said
    HomeHeight,
    Heading,
    Roll, ///< these three in degrees, then in radians
    Pitch,
    Yaw,
    RollRadians,
    PitchRadians,
    YawRadians,
    Angle, ///< roll, pitch or yaw in a unit that is not said
    System,
    Count
};

/// What stands where in a table. The fault names what is missing; the notes say what is doubtful.
struct AxCsvLayout
{
    /// The number of the field, -1 for none.
    int At(AxCsvColumn column) const { return fields[static_cast<std::size_t>(column)]; }

    /// Whether the last field of a line is a time, a coordinate or an altitude.
    bool EndsInPlace() const;

    char separator = ',';
    int count = 0; ///< fields of a line
    std::array<int, static_cast<std::size_t>(AxCsvColumn::Count)> fields = {};
    QStringList names; ///< of the fields, as the file has them
    QString fault;
    QStringList notes;
};

/// Reads the line of column names.
AxCsvLayout AxCsvLayoutOf(const QByteArray& line);

/// The fields of a line, without the quotes around them and without blanks at their ends.
QList<QByteArray> AxCsvFields(const QByteArray& line, char separator);
