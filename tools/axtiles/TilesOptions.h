#pragma once

#include <AxData/tiles/AxTileFetch.h>

#include <QString>
#include <QStringList>

/// How the program ends.
enum TilesStatus
{
    TilesDone = 0,     ///< all that the service has is in the file
    TilesFailed = 1,   ///< the file cannot be written, or nothing has come
    TilesWrongUse = 2, ///< the command line
    TilesGoOn = 3,     ///< a part is in the file; the same command goes on from there
};

/// What the command line wants.
struct TilesOptions
{
    AxTileJob job;
    bool isEstimateOnly = false;
    bool isQuiet = false;     ///< nothing on standard error but what is wrong
    bool isTalkative = false; ///< how far it is, even when nobody looks
};

/// False, with what is wrong, for a command line that says nothing useful. Asked for help or the version, it
/// prints them and ends the program.
bool ReadTilesOptions(const QStringList& arguments, TilesOptions& options, QString& error);
