#pragma once
#include "sources/RasterSource.h"

namespace osgEarth {
/// A folder of picture tiles, level/column/row.ending, with or without a
/// "tms.xml" that describes it. Tiles that are missing are transparent.
class TileFolder : public RasterSource
{
public:
    /// `profile` may be null; then tms.xml tells, or global-geodetic it is.
    static std::shared_ptr<RasterSource> open(const TileSourceOptions& options, const RasterRequest& request,
                                              const Profile* profile, bool rowsFromSouth, Status& out_status);

    Answer readRgba(int level, int x, int y, int w, int h, unsigned char* rgba,
                    ProgressCallback* progress) override;
    Answer readFloats(int level, int x, int y, int w, int h, float* heights,
                      ProgressCallback* progress) override;

private:
    TileFolder() = default;
    bool readDescription(const std::string& file, std::string& out_cause);
    std::string tilePath(int z, int column, int row) const;
    /// The tile's rectangle as bands of T; false when there is no such tile.
    bool loadRgba(const std::string& path, std::vector<unsigned char>& rgba);
    bool loadFloats(const std::string& path, std::vector<float>& heights);
    void reportOnce(const std::string& path, const std::string& cause);

    template <typename T, int N, typename Load>
    Answer assemble(int level, int x, int y, int w, int h, T* out, T empty, Load load);

    std::string _template; ///< "{z}", "{x}", "{y}" stand in for the numbers
    std::string _layerName;
    std::string _folder;
    std::string _format = "png";
    bool _rowsFromSouth = true;
    int _tileSize = 256;
    int _maxLevel = -1;
    float _noData = 0.0f;
    bool _hasNoData = false;
    std::atomic<bool> _reported{false};
};
} // namespace osgEarth
