#include <AxData/AxReplaceFile.h>
#include <AxData/geofiles/AxGeoHeights.h>
#include <AxData/geofiles/AxGeoSession.h>
#include <AxData/geofiles/AxGeoText.h>

#include <cpl_string.h>
#include <cpl_vsi.h>
#include <gdal_priv.h>
#include <ogr_spatialref.h>

#include <cstddef>
#include <limits>

namespace {
GDALDatasetUniquePtr CreateHeights(const QByteArray& name, const AxGeoHeights& grid)
{
    GDALDriver* const driver = GetGDALDriverManager()->GetDriverByName("GTiff");
    if (!driver)
        return nullptr;
    CPLStringList settings;
    settings.AddNameValue("COMPRESS", "DEFLATE");
    settings.AddNameValue("PREDICTOR", "3"); // of floating point
    GDALDatasetUniquePtr data(
        driver->Create(name.constData(), grid.columns, grid.rows, 1, GDT_Float32, settings.List()));
    if (!data)
        return nullptr;
    OGRSpatialReference system;
    system.SetWellKnownGeogCS("WGS84");
    double place[6] = {grid.west, grid.stepLng, 0.0, grid.south + grid.rows * grid.stepLat,
                       0.0,       -grid.stepLat};
    if (data->SetSpatialRef(&system) != CE_None || data->SetGeoTransform(place) != CE_None)
        return nullptr;
    return data;
}

bool FillHeights(GDALDataset& data, const AxGeoHeights& grid)
{
    GDALRasterBand* const band = data.GetRasterBand(1);
    band->SetUnitType("m");
    band->SetNoDataValue(std::numeric_limits<double>::quiet_NaN());
    for (auto fact = grid.facts.cbegin(); fact != grid.facts.cend(); ++fact)
        data.SetMetadataItem(fact.key().toUtf8().constData(), fact.value().toUtf8().constData());
    for (int row = 0; row < grid.rows; ++row) {
        const float* const values = grid.heights.data() + static_cast<std::size_t>(grid.rows - 1 - row) *
                                                              static_cast<std::size_t>(grid.columns);
        if (band->RasterIO(GF_Write, 0, row, grid.columns, 1, const_cast<float*>(values), grid.columns, 1,
                           GDT_Float32, 0, 0, nullptr) != CE_None)
            return false;
    }
    return true;
}
} // namespace

QString AxWriteGeoHeights(const QString& path, const AxGeoHeights& grid)
{
    if (grid.columns < 1 || grid.rows < 1 || !(grid.stepLng > 0.0) || !(grid.stepLat > 0.0) ||
        grid.heights.size() != static_cast<std::size_t>(grid.columns) * static_cast<std::size_t>(grid.rows))
        return AX_GEO_TEXT("There is nothing to write.");
    AxGeoSession session;
    // Nothing goes into a file beside it.
    session.Set("GDAL_PAM_ENABLED", "NO");
    const QByteArray made = session.InMemory("heights.tif");
    GDALDatasetUniquePtr data = CreateHeights(made, grid);
    const bool isFilled = data && FillHeights(*data, grid);
    data.reset();
    vsi_l_offset size = 0;
    const GByte* const bytes = isFilled ? VSIGetMemFileBuffer(made.constData(), &size, FALSE) : nullptr;
    if (!bytes || size == 0 || size > std::numeric_limits<int>::max()) {
        const QStringList errors = session.TakeErrors();
        return errors.isEmpty() ? AX_GEO_TEXT("The picture cannot be made.")
                                : errors.join(QStringLiteral("; "));
    }
    QString error;
    AxReplaceFile(QByteArray::fromRawData(reinterpret_cast<const char*>(bytes), static_cast<int>(size)), path,
                  AxReadableBy::Anyone, error);
    return error;
}
