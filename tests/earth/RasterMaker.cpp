#include "RasterMaker.h"

#include "base/Gdal.h"

#include <atomic>
#include <chrono>
#include <gdal_priv.h>
#include <gtest/gtest.h>
#include <ogr_spatialref.h>

ScratchFolder::ScratchFolder()
{
    static std::atomic<int> serial{0};
    const auto stamp = std::chrono::steady_clock::now().time_since_epoch().count();
    _folder = std::filesystem::temp_directory_path() /
              ("axearth_test_" + std::to_string(stamp) + "_" + std::to_string(++serial));
    std::filesystem::create_directories(_folder);
}

ScratchFolder::~ScratchFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(_folder, ignored);
}

void writeRaster(const std::string& path, const RasterRecipe& recipe)
{
    osgEarth::gdal::initialize();
    const std::unique_ptr<GDALDataset> made(GetGDALDriverManager()->GetDriverByName("MEM")->Create(
        "", recipe.width, recipe.height, recipe.bands, recipe.type, nullptr));
    ASSERT_TRUE(made);
    std::array<double, 6> place = recipe.place;
    made->SetGeoTransform(place.data());
    if (!recipe.srs.empty()) {
        OGRSpatialReference srs;
        srs.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
        ASSERT_EQ(srs.SetFromUserInput(recipe.srs.c_str()), OGRERR_NONE);
        made->SetSpatialRef(&srs);
    }
    std::vector<double> line(static_cast<size_t>(recipe.width));
    for (int b = 0; b < recipe.bands; ++b) {
        GDALRasterBand* band = made->GetRasterBand(b + 1);
        if (recipe.hasNoData)
            band->SetNoDataValue(recipe.noData);
        if (recipe.alpha && b == recipe.bands - 1)
            band->SetColorInterpretation(GCI_AlphaBand);
        if (!recipe.palette.empty()) {
            GDALColorTable table;
            for (size_t i = 0; i < recipe.palette.size(); ++i) {
                const auto& c = recipe.palette[i];
                const GDALColorEntry entry{c[0], c[1], c[2], c[3]};
                table.SetColorEntry(static_cast<int>(i), &entry);
            }
            band->SetColorTable(&table);
        }
        for (int row = 0; row < recipe.height; ++row) {
            for (int column = 0; column < recipe.width; ++column)
                line[static_cast<size_t>(column)] = recipe.value(b, column, row);
            ASSERT_EQ(band->RasterIO(GF_Write, 0, row, recipe.width, 1, line.data(), recipe.width, 1,
                                     GDT_Float64, 0, 0, nullptr),
                      CE_None);
        }
    }
    CPLStringList options;
    for (const std::string& option : recipe.options)
        options.AddString(option.c_str());
    const std::unique_ptr<GDALDataset> file(
        GetGDALDriverManager()
            ->GetDriverByName(recipe.driver.c_str())
            ->CreateCopy(path.c_str(), made.get(), FALSE, options.List(), nullptr, nullptr));
    ASSERT_TRUE(file) << path;
}
