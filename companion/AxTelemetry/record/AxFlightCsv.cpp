#include <AxTelemetry/record/AxCsvColumns.h>
#include <AxTelemetry/record/AxFlightCsv.h>
#include <AxTelemetry/record/AxRecordText.h>
#include <AxTelemetry/record/AxSeaLevel.h>

#include <AxAlgorthm/AxConstants.h>

#include <QDateTime>
#include <QIODevice>

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

namespace {
constexpr double unknownCell = std::numeric_limits<double>::quiet_NaN();
constexpr qint64 longestLine = 65536;          // bytes
constexpr double latestTime = 4102444800000.0; // the year 2100, milliseconds
constexpr quint64 restartMilliseconds = 1000;  // a clock that is set back by more has started anew
constexpr int linesBetweenProgress = 4096;

float InRadians(double degrees)
{
    return static_cast<float>(std::remainder(degrees, 360.0) * PI / 180.0);
}

/// Nothing, or what programs write for it.
bool IsEmptyCell(const QByteArray& cell)
{
    const bool isDashes = std::all_of(cell.begin(), cell.end(), [](char c) { return c == '-' || c == '.'; });
    const QByteArray word = cell.toLower();
    return isDashes || word == "nan" || word == "n/a" || word == "na";
}

/// As in "2023-11-14T22:13:20.5Z", or with a blank in place of the T. Without a zone it is UTC: summer time,
/// in which some hours do not exist, must not matter.
QDateTime DateOf(QByteArray cell, bool* hasZone)
{
    constexpr int timeAt = 11;
    constexpr int secondsAt = 16; // with the colon before them
    const QByteArray zone = cell.mid(secondsAt);
    *hasZone = zone.endsWith('Z') || zone.endsWith('z') || zone.contains('+') || zone.contains('-');
    if (cell.size() < secondsAt || cell[4] != '-' || cell[secondsAt - 3] != ':')
        return {};
    cell[timeAt - 1] = 'T';
    if (zone.startsWith(":60")) // a leap second
        cell.replace(secondsAt, 3, ":59");
    if (!*hasZone)
        cell += 'Z';
    return QDateTime::fromString(QString::fromLatin1(cell), Qt::ISODateWithMs);
}

bool IsDirection(double degrees)
{
    return degrees >= -360.0 && degrees <= 360.0;
}

/// Reads the lines of one table.
class TableReader
{
public:
    explicit TableReader(AxCsvLayout tableLayout) : layout(std::move(tableLayout)) {}

    /// False when there is a fault. The last line may be cut where no break ends it: then it counts as long
    /// as what could be half a number is neither a time nor a place.
    bool Take(const QByteArray& line, int number, bool isLast);
    AxFlightRead Finish();

    QString fault;

private:
    double NumberAt(AxCsvColumn column);
    double TimeOf();
    double AltitudeOf(double latitude, double longitude);
    void SetAttitude(AxFlightSample& sample);
    bool IsWhole(bool isLast);
    void Refuse(const QString& reason);
    static std::size_t EndOfFlight(const std::vector<AxFlightSample>& samples, std::size_t begin);
    void AddFlights(AxFlightRead& read, int system, std::vector<AxFlightSample>& samples);

