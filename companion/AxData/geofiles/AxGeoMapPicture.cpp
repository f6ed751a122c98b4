#include <AxData/AxReplaceFile.h>
#include <AxData/geofiles/AxGeoMapPicture.h>
#include <AxData/geofiles/AxGeoSession.h>
#include <AxData/geofiles/AxGeoText.h>

#include <cpl_string.h>
#include <gdal_priv.h>
#include <ogr_spatialref.h>

#include <QDir>
#include <QFile>
#include <QRandomGenerator>

#include <cmath>

namespace {
constexpr double semiMajorAxis = 6378137.0;

/// The offsets of the projection are those on the ellipsoid; at a height the same lines of sight are farther
/// apart than the radii that lead to them.
double OnEllipsoid(double metres, double altitude)
{
    return metres * semiMajorAxis / (semiMajorAxis + altitude);
}
} // namespace

struct AxGeoMapPicture::State
{
    QString path;
    AxGeoMapPlace place;
    QString aside;
    GDALDatasetUniquePtr data;
    QString fault;

    QString failed(AxGeoSession& session, const QString& otherwise)
    {
        const QStringList errors = session.TakeErrors();
        fault = AX_GEO_TEXT("\"%1\": %2")
                    .arg(QDir::toNativeSeparators(path),
                         errors.isEmpty() ? otherwise : errors.join(QStringLiteral("; ")));
        return fault;
    }
    bool create()
    {
        GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("GTiff");
        if (!driver)
            return false;
        char** options = nullptr;
        for (const char* option : {"TILED=YES", "COMPRESS=DEFLATE", "ZLEVEL=4", "PREDICTOR=2",
                                   "INTERLEAVE=PIXEL", "PHOTOMETRIC=RGB", "BIGTIFF=IF_SAFER"})
            options = CSLAddString(options, option);
        data.reset(
            driver->Create(aside.toUtf8().constData(), place.columns, place.rows, 3, GDT_Byte, options));
        CSLDestroy(options);
        if (!data)
            return false;
        OGRSpatialReference system;
        system.SetProjCS("Orthographic around the middle of the picture");
        system.SetWellKnownGeogCS("WGS84");
        system.SetOrthographic(place.middle.y(), place.middle.x(), 0.0, 0.0);
        system.SetLinearUnits(SRS_UL_METER, 1.0);
        const double pixel = OnEllipsoid(place.pixel, place.altitude);
        double corner[6] = {-0.5 * place.columns * pixel, pixel, 0.0, 0.5 * place.rows * pixel, 0.0, -pixel};
        return data->SetSpatialRef(&system) == CE_None && data->SetGeoTransform(corner) == CE_None;
    }
};

AxGeoMapPicture::AxGeoMapPicture(const QString& path, const AxGeoMapPlace& place)
    : d(std::make_unique<State>())
{
    d->path = path;
    d->place = place;
}

AxGeoMapPicture::~AxGeoMapPicture()
{
    if (d->aside.isEmpty())
        return;
    AxGeoSession session;
    d->data.reset();
    QFile::remove(d->aside);
}

QString AxGeoMapPicture::Begin()
{
    if (d->data || !d->fault.isEmpty())
        return d->fault;
    AxGeoSession session;
    // Nothing goes into a file beside it.
    session.Set("GDAL_PAM_ENABLED", "NO");
    const AxGeoMapPlace& place = d->place;
    const bool isPlace = std::isfinite(place.middle.x()) && std::abs(place.middle.y()) <= 90.0 &&
                         std::isfinite(place.altitude) && place.pixel > 0.0 && std::isfinite(place.pixel) &&
                         place.columns > 0 && place.rows > 0;
    if (!isPlace)
        return d->failed(session, AX_GEO_TEXT("There is nothing to write."));
    d->aside = d->path + axAsideSuffix +
               QStringLiteral(".%1").arg(QRandomGenerator::system()->generate64(), 16, 16, QLatin1Char('0'));
    // A folder that takes no file is known before hours of work.
    QFile file(d->aside);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
        d->aside.clear();
        return d->failed(session, file.errorString());
    }
    file.close();
    return d->create() ? QString() : d->failed(session, AX_GEO_TEXT("The picture cannot be made."));
}

QString AxGeoMapPicture::Write(int column, int row, int columns, int rows, const unsigned char* pixels,
                               int bytesPerRow)
{
    const QString fault = Begin();
    if (!fault.isEmpty())
        return fault;
    AxGeoSession session;
    constexpr GSpacing bytes = 3;
    CPLErr error = d->data->RasterIO(GF_Write, column, row, columns, rows, const_cast<unsigned char*>(pixels),
                                     columns, rows, GDT_Byte, 3, nullptr, bytes, bytesPerRow, 1, nullptr);
    // Compressed now, on the thread that waits for it, and not all at once at the end.
    for (int band = 1; band <= 3 && error == CE_None; ++band)
        error = d->data->GetRasterBand(band)->FlushCache();
    return error == CE_None ? QString() : d->failed(session, AX_GEO_TEXT("The picture cannot be made."));
}

QString AxGeoMapPicture::Finish()
{
    const QString fault = Begin();
    if (!fault.isEmpty())
        return fault;
    AxGeoSession session;
    session.Set("GDAL_PAM_ENABLED", "NO");
    // A full disk may tell only now.
    d->data.reset();
    const QStringList errors = session.TakeErrors();
    if (!errors.isEmpty()) {
        d->fault = AX_GEO_TEXT("\"%1\": %2")
                       .arg(QDir::toNativeSeparators(d->path), errors.join(QStringLiteral("; ")));
        return d->fault;
    }
    QString error;
    if (AxRename(d->aside, AxRealPath(d->path), error))
        d->aside.clear();
    else
        d->fault = error;
    return d->fault;
}
