#pragma once
#include <array>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <gdal.h>

/// A folder of its own for each test, gone afterwards.
class ScratchFolder
{
public:
    ScratchFolder();
    ~ScratchFolder();
    std::string path(const std::string& name) const { return (_folder / name).string(); }

private:
    std::filesystem::path _folder;
};

/// A raster to be written for a test.
struct RasterRecipe
{
    int width = 64, height = 64, bands = 1;
    GDALDataType type = GDT_Byte;
    std::string srs = "EPSG:4326";
    std::array<double, 6> place = {0.0, 1.0 / 64.0, 0.0, 1.0, 0.0, -1.0 / 64.0}; ///< 0..1 degrees
    std::string driver = "GTiff";
    std::vector<std::string> options;
    bool hasNoData = false;
    double noData = 0.0;
    bool alpha = false; ///< the last band is one
    std::vector<std::array<short, 4>> palette;
    /// Value of a pixel: band from 0, column, row from the north.
    std::function<double(int band, int column, int row)> value = [](int, int, int) { return 100.0; };
};

void writeRaster(const std::string& path, const RasterRecipe& recipe);
