#include "host/aircraft/LinkSettings.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>

#include <algorithm>
#include <cmath>

namespace {
constexpr int keyBytes = 32;

void TakeNumber(const QJsonObject& from, const char* name, double least, double most, double& number)
{
    const double read = from[QLatin1String(name)].toDouble(number);
    if (read >= least && read <= most)
        number = read;
}

void TakeNumber(const QJsonObject& from, const char* name, int least, int most, int& number)
{
    double read = number;
    TakeNumber(from, name, least, most, read);
    number = static_cast<int>(std::lround(read));
}

void TakeText(const QJsonObject& from, const char* name, QString& text)
{
    text = from[QLatin1String(name)].toString(text);
}
} // namespace

QByteArray LinkSettings::ToBytes() const
{
    const QJsonObject object{
        {"kind", static_cast<int>(kind)},
        {"speed", speed},
        {"windSpeed", windSpeed},
        {"windFrom", windFrom},
        {"udpPort", udpPort},
        {"tcpHost", tcpHost},
        {"tcpPort", tcpPort},
        {"serialPort", serialPort},
        {"baud", baud},
        {"file", file},
        {"recordFolder", recordFolder},
    };
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

LinkSettings LinkSettings::FromBytes(const QByteArray& bytes)
{
    const QJsonObject object = QJsonDocument::fromJson(bytes).object();
    LinkSettings read;
    int kind = 0;
    TakeNumber(object, "kind", 0, static_cast<int>(Kind::File), kind);
    read.kind = static_cast<Kind>(kind);
    TakeNumber(object, "speed", 1.0, 100.0, read.speed);
    TakeNumber(object, "windSpeed", 0.0, 30.0, read.windSpeed);
    TakeNumber(object, "windFrom", 0.0, 359.0, read.windFrom);
    TakeNumber(object, "udpPort", 1, 65535, read.udpPort);
    TakeText(object, "tcpHost", read.tcpHost);
    TakeNumber(object, "tcpPort", 1, 65535, read.tcpPort);
    TakeText(object, "serialPort", read.serialPort);
    TakeNumber(object, "baud", 1200, 4000000, read.baud);
    TakeText(object, "file", read.file);
    TakeText(object, "recordFolder", read.recordFolder);
    return read;
}

QString LinkSettings::RecordFolder() const
{
    return recordFolder.isEmpty() ? QDir(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation))
                                        .filePath(QStringLiteral("AxGroundControl"))
                                  : recordFolder;
}

std::optional<QByteArray> ParseSigningKey(const QByteArray& contents)
{
    QByteArray digits;
    bool isText = true;
    for (const char c : contents) {
        const bool isDigit = (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
        if (isDigit)
            digits += c;
        else
            isText = isText && QByteArray(" \t\r\n:-").indexOf(c) >= 0;
    }
    // 32 digits are half a key, not the bytes of one.
    if (!isText)
        return contents.size() == keyBytes ? std::make_optional(contents) : std::nullopt;
    return digits.size() == 2 * keyBytes ? std::make_optional(QByteArray::fromHex(digits)) : std::nullopt;
}
