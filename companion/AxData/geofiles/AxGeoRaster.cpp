#include <AxData/AxReplaceFile.h>
#include <AxData/geofiles/AxGeoRaster.h>
#include <AxData/geofiles/AxGeoSession.h>
#include <AxData/geofiles/AxGeoText.h>

#include <cpl_string.h>
#include <cpl_vsi.h>
#include <gdal_priv.h>
#include <ogr_spatialref.h>

#include <QDir>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <limits>

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

template <typename Cells> std::size_t CountOf(const Cells& cells)
{
    return cells.columns > 0 && cells.rows > 0 && cells.cell > 0.0
               ? static_cast<std::size_t>(cells.columns) * static_cast<std::size_t>(cells.rows)
               : 0;
}

bool IsWhole(const AxGeoRaster& raster)
{
    return CountOf(raster) > 0 && raster.values.size() == CountOf(raster);
}

bool IsWhole(const AxGeoField& field)
{
    return CountOf(field) > 0 && !field.bands.empty() &&
           std::all_of(field.bands.begin(), field.bands.end(),
                       [](const AxGeoField::Band& band) { return static_cast<bool>(band.row); });
}

/// An empty file of so many pixels a cell, with its place on the globe.
template <typename Cells>
GDALDatasetUniquePtr Create(const QByteArray& name, const Cells& raster, int times, int bands,
                            GDALDataType type, const Settings& settings)
{
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("GTiff");
    if (!driver)
        return nullptr;
    GDALDatasetUniquePtr data(driver->Create(name.constData(), times * raster.columns, times * raster.rows,
                                             bands, type, settings.Get()));
    if (!data)
        return nullptr;
    OGRSpatialReference system;
    system.SetProjCS("Azimuthal equidistant around the middle");
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

void FillFacts(GDALDataset& data, const QMap<QString, QString>& facts)
{
    for (auto fact = facts.cbegin(); fact != facts.cend(); ++fact)
        data.SetMetadataItem(fact.key().toUtf8().constData(), fact.value().toUtf8().constData());
}

constexpr int rowsOfBlock = 64; // "BLOCKYSIZE"

bool FillNumbers(GDALDataset& data, const AxGeoField& field, const std::atomic<bool>* isOff)
{
    FillFacts(data, field.facts);
    std::vector<float> values(static_cast<std::size_t>(field.columns));
    int number = 0;
    for (const AxGeoField::Band& from : field.bands) {
        GDALRasterBand* band = data.GetRasterBand(++number);
        band->SetDescription(from.name.toUtf8().constData());
        band->SetNoDataValue(std::numeric_limits<double>::quiet_NaN());
        for (int row = 0; row < field.rows; ++row) {
            if (isOff && *isOff)
                return false;
            from.row(field.rows - 1 - row, values.data());
            if (band->RasterIO(GF_Write, 0, row, field.columns, 1, values.data(), field.columns, 1,
                               GDT_Float32, 0, 0, nullptr) != CE_None)
                return false;
            // Else all of it would be packed in the end, where it cannot be called off.
            if ((row + 1) % rowsOfBlock == 0 && band->FlushCache() != CE_None)
                return false;
        }
    }
    return true;
}

QString Named(const QString& path, const QString& reason)
{
    return AX_GEO_TEXT("\"%1\": %2").arg(QDir::toNativeSeparators(path), reason);
}

/// For GDAL: false ends the work.
int CPL_STDCALL GoesOn(double, const char*, void* isOff)
{
    const auto* off = static_cast<const std::atomic<bool>*>(isOff);
    return off && *off ? FALSE : TRUE;
}

/// Fills a new file in memory and puts it where it belongs when it is whole.
template <typename Cells, typename Fill>
QString WriteTiff(const QString& path, const Cells& cells, int bands, GDALDataType type,
                  const std::vector<const char*>& settings, Fill fill)
{
    AxGeoSession session;
    // Nothing goes into a file beside it.
    session.Set("GDAL_PAM_ENABLED", "NO");
    const auto fault = [&] {
        const QStringList errors = session.TakeErrors();
        return Named(path, errors.isEmpty() ? AX_GEO_TEXT("The picture cannot be made.")
                                            : errors.join(QStringLiteral("; ")));
    };
    if (!IsWhole(cells))
        return Named(path, AX_GEO_TEXT("There is nothing to write."));
    const QByteArray made = session.InMemory("raster.tif");
    GDALDatasetUniquePtr data = Create(made, cells, 1, bands, type, Settings(settings));
    if (!data || !fill(*data, cells))
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
    FillFacts(data, raster.facts);
    for (int row = 0; row < raster.rows; ++row)
        if (band->RasterIO(GF_Write, 0, row, raster.columns, 1, const_cast<std::uint8_t*>(RowOf(raster, row)),
                           raster.columns, 1, GDT_Byte, 0, 0, nullptr) != CE_None)
            return false;
    return true;
}

bool FillPicture(GDALDataset& data, const AxGeoRaster& raster, int times, const std::atomic<bool>* isOff)
{
    constexpr std::size_t bands = 4;
    const int width = times * raster.columns;
    std::vector<std::uint8_t> line(static_cast<std::size_t>(width) * bands);
    for (int row = 0; row < raster.rows; ++row) {
        if (isOff && *isOff)
            return false;
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
    return factors.empty() ||
           data.BuildOverviews("AVERAGE", static_cast<int>(factors.size()), factors.data(), 0, nullptr,
                               &GoesOn, const_cast<std::atomic<bool>*>(isOff)) == CE_None;
}
} // namespace

QString AxWriteGeoRaster(const QString& path, const AxGeoRaster& raster)
{
    return WriteTiff(path, raster, 1, GDT_Byte, {"COMPRESS=DEFLATE"}, FillClasses);
}

QString AxWriteGeoField(const QString& path, const AxGeoField& field, const std::atomic<bool>* isOff)
{
    // Neighbours are alike, which the predictor for floating point makes use of. The bands come one after the
    // other: mixed in the file, what GDAL's memory does not hold would be packed anew for each of them.
    const QString fault = WriteTiff(
        path, field, static_cast<int>(field.bands.size()), GDT_Float32,
        {"COMPRESS=DEFLATE", "PREDICTOR=3", "INTERLEAVE=BAND", "BLOCKYSIZE=64"},
        [isOff](GDALDataset& data, const AxGeoField& from) { return FillNumbers(data, from, isOff); });
    return isOff && *isOff && !fault.isEmpty() ? AX_GEO_TEXT("Called off.") : fault;
}

AxGeoPicture::AxGeoPicture(const AxGeoRaster& raster, int times, const std::atomic<bool>* isOff)
{
    const AxGeoSession session;
    static std::atomic<unsigned> count{0};
    if (!IsWhole(raster) || raster.classes.empty() || times < 1)
        return;
    name = "/vsimem/axgeopicture-" + QByteArray::number(count++) + ".tif";
    GDALDatasetUniquePtr data = Create(name, raster, times, 4, GDT_Byte,
                                       Settings({"TILED=YES", "PHOTOMETRIC=RGB", "ALPHA=YES",
                                                 "INTERLEAVE=PIXEL", "COMPRESS=DEFLATE", "ZLEVEL=1"}));
    const bool isMade = data && FillPicture(*data, raster, times, isOff);
    data.reset();
    VSIStatBufL file;
    if (isMade && VSIStatL(name.constData(), &file) == 0) {
        constexpr double bytesOfMegabyte = 1.0e6;
        megabytes = static_cast<double>(file.st_size) / bytesOfMegabyte;
        return;
    }
    VSIUnlink(name.constData());
    name.clear();
}

AxGeoPicture::~AxGeoPicture()
{
    if (!name.isEmpty())
        VSIUnlink(name.constData());
}
