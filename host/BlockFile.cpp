#include "host/BlockFile.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

#include <algorithm>
#include <limits>

namespace {
// How many vertices a kind of block has in the file, the repeated first one apart.
struct Vertices
{
    int fewest;
    int most;
};
Vertices VerticesOf(CAxBlock::EBlockType type)
{
    switch (type) {
    case CAxBlock::RectangleBlock:
        return {4, 4};
    case CAxBlock::StripBlock:
        return {2, std::numeric_limits<int>::max()};
    case CAxBlock::VideoBlock:
        return {1, 1};
    default:
        return {3, std::numeric_limits<int>::max()};
    }
}

// Longitude and latitude, or what is wrong.
std::optional<QPointF> ReadVertex(const QJsonValue& value, QString& error)
{
    const QJsonArray numbers = value.toArray();
    if (numbers.size() != 2 || !numbers[0].isDouble() || !numbers[1].isDouble()) {
        error = FileBlock::tr("it is not [longitude, latitude]");
        return {};
    }
    const QPointF vertex(numbers[0].toDouble(), numbers[1].toDouble());
    if (qAbs(vertex.x()) > 180.0 || qAbs(vertex.y()) > 90.0) {
        error = FileBlock::tr("it is not on the globe");
        return {};
    }
    return vertex;
}

// What is wrong with the value of "anchor"; empty when it could be read.
QString ReadAnchor(const QJsonValue& value, CAxBlock::EBlockType type, QList<QPointF>& anchor)
{
    if (!value.isArray())
        return FileBlock::tr("it is no list of vertices");
    for (const QJsonValue item : value.toArray()) {
        QString error;
        const std::optional<QPointF> vertex = ReadVertex(item, error);
        if (!vertex)
            return FileBlock::tr("vertex %1: %2").arg(anchor.size() + 1).arg(error);
        anchor += *vertex;
    }
    const bool isRing = type != CAxBlock::StripBlock;
    if (isRing && anchor.size() > 1 && anchor.first().x() == anchor.last().x() &&
        anchor.first().y() == anchor.last().y())
        anchor.removeLast();
    const Vertices wanted = VerticesOf(type);
    if (anchor.size() < wanted.fewest)
        return FileBlock::tr("%1 vertices are too few, %2 are needed").arg(anchor.size()).arg(wanted.fewest);
    if (anchor.size() > wanted.most)
        return FileBlock::tr("%1 vertices are too many, %2 are needed").arg(anchor.size()).arg(wanted.most);
    return {};
}

// What is wrong with a block, its field named first; empty when it could be read.
QString ReadBlock(const QJsonValue& value, const QSet<QString>& takenNames, FileBlock& block)
{
    if (!value.isObject())
        return FileBlock::tr("it is no JSON object");
    const auto wrong = [](const char* field, const QString& reason) {
        return QStringLiteral("%1: %2").arg(QLatin1String(field), reason);
    };
    const QJsonObject object = value.toObject();
    const QJsonValue name = object["name"];
    if (!name.isUndefined() && !name.isString())
        return wrong("name", FileBlock::tr("it is no text"));
    if (!name.isUndefined() && name.toString().trimmed().isEmpty())
        return wrong("name", FileBlock::tr("it is empty"));
    block.name = name.toString().trimmed();
    if (takenNames.contains(block.name))
        return wrong("name", FileBlock::tr("another block is named '%1', too").arg(block.name));
    const QJsonValue type = object["type"];
    for (const CAxBlock::EBlockType drawn :
         {CAxBlock::PolygonBlock, CAxBlock::RectangleBlock, CAxBlock::StripBlock, CAxBlock::VideoBlock})
        if (type.toDouble() == double(drawn))
            block.type = drawn;
    if (!type.isUndefined() && !(type.isDouble() && type.toDouble() == double(block.type)))
        return wrong("type", FileBlock::tr("it is no kind of block that can be drawn"));
    const QJsonValue radius = object["radius"];
    if (!radius.isUndefined()) {
        constexpr double mostRadius = 10000.0;
        const double metres = radius.toDouble();
        if (!(metres >= 1.0 && metres <= mostRadius))
            return wrong("radius", FileBlock::tr("it is not between 1 and 10000 m"));
        block.radius = qRound(metres);
    }
    const QString anchorError = ReadAnchor(object["anchor"], block.type, block.anchor);
    return anchorError.isEmpty() ? QString() : wrong("anchor", anchorError);
}
} // namespace

std::optional<QList<FileBlock>> ReadBlockFile(const QString& file, QString& error)
{
    const auto fail = [&](const QString& reason) {
        error = QStringLiteral("'%1': %2").arg(file, reason);
        return std::nullopt;
    };
    QFile input(file);
    if (!input.open(QIODevice::ReadOnly))
        return fail(input.errorString());
    const QByteArray text = input.readAll();
    if (text.trimmed().isEmpty())
        return fail(FileBlock::tr("the file is empty"));
    QJsonParseError mistake;
    const QJsonDocument document = QJsonDocument::fromJson(text, &mistake);
    if (document.isNull())
        return fail(FileBlock::tr("line %1: %2")
                        .arg(text.left(mistake.offset).count('\n') + 1)
                        .arg(mistake.errorString()));
    if (!document.isArray())
        return fail(FileBlock::tr("it is no list of blocks"));

    QList<FileBlock> blocks;
    QSet<QString> names;
    for (const QJsonValue value : document.array()) {
        FileBlock block;
        const QString reason = ReadBlock(value, names, block);
        if (!reason.isEmpty())
            return fail(FileBlock::tr("block %1: %2").arg(blocks.size() + 1).arg(reason));
        if (!block.name.isEmpty())
            names += block.name;
        blocks += block;
    }
    // Before the others are given names that are free.
    std::stable_partition(blocks.begin(), blocks.end(),
                          [](const FileBlock& block) { return !block.name.isEmpty(); });
    return blocks;
}
