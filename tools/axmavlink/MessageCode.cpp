#include "MessageCode.h"

#include <QList>

namespace axmavlink {
namespace {
const char kWritten[] = "// Written by axmavlink out of messages.json, where changes belong.\n";

/// GPS_RAW_INT is AxMavGpsRawInt.
QByteArray StructOf(const Message& message)
{
    QByteArray name = "AxMav";
    for (const QByteArray& word : message.name.split('_'))
        name += word.left(1) + word.mid(1).toLower();
    return name;
}

/// What is named like a constant that all messages have gets an underscore.
QByteArray MemberOf(const Field& field)
{
    static const QList<QByteArray> taken{"id", "extraCrc", "baseSize", "size"};
    return taken.contains(field.name) ? field.name + '_' : field.name;
}

QByteArray DeclarationOf(const Field& field)
{
    QByteArray line = "    ";
    if (field.length > 0)
        line += QByteArray("std::array<") + field.type->held + ", " + QByteArray::number(field.length) +
                "> " + MemberOf(field) + "{};";
    else
        line += QByteArray(field.type->held) + ' ' + MemberOf(field) + " = 0;";
    if (!field.unit.isEmpty())
        line += " ///< " + field.unit;
    return line + '\n';
}

QByteArray ConstantOf(const char* type, const char* name, quint32 value)
{
    return QByteArray("    static constexpr ") + type + ' ' + name + " = " + QByteArray::number(value) +
           ";\n";
}

QByteArray DefinitionOf(const Message& message)
{
    QByteArray code = "/// " + message.name + ".\nstruct " + StructOf(message) + "\n{\n";
    code += "    /// Number, byte for the checksum, bytes of payload without and with extension fields.\n";
    code += ConstantOf("quint32", "id", message.id) + ConstantOf("quint8", "extraCrc", ExtraCrcOf(message));
    code += ConstantOf("quint8", "baseSize", quint32(BaseSizeOf(message)));
    code += ConstantOf("quint8", "size", quint32(SizeOf(message)));
    code += "\n    /// As in the definition.\n";
    for (const Field& field : message.fields)
        code += DeclarationOf(field);
    code +=
        "\n    /// Calls visit(name, member) for each field, in the order of the payload.\n"
        "    template <class Self, class Visitor> static void Visit(Self& self, Visitor&& visit)\n    {\n";
    for (const Field& field : WireOrder(message))
        code += "        visit(\"" + field.name + "\", self." + MemberOf(field) + ");\n";
    return code + "    }\n};\n\n";
}
} // namespace

QByteArray HeaderOf(const std::vector<Message>& messages)
{
    QByteArray code = kWritten;
    code +=
        "#pragma once\n\n#include <AxTelemetry/AxTelemetryExport.h>\n"
        "#include <AxTelemetry/mavlink/AxMavFrame.h>\n\n"
        "/// MAVLink messages, one struct each: plain values, all zero when made. A member is named as its "
        "field\n"
        "/// in the definition of the message; one named like a constant of the struct has an underscore "
        "(id_).\n"
        "/// Units stand beside the members; where there is none, the definition of the message tells more.\n"
        "/// Texts are as they came, with a zero behind them only where there is room.\n\n";
    for (const Message& message : messages)
        code += DefinitionOf(message);
    code += "/// The message in a frame; false, and nothing changed, if the frame bears another one. Fields "
            "that were\n"
            "/// not sent are zero.\n";
    for (const Message& message : messages)
        code += "AXTELEMETRY_EXPORT bool AxMavDecode(const AxMavFrame& frame, " + StructOf(message) +
                "& message);\n";
    code += "\n/// Writes the whole payload, extension fields included, and returns its size in bytes.\n";
    for (const Message& message : messages)
        code +=
            "AXTELEMETRY_EXPORT int AxMavPack(const " + StructOf(message) + "& message, quint8* payload);\n";
    code += "\n/// Calls visit(message) with a message of this number, all zero; false if the number is not "
            "known.\n"
            "template <class Visitor> bool AxMavVisit(quint32 messageId, Visitor&& visit)\n{\n"
            "    switch (messageId) {\n";
    for (const Message& message : messages)
        code += "    case " + StructOf(message) + "::id:\n        visit(" + StructOf(message) +
                "());\n        return true;\n";
    return code + "    default:\n        return false;\n    }\n}\n";
}

QByteArray SourceOf(const std::vector<Message>& messages)
{
    QByteArray code = kWritten;
    code +=
        "#include <AxTelemetry/mavlink/AxMavMessageInfo.h>\n#include <AxTelemetry/mavlink/AxMavMessages.h>\n"
        "#include <AxTelemetry/mavlink/AxMavWire.h>\n\n";
    QByteArray cases;
    code += "namespace {\nconstexpr AxMavMessageInfo axMavInfos[] = {\n";
    for (std::size_t i = 0; i < messages.size(); ++i) {
        const QByteArray name = StructOf(messages[i]);
        code += "    {" + name + "::id, " + name + "::extraCrc, " + name + "::baseSize, " + name +
                "::size, \"" + messages[i].name + "\"},\n";
        cases += "    case " + name + "::id:\n        return &axMavInfos[" + QByteArray::number(quint64(i)) +
                 "];\n";
    }
    code += "};\n} // namespace\n\nconst AxMavMessageInfo* AxMavInfo(quint32 messageId)\n{\n    switch "
            "(messageId) {\n" +
            cases + "    default:\n        return nullptr;\n    }\n}\n";
    for (const Message& message : messages) {
        const QByteArray name = StructOf(message);
        code += "\nbool AxMavDecode(const AxMavFrame& frame, " + name +
                "& message)\n{\n    return AxMavRead(frame, message);\n}\n\nint AxMavPack(const " + name +
                "& message, quint8* payload)\n{\n    return AxMavPut(message, payload);\n}\n";
    }
    return code;
}
} // namespace axmavlink
