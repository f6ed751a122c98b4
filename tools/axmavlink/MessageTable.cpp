#include "MessageTable.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>

namespace axmavlink {
namespace {
constexpr int kMostPayload = 255; // bytes
constexpr quint32 kLastId = 0xFFFFFF;

const FieldType kTypes[] = {
    {"uint64_t", "quint64", 8}, {"int64_t", "qint64", 8}, {"double", "double", 8},
    {"uint32_t", "quint32", 4}, {"int32_t", "qint32", 4}, {"float", "float", 4},
    {"uint16_t", "quint16", 2}, {"int16_t", "qint16", 2}, {"uint8_t", "quint8", 1},
    {"int8_t", "qint8", 1},     {"char", "char", 1},
};

const FieldType* TypeOf(const QString& name)
{
    for (const FieldType& type : kTypes)
        if (name == QLatin1String(type.name))
            return &type;
    return nullptr;
}

/// CRC-16/MCRF4XX, bit by bit.
void Accumulate(quint16& crc, const QByteArray& bytes)
{
    for (const char byte : bytes) {
        crc = quint16(crc ^ quint8(byte));
        for (int bit = 0; bit < 8; ++bit)
            crc = quint16(crc & 1 ? (crc >> 1) ^ 0x8408 : crc >> 1);
    }
}

int SizeOfFields(const Message& message, bool withExtensions)
{
    int size = 0;
    for (const Field& field : message.fields)
        size += field.isExtension && !withExtensions ? 0 : field.Size();
    return size;
}

bool ReadField(const QJsonObject& row, Field& field, QString& fault)
{
    static const QRegularExpression names(QStringLiteral("^[a-z][a-z0-9_]*$"));
    const QString name = row.value(QLatin1String("name")).toString();
    field.name = name.toLatin1();
    field.type = TypeOf(row.value(QLatin1String("type")).toString());
    field.length = row.value(QLatin1String("length")).toInt(0);
    field.unit = row.value(QLatin1String("unit")).toString().toLatin1();
    field.isExtension = row.value(QLatin1String("extension")).toBool(false);
    if (!names.match(name).hasMatch())
        fault = QStringLiteral("the name of a field is missing or wrong: \"%1\"").arg(name);
    else if (!field.type)
        fault = QStringLiteral("field %1 has no known type").arg(name);
    else if (row.contains(QLatin1String("length")) && (field.length < 1 || field.length > kMostPayload))
        fault = QStringLiteral("field %1 is an array of no sensible length").arg(name);
    return fault.isEmpty();
}

bool ReadFields(const QJsonArray& rows, Message& message, QString& fault)
{
    QSet<QByteArray> names;
    for (const QJsonValue& row : rows) {
        Field field;
        if (!ReadField(row.toObject(), field, fault))
            return false;
        if (names.contains(field.name))
            fault = QStringLiteral("field %1 stands twice").arg(QLatin1String(field.name));
        else if (!field.isExtension && !message.fields.empty() && message.fields.back().isExtension)
            fault = QStringLiteral("field %1 stands behind an extension").arg(QLatin1String(field.name));
        if (!fault.isEmpty())
            return false;
        names.insert(field.name);
        message.fields.push_back(field);
    }
    const int size = SizeOf(message);
    if (BaseSizeOf(message) == 0 || size > kMostPayload)
        fault = QStringLiteral("its payload would have %1 bytes").arg(size);
    return fault.isEmpty();
}

bool ReadMessage(const QJsonObject& row, Message& message, QString& fault)
{
    static const QRegularExpression names(QStringLiteral("^[A-Z][A-Z0-9_]*$"));
    const QString name = row.value(QLatin1String("name")).toString();
    const double id = row.value(QLatin1String("id")).toDouble(-1.0);
    message.name = name.toLatin1();
    message.extraCrc = row.value(QLatin1String("extraCrc")).toInt(-1);
    if (!names.match(name).hasMatch())
        fault = QStringLiteral("its name is missing or wrong");
    else if (!(id >= 0.0 && id <= kLastId) || id != double(quint32(id)))
        fault = QStringLiteral("its id is missing or wrong");
    if (!fault.isEmpty())
        return false;
    message.id = quint32(id);
    if (!ReadFields(row.value(QLatin1String("fields")).toArray(), message, fault))
        return false;
    const int extraCrc = ExtraCrcOf(message);
    if (extraCrc != message.extraCrc)
        fault = QStringLiteral("its extra CRC is %1 by its fields, and not %2")
                    .arg(extraCrc)
                    .arg(message.extraCrc);
    return fault.isEmpty();
}
} // namespace

std::vector<Message> ReadMessages(const QByteArray& json, QString& fault)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    fault = error.error != QJsonParseError::NoError ? error.errorString() : QString();
    if (fault.isEmpty() && document.array().isEmpty())
        fault = QStringLiteral("there is no array of messages");
    std::vector<Message> messages;
    const QJsonArray rows = document.array();
    for (const QJsonValue& row : rows) {
        Message message;
        if (ReadMessage(row.toObject(), message, fault))
            for (const Message& other : messages)
                if (other.id == message.id || other.name == message.name)
                    fault = QStringLiteral("its id or name stands twice");
        if (!fault.isEmpty()) {
            fault = QStringLiteral("message \"%1\": %2")
                        .arg(row.toObject().value(QLatin1String("name")).toString(), fault);
            return {};
        }
        messages.push_back(message);
    }
    std::sort(messages.begin(), messages.end(),
              [](const Message& left, const Message& right) { return left.id < right.id; });
    return messages;
}

std::vector<Field> WireOrder(const Message& message)
{
    std::vector<Field> fields = message.fields;
    const auto extensions =
        std::find_if(fields.begin(), fields.end(), [](const Field& field) { return field.isExtension; });
    std::stable_sort(fields.begin(), extensions, [](const Field& left, const Field& right) {
        return left.type->size > right.type->size;
    });
    return fields;
}

quint8 ExtraCrcOf(const Message& message)
{
    quint16 crc = 0xFFFF;
    Accumulate(crc, message.name + ' ');
    for (const Field& field : WireOrder(message)) {
        if (field.isExtension)
            break;
        Accumulate(crc, QByteArray(field.type->name) + ' ' + field.name + ' ');
        if (field.length > 0)
            Accumulate(crc, QByteArray(1, char(field.length)));
    }
    return quint8((crc & 0xFF) ^ (crc >> 8));
}

int SizeOf(const Message& message)
{
    return SizeOfFields(message, true);
}

int BaseSizeOf(const Message& message)
{
    return SizeOfFields(message, false);
}
} // namespace axmavlink
