#pragma once

#include <AxData/tiles/AxTileArea.h>

#include <QString>
#include <QVector>

#include <memory>
#include <optional>
#include <vector>

class AxTileFile;

/// The tiles of an area that a file does not have yet, level by level. The file outlives it; one thread.
class AxTileWalk
{
public:
    /// On the first of the levels.
    AxTileWalk(const AxTileArea& area, int firstLevel, int lastLevel, AxTileFile& file);

    int Level() const { return level; }
    /// The next one of the level. Those that are settled are passed over and counted; after some of them
    /// comes nothing for once, so that others have their turn. Nothing, with `why`, where the file cannot be
    /// read.
    std::optional<AxTile> Next(qint64& settledTiles, QString& why);
    /// Nothing is left of the level.
    bool IsLevelDone() const { return run >= runs.size(); }
    /// False where there is none.
    bool NextLevel();

private:
    const AxTileArea area;
    const int last;
    AxTileFile& file;
    int level;
    QVector<AxTileRun> runs;
    int run = 0;
    int row = 0;                                ///< in it
    std::unique_ptr<std::vector<bool>> settled; ///< of its rows; null before they are looked up
};
