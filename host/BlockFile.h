#pragma once
#include <AxData/CAxBlock.h>

#include <QCoreApplication>
#include <QList>
#include <QPointF>
#include <QString>

#include <optional>

/// A block as the file of --blocks describes it.
struct FileBlock
{
    Q_DECLARE_TR_FUNCTIONS(FileBlock)

public:
    QString name; ///< empty: one that is free
    CAxBlock::EBlockType type = CAxBlock::PolygonBlock;
    QList<QPointF> anchor; ///< longitude, latitude in degrees; the first one is not repeated
    int radius = 50;       ///< of a video block, metres
};

/// Reads a JSON list of blocks, each {"name": text, "type": 0, "anchor": [[longitude, latitude], ...]}. The
/// type is that of CAxBlock: 0 polygon, 1 rectangle, 2 strip, 3 video, whose "radius" is in metres. All but
/// the anchor may be left out, and the last vertex of a ring may repeat the first. Blocks with a name come
/// first. On a mistake returns nothing and names file, block and field in `error`.
std::optional<QList<FileBlock>> ReadBlockFile(const QString& file, QString& error);
