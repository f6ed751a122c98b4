#include <AxData/tiles/AxTileFile.h>
#include <AxData/tiles/AxTileWalk.h>

namespace {
constexpr int mostRunsInTurn = 500;
}

AxTileWalk::AxTileWalk(const AxTileArea& wanted, int firstLevel, int lastLevel, AxTileFile& kept)
    : area(wanted), last(lastLevel), file(kept), level(firstLevel), runs(area.Runs(firstLevel))
{
}

std::optional<AxTile> AxTileWalk::Next(qint64& settledTiles, QString& why)
{
    for (int looked = 0; !IsLevelDone() && looked < mostRunsInTurn; ++looked) {
        const AxTileRun& tiles = runs[run];
        if (!settled && !(settled = file.Settled(level, tiles, why)))
            return {};
        while (row < static_cast<int>(settled->size())) {
            const int at = row++;
            if (!(*settled)[static_cast<std::size_t>(at)])
                return AxTile{level, tiles.column, tiles.firstRow + at};
            ++settledTiles;
        }
        ++run;
        row = 0;
        settled.reset();
    }
    return {};
}

bool AxTileWalk::NextLevel()
{
    if (level >= last)
        return false;
    runs = area.Runs(++level);
    run = 0;
    return true;
}