    AxCsvLayout layout;
    QList<QByteArray> fields;
    int lineNumber = 0;
    std::map<int, std::vector<AxFlightSample>> samplesOf; // by the number of the aircraft
    int withoutPlace = 0;
    bool isCut = false;
    bool isAboveSea = false;
    bool isWithoutZone = false; // of dates
};

void TableReader::Refuse(const QString& reason)
{
    if (fault.isEmpty())
        fault = AxRecordText(QT_TRANSLATE_NOOP("AxRecord", "Line %1: %2.")).arg(lineNumber).arg(reason);
}

double TableReader::NumberAt(AxCsvColumn column)
{
    const int field = layout.At(column);
    if (field < 0)
        return unknownCell;
    const QByteArray& cell = fields[field];
    if (IsEmptyCell(cell))
        return unknownCell;
    bool isNumber = false;
    const double value = cell.toDouble(&isNumber);
    if (isNumber)
        return std::isfinite(value) ? value : unknownCell;
    bool hasComma = cell.count(',') == 1;
    if (hasComma)
        QByteArray(cell).replace(',', '.').toDouble(&hasComma);
    Refuse(AxRecordText(hasComma
                            ? QT_TRANSLATE_NOOP("AxRecord", "%1 has a decimal comma: \"%2\"; write a point")
                            : QT_TRANSLATE_NOOP("AxRecord", "%1 is no number: \"%2\""))
               .arg(layout.names[field], QString::fromUtf8(cell.left(40))));
    return unknownCell;
}

/// Milliseconds; NaN where there is none.
double TableReader::TimeOf()
{
    for (const auto& [column, milliseconds] :
         {std::pair(AxCsvColumn::Milliseconds, 1.0), std::pair(AxCsvColumn::Microseconds, 1e-3),
          std::pair(AxCsvColumn::Seconds, 1e3)})
        if (layout.At(column) >= 0)
            return NumberAt(column) * milliseconds;
    const QByteArray& cell = fields[layout.At(AxCsvColumn::AnyTime)];
    bool hasZone = true;
    const QDateTime date = DateOf(cell, &hasZone);
    if (date.isValid()) {
        isWithoutZone = isWithoutZone || !hasZone;
        return static_cast<double>(date.toMSecsSinceEpoch());
    }
    const double value = NumberAt(AxCsvColumn::AnyTime);
    for (const double milliseconds : {1e3, 1.0, 1e-3})
        if (value * milliseconds >= 946684800000.0 && value * milliseconds <= latestTime)
            return value * milliseconds;
    if (!std::isnan(value))
        Refuse(AxRecordText(
                   QT_TRANSLATE_NOOP("AxRecord",
                                     "the unit of the time %1 is not known; name the column \"t_ms\" or "
                                     "\"t_s\""))
                   .arg(QString::fromLatin1(cell.left(40))));
    return unknownCell;
}

double TableReader::AltitudeOf(double latitude, double longitude)
{
    const double altitude = NumberAt(AxCsvColumn::EllipsoidAltitude);
    const double aboveSea =
        NumberAt(layout.At(AxCsvColumn::SeaAltitude) >= 0 ? AxCsvColumn::SeaAltitude : AxCsvColumn::Altitude);
    if (!std::isnan(altitude) || std::isnan(aboveSea))
        return altitude;
    isAboveSea = true;
    return aboveSea + AxSeaLevelAt(latitude, longitude);
}

void TableReader::SetAttitude(AxFlightSample& sample)
{
    const auto angle = [this](AxCsvColumn degrees, AxCsvColumn radians) {
        const double value = NumberAt(degrees);
        const double inRadians = NumberAt(radians);
        if (IsDirection(value))
            return InRadians(value);
        return std::fabs(inRadians) <= 2.0 * PI ? InRadians(inRadians * 180.0 / PI)
                                                : std::numeric_limits<float>::quiet_NaN();
    };
    sample.roll = angle(AxCsvColumn::Roll, AxCsvColumn::RollRadians);
    sample.pitch = angle(AxCsvColumn::Pitch, AxCsvColumn::PitchRadians);
    sample.yaw = angle(AxCsvColumn::Yaw, AxCsvColumn::YawRadians);
    if (std::isnan(sample.yaw))
        sample.yaw = angle(AxCsvColumn::Heading, AxCsvColumn::YawRadians);
}

/// Whether the line has as many fields as the line of names; empty ones at its end are none.
bool TableReader::IsWhole(bool isLast)
{
    while (fields.size() > layout.count && fields.last().isEmpty())
        fields.removeLast();
    if (fields.size() == layout.count)
        return true;
    isCut = isLast && fields.size() < layout.count;
    if (!isCut)
        Refuse(AxRecordText(
                   fields.size() > layout.count && layout.separator == ','
                       ? QT_TRANSLATE_NOOP("AxRecord", "%1 columns instead of %2; are there decimal commas?")
                       : QT_TRANSLATE_NOOP("AxRecord", "%1 columns instead of %2"))
                   .arg(fields.size())
                   .arg(layout.count));
    return false;
}

bool TableReader::Take(const QByteArray& line, int number, bool isLast)
{
    lineNumber = number;
    fields = AxCsvFields(line, layout.separator);
    if (!IsWhole(isLast))
        return fault.isEmpty();
    const double time = std::round(TimeOf());
    AxFlightSample sample;
    sample.latitude = NumberAt(AxCsvColumn::Latitude);
    sample.longitude = NumberAt(AxCsvColumn::Longitude);
    const bool isPlace = AxIsOnGlobe(sample.latitude, sample.longitude) &&
                         !(sample.latitude == 0.0 && sample.longitude == 0.0);
    sample.altitude = AltitudeOf(isPlace ? sample.latitude : 0.0, isPlace ? sample.longitude : 0.0);
    sample.heightAboveHome = static_cast<float>(NumberAt(AxCsvColumn::HomeHeight));
    SetAttitude(sample);
    const double system = NumberAt(AxCsvColumn::System);
    if (!fault.isEmpty()) {
        // The number that ends where the file ends may be half of one.
        if (isLast) {
            isCut = true;
            fault.clear();
        }
        return fault.isEmpty();
    }
    if (!isPlace || !std::isfinite(sample.altitude) || !(time >= 0.0 && time <= latestTime)) {
        ++withoutPlace;
        return true;
    }
    if (isLast && layout.EndsInPlace()) {
        isCut = true;
        return true;
    }
    sample.time = static_cast<quint64>(time);
    samplesOf[system >= 0.0 && system <= 255.0 ? static_cast<int>(system) : 0].push_back(sample);
    return true;
}

/// How many samples from one on belong to the same flight. A single one that comes late is no new flight.
std::size_t TableReader::EndOfFlight(const std::vector<AxFlightSample>& samples, std::size_t begin)
{
    const auto isBefore = [&](std::size_t i, quint64 newest) {
        return i >= samples.size() || samples[i].time + restartMilliseconds < newest;
    };
    quint64 newest = samples[begin].time;
    std::size_t end = begin + 1;
    for (; end < samples.size() && !(isBefore(end, newest) && isBefore(end + 1, newest)); ++end)
        newest = std::max(newest, samples[end].time);
    return end;
}

/// One aircraft's samples as flights, each in order of time: those without a date are cut where the clock
/// starts anew.
void TableReader::AddFlights(AxFlightRead& read, int system, std::vector<AxFlightSample>& samples)
{
    const bool isDated = std::all_of(samples.begin(), samples.end(),
                                     [](const auto& sample) { return AxHasDate(sample.time); });
    for (std::size_t begin = 0; begin < samples.size();) {
        const std::size_t end = isDated ? samples.size() : EndOfFlight(samples, begin);
        const auto at = [&](std::size_t i) { return samples.begin() + static_cast<std::ptrdiff_t>(i); };
        std::stable_sort(at(begin), at(end), [](const auto& a, const auto& b) { return a.time < b.time; });
        std::vector<quint64> steps;
        for (std::size_t i = begin + 1; i < end; ++i)
            if (samples[i].time > samples[i - 1].time)
                steps.push_back(samples[i].time - samples[i - 1].time);
        // What is written every ten seconds has no gap after each line.
        quint64 silence = 3000;
        if (!steps.empty()) {
            const auto middle = steps.begin() + static_cast<std::ptrdiff_t>(steps.size() / 2);
            std::nth_element(steps.begin(), middle, steps.end());
            silence = std::max(silence, *middle * 3);
        }
        const auto flight = std::make_shared<AxFlightRecord>(silence);
        flight->systemId = system;
        flight->Reserve(end - begin);
        for (; begin < end; ++begin)
            flight->AddSample(samples[begin]);
        read.flights.push_back(flight);
    }
}

AxFlightRead TableReader::Finish()
{
    AxFlightRead read;
    read.fault = fault;
    if (!fault.isEmpty())
        return read;
    for (auto& [system, samples] : samplesOf) {
        const std::size_t before = read.flights.size();
        AddFlights(read, system, samples);
        if (read.flights.size() > before + 1)
            read.notes << AxRecordText(QT_TRANSLATE_NOOP("AxRecord", "The clock starts anew in the file: it "
                                                                     "has %1 flights."))
                              .arg(read.flights.size() - before);
    }
    if (read.flights.empty())
        read.fault = AxRecordText(
            QT_TRANSLATE_NOOP("AxRecord", "No line has a time, a place on the globe and an altitude."));
    read.notes += layout.notes;
    if (isWithoutZone &&
        !layout.names[layout.At(AxCsvColumn::AnyTime)].contains(QLatin1String("utc"), Qt::CaseInsensitive))
        read.notes << AxRecordText(
            QT_TRANSLATE_NOOP("AxRecord", "Times without a time zone are taken for UTC; some programs write "
                                          "those of the computer's own zone."));
    if (withoutPlace > 0)
        read.notes << AxRecordText(QT_TRANSLATE_NOOP("AxRecord",
                                                     "%1 lines without a time, a place on the globe or an "
                                                     "altitude are left out."))
                          .arg(withoutPlace);
    if (isCut)
        read.notes << AxRecordText(QT_TRANSLATE_NOOP("AxRecord", "The last line is cut and left out."));
    if (isAboveSea && !AxGeoidFault().isEmpty())
        read.notes << AxRecordText(QT_TRANSLATE_NOOP("AxRecord",
                                                     "Heights above the sea and above the ellipsoid are "
                                                     "taken for the same: %1"))
                          .arg(AxGeoidFault());
    return read;
}

AxFlightRead RefusedTable(const QString& fault)
{
    AxFlightRead read;
    read.fault = fault;
    return read;
}

QByteArray CsvNumber(double value, int decimals)
{
    return std::isfinite(value) ? QByteArray::number(value, 'f', decimals) : QByteArray();
}

QByteArray CsvDegrees(float radians, bool isHeading)
{
    double degrees = static_cast<double>(radians) * 180.0 / PI;
    if (isHeading && degrees < 0.0)
        degrees += 360.0;
    return CsvNumber(isHeading && degrees >= 359.9995 ? 0.0 : degrees, 3);
}
} // namespace

