#include <AxData/exchange/AxExchangeText.h>
#include <AxData/exchange/AxWplFile.h>

#include <QList>
#include <QLocale>

#include <cmath>

namespace {
constexpr int wplColumns = 12;
constexpr const char* wplHeader = "QGC WPL 110";
const char* const wplColumnNames[wplColumns] = {"number",   "current",   "frame",    "command",
                                                "param1",   "param2",    "param3",   "param4",
                                                "latitude", "longitude", "altitude", "autocontinue"};

class WplWriter
{
public:
    void Add(const AxMissionItem& item)
    {
        Number(row);
        Number(row == 0 ? 1 : 0);
        Number(item.frame);
        Number(item.command);
        for (double param : item.params)
            Number(param);
        for (double value : {item.latitude, item.longitude, item.altitude})
            Number(value);
        text += item.isContinued ? "1\n" : "0\n";
        ++row;
    }

    QByteArray text = QByteArray(wplHeader) + '\n';
    bool isOpenLost = false;

private:
    void Number(int value) { text += QByteArray::number(value) + '\t'; }
    void Number(double value)
    {
        isOpenLost = isOpenLost || std::isnan(value);
        text += std::isnan(value) ? QByteArray("0")
                                  : QByteArray::number(value, 'f', QLocale::FloatingPointShortest);
        text += '\t';
    }

    int row = 0;
};

/// The numbers of a line; a fault says which column is none.
QString NumbersOf(const QByteArray& line, std::array<double, wplColumns>& numbers)
{
    const QList<QByteArray> columns = line.simplified().split(' ');
    if (columns.size() != wplColumns)
        return AxExchangeText(QT_TRANSLATE_NOOP("AxExchange", "%1 columns instead of %2"))
            .arg(columns.size())
            .arg(wplColumns);
    for (int i = 0; i < wplColumns; ++i) {
        bool isNumber = false;
        numbers[i] = columns[i].toDouble(&isNumber);
        const bool isWhole = i < 4 || i == wplColumns - 1;
        if (!isNumber || (isWhole && !(std::fabs(numbers[i]) < 1e6 && numbers[i] == std::floor(numbers[i]))))
            return AxExchangeText(isWhole ? QT_TRANSLATE_NOOP("AxExchange", "%1 is no whole number: \"%2\"")
                                          : QT_TRANSLATE_NOOP("AxExchange", "%1 is no number: \"%2\""))
                .arg(QLatin1String(wplColumnNames[i]), QString::fromUtf8(columns[i].left(40)));
    }
    return {};
}

QString ItemOf(const QByteArray& line, int row, AxMissionItem& item)
{
    std::array<double, wplColumns> numbers = {};
    const QString fault = NumbersOf(line, numbers);
    if (!fault.isEmpty())
        return fault;
    if (numbers[0] != row)
        return AxExchangeText(QT_TRANSLATE_NOOP("AxExchange", "item %1 where item %2 should be"))
            .arg(numbers[0])
            .arg(row);
    item.frame = static_cast<int>(numbers[2]);
    item.command = static_cast<int>(numbers[3]);
    item.params = {numbers[4], numbers[5], numbers[6], numbers[7]};
    item.latitude = numbers[8];
    item.longitude = numbers[9];
    item.altitude = numbers[10];
    item.isContinued = numbers[11] != 0.0;
    return AxItemFault(item);
}
} // namespace

AxExported AxWriteWpl(const AxMission& mission)
{
    AxExported file;
    file.fault = AxMissionFault(mission);
    if (!file.fault.isEmpty())
        return file;
    AxMissionItem home;
    home.frame = AxMissionItem::Global;
    home.latitude = mission.home.latitude;
    home.longitude = mission.home.longitude;
    home.altitude = mission.home.altitude;
    WplWriter writer;
    writer.Add(home);
    for (const AxMissionItem& item : mission.items)
        writer.Add(item);
    file.data = writer.text;
    file.notes = mission.leftOut;
    if (writer.isOpenLost)
        file.notes << AxExchangeText(QT_TRANSLATE_NOOP(
            "AxExchange",
            "The format cannot leave a value to the autopilot, such as the heading at a waypoint; "
            "it is written as 0."));
    if (!mission.name.isEmpty())
        file.notes << AxExchangeText(
                          QT_TRANSLATE_NOOP("AxExchange", "The format has no place for the name \"%1\"."))
                          .arg(mission.name);
    return file;
}

AxMissionRead AxReadWpl(const QByteArray& data)
{
    QByteArray text = data.startsWith("\xEF\xBB\xBF") ? data.mid(3) : data;
    text.replace("\r\n", "\n").replace('\r', '\n');
    const QList<QByteArray> lines = text.split('\n');
    if (lines.first().simplified() != wplHeader)
        return AxRefusedMission(
            AxExchangeText(QT_TRANSLATE_NOOP("AxExchange", "Line 1: the file does not begin with "
                                                           "\"%1\"."))
                .arg(QLatin1String(wplHeader)));
    AxMissionRead read;
    int row = 0;
    for (int i = 1; i < lines.size(); ++i) {
        if (lines[i].trimmed().isEmpty())
            continue;
        AxMissionItem item;
        const QString fault = ItemOf(lines[i], row, item);
        if (!fault.isEmpty())
            return AxRefusedMission(
                AxExchangeText(QT_TRANSLATE_NOOP("AxExchange", "Line %1: %2.")).arg(i + 1).arg(fault));
        if (row == 0)
            read.mission.home = AxHomeOfFile({item.latitude, item.longitude, item.altitude});
        else
            read.mission.items.push_back(item);
        ++row;
    }
    if (read.mission.home.IsOpen())
        read.notes << AxOpenHomeNote();
    read.fault = AxMissionFault(read.mission);
    return read.fault.isEmpty() ? read : AxRefusedMission(read.fault);
}
