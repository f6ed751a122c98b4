#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

namespace axmavlink {
/// A type of MAVLink's and what holds it.
struct FieldType
{
    const char* name; ///< in definitions and in the extra CRC
    const char* held; ///< in C++
    int size;         ///< bytes
};

struct Field
{
    QByteArray name;
    const FieldType* type = nullptr;
    int length = 0; ///< of an array, 0 for a single value
    QByteArray unit;
    bool isExtension = false;

    int Size() const { return type->size * (length > 0 ? length : 1); }
};

/// A message as the table has it: its fields stand in the order of the definition.
struct Message
{
    QByteArray name;
    quint32 id = 0;
    int extraCrc = 0;
    std::vector<Field> fields;
};

/// The messages of a table, by rising id. With a fault, which names message and field, there are none.
std::vector<Message> ReadMessages(const QByteArray& json, QString& fault);

/// Larger types come first, extension fields last, and among equals the order of the definition counts.
std::vector<Field> WireOrder(const Message& message);

/// The byte by which both ends of a link know that they mean the same fields. Extension fields are not in it.
quint8 ExtraCrcOf(const Message& message);

/// Bytes of payload, with and without extension fields.
int SizeOf(const Message& message);
int BaseSizeOf(const Message& message);
} // namespace axmavlink
