#include <AxTelemetry/record/AxCsvColumns.h>
#include <AxTelemetry/record/AxRecordText.h>

#include <algorithm>

namespace {
struct ColumnName
{
    const char* name; // letters and digits alone, without the unit
    AxCsvColumn column;
};

constexpr ColumnName columnNames[] = {
    {"tms", AxCsvColumn::Milliseconds},
    {"timems", AxCsvColumn::Milliseconds},
    {"timebootms", AxCsvColumn::Milliseconds},
    {"timestampms", AxCsvColumn::Milliseconds},
    {"timeunixms", AxCsvColumn::Milliseconds},
    {"milliseconds", AxCsvColumn::Milliseconds},
    {"ms", AxCsvColumn::Milliseconds},
    {"tus", AxCsvColumn::Microseconds},
    {"timeus", AxCsvColumn::Microseconds},
    {"timeusec", AxCsvColumn::Microseconds},
    {"timestampus", AxCsvColumn::Microseconds},
    {"timeunixusec", AxCsvColumn::Microseconds},
    {"microseconds", AxCsvColumn::Microseconds},
    {"ts", AxCsvColumn::Seconds},
    {"times", AxCsvColumn::Seconds},
    {"timesec", AxCsvColumn::Seconds},
    {"timeseconds", AxCsvColumn::Seconds},
    {"timestamps", AxCsvColumn::Seconds},
    {"seconds", AxCsvColumn::Seconds},
    {"time", AxCsvColumn::AnyTime},
    {"timestamp", AxCsvColumn::AnyTime},
    {"timeutc", AxCsvColumn::AnyTime},
    {"utc", AxCsvColumn::AnyTime},
    {"utctime", AxCsvColumn::AnyTime},
    {"datetime", AxCsvColumn::AnyTime},
    {"datetimeutc", AxCsvColumn::AnyTime},
    {"lat", AxCsvColumn::Latitude},
    {"latitude", AxCsvColumn::Latitude},
    {"gpslat", AxCsvColumn::Latitude},
    {"gpslatitude", AxCsvColumn::Latitude},
    {"lon", AxCsvColumn::Longitude},
    {"lng", AxCsvColumn::Longitude},
    {"long", AxCsvColumn::Longitude},
    {"longitude", AxCsvColumn::Longitude},
    {"gpslon", AxCsvColumn::Longitude},
    {"gpslng", AxCsvColumn::Longitude},
    {"gpslongitude", AxCsvColumn::Longitude},
    {"altamsl", AxCsvColumn::SeaAltitude},
    {"altitudeamsl", AxCsvColumn::SeaAltitude},
    {"amsl", AxCsvColumn::SeaAltitude},
    {"altmsl", AxCsvColumn::SeaAltitude},
    {"altitudemsl", AxCsvColumn::SeaAltitude},
    {"seaaltitude", AxCsvColumn::SeaAltitude},
    {"altitudeabovesea", AxCsvColumn::SeaAltitude},
    {"altellipsoid", AxCsvColumn::EllipsoidAltitude},
    {"altitudeellipsoid", AxCsvColumn::EllipsoidAltitude},
    {"ellipsoidaltitude", AxCsvColumn::EllipsoidAltitude},
    {"ellipsoidheight", AxCsvColumn::EllipsoidAltitude},
    {"ellipsoidalheight", AxCsvColumn::EllipsoidAltitude},
    {"hae", AxCsvColumn::EllipsoidAltitude},
    {"althae", AxCsvColumn::EllipsoidAltitude},
    {"alt", AxCsvColumn::Altitude},
    {"altitude", AxCsvColumn::Altitude},
    {"gpsalt", AxCsvColumn::Altitude},
    {"gpsaltitude", AxCsvColumn::Altitude},
    {"elevation", AxCsvColumn::Altitude},
    {"ele", AxCsvColumn::Altitude},
    {"altrel", AxCsvColumn::HomeHeight},
    {"relalt", AxCsvColumn::HomeHeight},
    {"altituderelative", AxCsvColumn::HomeHeight},
    {"relativealtitude", AxCsvColumn::HomeHeight},
    {"relativealt", AxCsvColumn::HomeHeight},
    {"heightabovehome", AxCsvColumn::HomeHeight},
    {"altitudeabovehome", AxCsvColumn::HomeHeight},
    {"hdg", AxCsvColumn::Heading},
    {"heading", AxCsvColumn::Heading},
    {"rolldeg", AxCsvColumn::Roll},
    {"pitchdeg", AxCsvColumn::Pitch},
    {"yawdeg", AxCsvColumn::Yaw},
    {"rollrad", AxCsvColumn::RollRadians},
    {"pitchrad", AxCsvColumn::PitchRadians},
    {"yawrad", AxCsvColumn::YawRadians},
    {"roll", AxCsvColumn::Angle},
    {"pitch", AxCsvColumn::Angle},
    {"yaw", AxCsvColumn::Angle},
    {"sysid", AxCsvColumn::System},
    {"systemid", AxCsvColumn::System},
};

AxCsvColumn Named(const QByteArray& name)
{
    const auto* const found = std::find_if(std::begin(columnNames), std::end(columnNames),
                                           [&](const ColumnName& known) { return name == known.name; });
    return found == std::end(columnNames) ? AxCsvColumn::Count : found->column;
}

bool IsBetween(AxCsvColumn column, AxCsvColumn first, AxCsvColumn last)
{
    return column >= first && column <= last;
}

/// "Latitude [deg]", "roll (radians)", "alt_amsl_m" and the like.
AxCsvColumn ColumnOf(const QByteArray& field)
{
    struct Unit
    {
        const char* spelling;
        const char* replacement;
    };
    constexpr Unit units[] = {{"degrees", "deg"}, {"radians", "rad"}, {"metres", "m"}, {"meters", "m"}};
    QByteArray name;
    for (const char letter : field.toLower())
        if ((letter >= 'a' && letter <= 'z') || (letter >= '0' && letter <= '9'))
            name += letter;
    for (const Unit& unit : units)
        if (name.endsWith(unit.spelling))
            name = name.left(name.size() - int(qstrlen(unit.spelling))) + unit.replacement;
    const AxCsvColumn column = Named(name);
    if (column != AxCsvColumn::Count)
        return column;
    const AxCsvColumn place = name.endsWith("deg") ? Named(name.left(name.size() - 3)) : AxCsvColumn::Count;
    if (IsBetween(place, AxCsvColumn::Latitude, AxCsvColumn::Longitude) || place == AxCsvColumn::Heading)
        return place;
    const AxCsvColumn height = name.endsWith('m') ? Named(name.left(name.size() - 1)) : AxCsvColumn::Count;
    if (IsBetween(height, AxCsvColumn::SeaAltitude, AxCsvColumn::HomeHeight))
        return height;
    return AxCsvColumn::Count;
}

char SeparatorOf(const QByteArray& line)
{
    char separator = ',';
    for (const char other : {';', '\t'})
        if (line.count(other) > line.count(separator))
            separator = other;
    return separator;
}

QString MissingColumns(const AxCsvLayout& layout)
{
    const auto has = [&](AxCsvColumn first, AxCsvColumn last) {
        for (int i = static_cast<int>(first); i <= static_cast<int>(last); ++i)
            if (layout.At(static_cast<AxCsvColumn>(i)) >= 0)
                return true;
        return false;
    };
    QStringList missing;
    if (!has(AxCsvColumn::Milliseconds, AxCsvColumn::AnyTime))
        missing << AxRecordText(QT_TRANSLATE_NOOP("AxRecord", "time (as \"t_ms\")"));
    if (!has(AxCsvColumn::Latitude, AxCsvColumn::Latitude))
        missing << AxRecordText(QT_TRANSLATE_NOOP("AxRecord", "latitude (as \"lat\")"));
    if (!has(AxCsvColumn::Longitude, AxCsvColumn::Longitude))
        missing << AxRecordText(QT_TRANSLATE_NOOP("AxRecord", "longitude (as \"lon\")"));
    if (!has(AxCsvColumn::SeaAltitude, AxCsvColumn::Altitude))
        missing << AxRecordText(
            QT_TRANSLATE_NOOP("AxRecord", "altitude (as \"alt_amsl\" or \"alt_ellipsoid\")"));
    return missing.join(QStringLiteral(", "));
}
} // namespace