AxFlightRead AxReadFlightCsv(QIODevice& device, const AxReadProgress& progress)
{
    const qint64 size = std::max<qint64>(device.size(), 1);
    qint64 taken = 0;
    std::optional<TableReader> table;
    for (int number = 1; !device.atEnd(); ++number) {
        if (progress && number % linesBetweenProgress == 0 &&
            !progress(std::min(1.0, static_cast<double>(taken) / static_cast<double>(size)))) {
            AxFlightRead cancelled;
            cancelled.isCancelled = true;
            return cancelled;
        }
        QByteArray line = device.readLine(longestLine);
        if (line.isEmpty())
            break;
        taken += line.size();
        if (line.contains('\0') || (line.size() == longestLine - 1 && !line.endsWith('\n')))
            return RefusedTable(
                AxRecordText(QT_TRANSLATE_NOOP("AxRecord", "Line %1: this is no table of text."))
                    .arg(number));
        const bool isLast = !line.endsWith('\n') && device.atEnd();
        while (line.endsWith('\n') || line.endsWith('\r'))
            line.chop(1);
        if (number == 1 && line.startsWith("\xEF\xBB\xBF"))
            line.remove(0, 3);
        if (line.trimmed().isEmpty() || line.startsWith('#') || (!table && line.startsWith("sep=")))
            continue;
        if (!table) {
            const AxCsvLayout layout = AxCsvLayoutOf(line);
            if (!layout.fault.isEmpty())
                return RefusedTable(layout.fault);
            table.emplace(layout);
        } else if (!table->Take(line, number, isLast))
            return RefusedTable(table->fault);
    }
    return table ? table->Finish()
                 : RefusedTable(AxRecordText(QT_TRANSLATE_NOOP("AxRecord", "The file is empty.")));
}

