#include <AxData/AxReplaceFile.h>
#include <AxData/geofiles/AxGeoRaster.h>
#include <AxData/geofiles/AxGeoSession.h>
#include <AxData/geofiles/AxGeoText.h>

#include <cpl_string.h>
#include <cpl_vsi.h>
#include <gdal_priv.h>
#include <ogr_spatialref.h>

#include <algorithm>
#include <atomic>
#include <cstddef>

namespace {
class Settings
{
public:
    explicit Settings(const std::vector<const char*>& texts)
    {
        for (const char* text : texts)
            list = CSLAddString(list, text);
    }
    ~Settings() { CSLDestroy(list); }
    Settings(const Settings&) = delete;
    Settings& operator=(const Settings&) = delete;
    char** Get() const { return list; }

private:
    char** list = nullptr;
};

bool IsWhole(const AxGeoRaster& raster)
{
    return raster.columns > 0 && raster.rows > 0 && raster.cell > 0.0 &&
           raster.values.size() ==
               static_cast<std::size_t>(raster.columns) * static_cast<std::size_t>(raster.rows);
}

/// An empty file of so many pixels a cell, with its place on the globe.
GDALDatasetUniquePtr Create(const QByteArray& name, const AxGeoRaster& raster, int times, int bands,
                            const Settings& settings)
{
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("GTiff");
    if (!driver)
        return nullptr;
    GDALDatasetUniquePtr data(driver->Create(name.constData(), times * raster.columns, times * raster.rows,
                                             bands, GDT_Byte, settings.Get()));
    if (!data)
        return nullptr;
    OGRSpatialReference system;
    system.SetProjCS("Azimuthal equidistant around the observer");
    system.SetWellKnownGeogCS("WGS84");
    system.SetAE(raster.middle.y(), raster.middle.x(), 0.0, 0.0);
    const double pixel = raster.cell / times;
    double place[6] = {-0.5 * raster.columns * raster.cell, pixel, 0.0,
                       0.5 * raster.rows * raster.cell,     0.0,   -pixel};
    if (data->SetSpatialRef(&system) != CE_None || data->SetGeoTransform(place) != CE_None)
        return nullptr;
    return data;
}

/// Values of a row from the north.
const std::uint8_t* RowOf(const AxGeoRaster& raster, int fromNorth)
{
    return raster.values.data() +
           static_cast<std::size_t>(raster.rows - 1 - fromNorth) * static_cast<std::size_t>(raster.columns);
}

bool FillClasses(GDALDataset& data, const AxGeoRaster& raster)
{
    GDALRasterBand* band = data.GetRasterBand(1);
    GDALColorTable colors;
    for (std::size_t i = 0; i < raster.classes.size(); ++i) {
        const auto& color = raster.classes[i].color;
        const GDALColorEntry entry{color[0], color[1], color[2], 255};
        colors.SetColorEntry(static_cast<int>(i) + 1, &entry);
        // The format has no room for names of values.
        data.SetMetadataItem(("CLASS_" + QByteArray::number(static_cast<int>(i) + 1)).constData(),
                             raster.classes[i].name.toUtf8().constData());
    }
    band->SetColorTable(&colors);
    band->SetNoDataValue(0.0);
    for (auto fact = raster.facts.cbegin(); fact != raster.facts.cend(); ++fact)
        data.SetMetadataItem(fact.key().toUtf8().constData(), fact.value().toUtf8().constData());
    for (int row = 0; row < raster.rows; ++row)
        if (band->RasterIO(GF_Write, 0, row, raster.columns, 1, const_cast<std::uint8_t*>(RowOf(raster, row)),
                           raster.columns, 1, GDT_Byte, 0, 0, nullptr) != CE_None)
            return false;
    return true;
}

bool FillPicture(GDALDataset& data, const AxGeoRaster& raster, int times)
{
    constexpr std::size_t bands = 4;
    const int width = times * raster.columns;
    std::vector<std::uint8_t> line(static_cast<std::size_t>(width) * bands);
    for (int row = 0; row < raster.rows; ++row) {
        const std::uint8_t* values = RowOf(raster, row);
        for (std::size_t pixel = 0; pixel < static_cast<std::size_t>(width); ++pixel) {
            const std::size_t value = values[pixel / static_cast<std::size_t>(times)];
            const bool isThere = value > 0 && value <= raster.classes.size();
            // Averages at the edge keep the colour when what is clear has one, too.
            const auto& color =
                raster.classes[isThere ? value - 1 : std::min<std::size_t>(1, raster.classes.size() - 1)]
                    .color;
            std::copy(color.begin(), color.end(), &line[pixel * bands]);
            line[pixel * bands + 3] = isThere ? 255 : 0;
        }
        for (int i = 0; i < times; ++i)
            if (data.RasterIO(GF_Write, 0, row * times + i, width, 1, line.data(), width, 1, GDT_Byte, bands,
                              nullptr, bands, 0, 1, nullptr) != CE_None)
                return false;
    }
    std::vector<int> factors;
    constexpr int smallest = 128; // pixels, of which a map makes its own overviews
    for (int factor = 2; width / factor >= smallest; factor *= 2)
        factors.push_back(factor);
    return factors.empty() || data.BuildOverviews("AVERAGE", static_cast<int>(factors.size()), factors.data(),
                                                  0, nullptr, nullptr, nullptr) == CE_None;
}
} // namespace

QString AxWriteGeoRaster(const QString& path, const AxGeoRaster& raster)
{
    AxGeoSession session;
    // Nothing goes into a file beside it.
    session.Set("GDAL_PAM_ENABLED", "NO");
    const auto fault = [&] {
        const QStringList errors = session.TakeErrors();
        return errors.isEmpty() ? AX_GEO_TEXT("The picture cannot be made.")
                                : errors.join(QStringLiteral("; "));
    };
    if (!IsWhole(raster))
        return AX_GEO_TEXT("There is nothing to write.");
    const QByteArray made = session.InMemory("raster.tif");
    GDALDatasetUniquePtr data = Create(made, raster, 1, 1, Settings({"COMPRESS=DEFLATE"}));
    if (!data || !FillClasses(*data, raster))
        return fault();
    data.reset();
    vsi_l_offset size = 0;
    const GByte* bytes = VSIGetMemFileBuffer(made.constData(), &size, FALSE);
    if (!bytes || size == 0)
        return fault();
    QString error;
    AxReplaceFile(QByteArray::fromRawData(reinterpret_cast<const char*>(bytes), static_cast<int>(size)), path,
                  AxReadableBy::Anyone, error);
    return error;
}

AxGeoPicture::AxGeoPicture(const AxGeoRaster& raster, int times)
{
    const AxGeoSession session;
    static std::atomic<unsigned> count{0};
    if (!IsWhole(raster) || raster.classes.empty() || times < 1)
        return;
    name = "/vsimem/axgeopicture-" + QByteArray::number(count++) + ".tif";
    GDALDatasetUniquePtr data = Create(
        name, raster, times, 4, Settings({"TILED=YES", "PHOTOMETRIC=RGB", "ALPHA=YES", "INTERLEAVE=PIXEL"}));
    if (data && FillPicture(*data, raster, times))
        return;
    data.reset();
    VSIUnlink(name.constData());
    name.clear();
}

AxGeoPicture::~AxGeoPicture()
{
    if (!name.isEmpty())
        VSIUnlink(name.constData());
}
