#pragma once

#include <QByteArray>
#include <QString>

/// What a server has sent for a tile.
struct AxTilePicture
{
    QString format; ///< "png", "jpg" or "webp", as MBTiles names them; empty for what is no whole picture
    int pixels = 0; ///< on each side
    QString fault;  ///< why it is none, for people
};

/// Decodes all of it, so that half a picture is told from a whole one. Any thread.
AxTilePicture AxReadTilePicture(const QByteArray& bytes);