AxExported AxWriteFlightCsv(const AxFlightRecord& flight)
{
    AxExported file;
    if (flight.IsEmpty()) {
        file.fault = AxRecordText(QT_TRANSLATE_NOOP("AxRecord", "The flight has no positions."));
        return file;
    }
    file.data = "t_ms,lat,lon,alt_amsl,alt_rel,hdg,alt_ellipsoid,roll_deg,pitch_deg\n";
    for (const AxFlightSample& sample : flight.Samples()) {
        const double sea = AxSeaLevelAt(sample.latitude, sample.longitude);
        file.data += QByteArray::number(sample.time) + ',' + CsvNumber(sample.latitude, 9) + ',' +
                     CsvNumber(sample.longitude, 9) + ',' + CsvNumber(sample.altitude - sea, 3) + ',' +
                     CsvNumber(static_cast<double>(sample.heightAboveHome), 3) + ',' +
                     CsvDegrees(sample.yaw, true) + ',' + CsvNumber(sample.altitude, 3) + ',' +
                     CsvDegrees(sample.roll, false) + ',' + CsvDegrees(sample.pitch, false) + '\n';
    }
    if (!AxGeoidFault().isEmpty())
        file.notes << AxRecordText(QT_TRANSLATE_NOOP("AxRecord",
                                                     "Heights above the sea and above the ellipsoid are "
                                                     "taken for the same: %1"))
                          .arg(AxGeoidFault());
    return file;
}