bool AxCsvLayout::EndsInPlace() const
{
    for (int i = 0; i <= static_cast<int>(AxCsvColumn::Altitude); ++i)
        if (At(static_cast<AxCsvColumn>(i)) == count - 1)
            return true;
    return false;
}

AxCsvLayout AxCsvLayoutOf(const QByteArray& line)
{
    AxCsvLayout layout;
    layout.fields.fill(-1);
    layout.separator = SeparatorOf(line);
    QStringList unclear;
    for (const QByteArray& field : AxCsvFields(line, layout.separator)) {
        const QString name = QString::fromUtf8(field.left(40));
        const AxCsvColumn column = ColumnOf(field);
        if (column == AxCsvColumn::Angle)
            unclear << name;
        else if (column != AxCsvColumn::Count && layout.At(column) < 0)
            layout.fields[static_cast<std::size_t>(column)] = layout.count;
        layout.names << name;
        ++layout.count;
    }
    const QString missing = MissingColumns(layout);
    if (!missing.isEmpty())
        layout.fault =
            AxRecordText(QT_TRANSLATE_NOOP("AxRecord", "The line of column names lacks: %1.")).arg(missing);
    if (!unclear.isEmpty())
        layout.notes << AxRecordText(QT_TRANSLATE_NOOP("AxRecord",
                                                       "Columns that say neither degrees nor radians (as "
                                                       "\"roll_deg\") are left out: %1."))
                            .arg(unclear.join(QStringLiteral(", ")));
    if (layout.At(AxCsvColumn::SeaAltitude) < 0 && layout.At(AxCsvColumn::EllipsoidAltitude) < 0 &&
        layout.At(AxCsvColumn::Altitude) >= 0)
        layout.notes << AxRecordText(QT_TRANSLATE_NOOP(
                                         "AxRecord", "The column \"%1\" is taken for metres above the sea."))
                            .arg(layout.names[layout.At(AxCsvColumn::Altitude)]);
    return layout;
}

QList<QByteArray> AxCsvFields(const QByteArray& line, char separator)
{
    QList<QByteArray> fields;
    QByteArray field;
    bool isQuoted = false;
    for (const char letter : line) {
        if (letter == '"')
            isQuoted = !isQuoted;
        else if (letter == separator && !isQuoted) {
            fields << field.trimmed();
            field.clear();
        } else
            field += letter;
    }
    return fields << field.trimmed();
}
