#pragma once

#include <AxData/AxDataExport.h>
#include <AxData/tiles/AxTileArea.h>

#include <QByteArray>
#include <QString>
#include <QUrl>

// The address of a tile service is a template: {z} stands for the level, {x} for the column, {y} for the row
// from the north and {-y} for that from the south; {s} for one of the hosts a, b and c, and [1234] for one of
// these letters. "${z}" and the like mean the same. Any thread.

/// A tile service in Web Mercator. A plain value.
struct AxTileService
{
    QString name;                    ///< for people
    QString address;                 ///< template
    int lastLevel = axMostTileLevel; ///< the finest that it has, as far as that is known
    QString attribution; ///< whose pictures they are, as the service wants it shown; kept in the file
};

/// Why a text is no such template, for people; empty when it is one.
AXDATA_EXPORT QString AxTileAddressFault(const QString& address);
/// Of one tile; of several hosts, always the same for the same tile.
AXDATA_EXPORT QUrl AxTileUrl(const QString& address, const AxTile& tile);
/// What tells one service from another without telling its key, and stays when that is renewed: a hash, in
/// hexadecimal, of the template without the values of what is called a key, a token or the like in its query.
AXDATA_EXPORT QByteArray AxTileAddressMark(const QString& address);
