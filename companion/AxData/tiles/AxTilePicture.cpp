#include <AxData/geofiles/AxGeoSession.h>
#include <AxData/tiles/AxTilePicture.h>
#include <AxData/tiles/AxTileText.h>

#include <cpl_vsi.h>
#include <gdal_priv.h>

#include <memory>
#include <vector>

namespace {
constexpr int mostPixels = 4096;

struct Coding
{
    const char* format; // of MBTiles
    const char* driver; // GDAL's
};

// By the first bytes, so that GDAL is not handed anything else.
Coding CodingOf(const QByteArray& bytes)
{
    if (bytes.startsWith("\x89PNG\r\n\x1a\n"))
        return {"png", "PNG"};
    if (bytes.startsWith("\xff\xd8\xff"))
        return {"jpg", "JPEG"};
    if (bytes.startsWith("RIFF") && bytes.mid(8, 4) == "WEBP")
        return {"webp", "WEBP"};
    return {};
}

struct Closing
{
    void operator()(GDALDataset* data) const { GDALClose(data); }
};

AxTilePicture NoPicture(const QString& fault)
{
    AxTilePicture picture;
    picture.fault = fault;
    return picture;
}
} // namespace

AxTilePicture AxReadTilePicture(const QByteArray& bytes)
{
    const Coding kind = CodingOf(bytes);
    if (!kind.driver)
        return NoPicture(AxTileText::tr("The answer is no PNG, JPEG or WebP picture."));
    AxGeoSession session;
    session.Set("GDAL_ERROR_ON_LIBJPEG_WARNING", "TRUE");
    session.Set("GDAL_PAM_ENABLED", "NO");
    session.Set("GDAL_DISABLE_READDIR_ON_OPEN", "EMPTY_DIR");
    const QByteArray name = session.InMemory("tile");
    // GDAL only reads what it does not own.
    auto* content = reinterpret_cast<GByte*>(const_cast<char*>(bytes.constData()));
    VSILFILE* file =
        VSIFileFromMemBuffer(name.constData(), content, static_cast<vsi_l_offset>(bytes.size()), FALSE);
    if (!file)
        return NoPicture(AxTileText::tr("The picture cannot be read."));
    VSIFCloseL(file);
    const char* const drivers[] = {kind.driver, nullptr};
    const std::unique_ptr<GDALDataset, Closing> data(
        GDALDataset::Open(name.constData(), GDAL_OF_RASTER | GDAL_OF_READONLY, drivers));
    AxTilePicture picture;
    if (data && data->GetRasterXSize() == data->GetRasterYSize() && data->GetRasterXSize() <= mostPixels) {
        picture.pixels = data->GetRasterXSize();
        // One band has the decoder go through all of the file.
        std::vector<GByte> band(static_cast<std::size_t>(picture.pixels) *
                                static_cast<std::size_t>(picture.pixels));
        if (data->GetRasterBand(1)->RasterIO(GF_Read, 0, 0, picture.pixels, picture.pixels, band.data(),
                                             picture.pixels, picture.pixels, GDT_Byte, 0, 0) == CE_None)
            picture.format = QLatin1String(kind.format);
    } else if (data) {
        return NoPicture(AxTileText::tr("The picture is not a square of at most %1 pixels.").arg(mostPixels));
    }
    if (picture.format.isEmpty())
        return NoPicture(AxTileText::tr("The picture is broken."));
    return picture;
}
