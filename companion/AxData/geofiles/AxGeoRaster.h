#pragma once

#include <AxData/AxDataExport.h>

#include <QByteArray>
#include <QMap>
#include <QPointF>
#include <QString>

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <vector>

/// Cells of the ground, each of one class. They lie on the azimuthal equidistant projection (WGS 84) around
/// their middle, row by row from the south-west.
struct AxGeoRaster
{
    /// What a value of a cell stands for.
    struct Class
    {
        QString name;                      ///< for people
        std::array<std::uint8_t, 3> color; ///< red, green, blue
    };

    QPointF middle;                   ///< longitude, latitude, degrees
    int columns = 0;                  ///< of cells
    int rows = 0;                     ///< of cells
    double cell = 0.0;                ///< side, metres
    std::vector<std::uint8_t> values; ///< 0 where there is no data, else 1 + index of the class
    std::vector<Class> classes;       ///< 255 at most
    QMap<QString, QString> facts;     ///< written beside the cells, for programs
};

/// Writes a GeoTIFF: one band of the values with 0 as "no data", the classes' colours, and as metadata the
/// facts and the classes' names ("CLASS_1"). The file that was there is replaced when the new one is whole.
/// What is wrong, in the language of the program; empty when it was written. Any thread.
AXDATA_EXPORT QString AxWriteGeoRaster(const QString& path, const AxGeoRaster& raster);

/// Numbers of cells of the ground, as heights: cells as those of AxGeoRaster.
struct AxGeoField
{
    /// One number of each cell.
    struct Band
    {
        QString name; ///< for people
        /// Writes the numbers of a row, counted from the south, from the west on; NaN where there is none.
        std::function<void(int row, float* values)> row;
    };

    QPointF middle;               ///< longitude, latitude, degrees
    int columns = 0;              ///< of cells
    int rows = 0;                 ///< of cells
    double cell = 0.0;            ///< side, metres
    std::vector<Band> bands;      ///< one at least
    QMap<QString, QString> facts; ///< written beside the cells, for programs
};

/// Writes a GeoTIFF: the bands as 32-bit numbers with NaN as "no data", and the facts as metadata. As
/// AxWriteGeoRaster() for the rest. It ends soon after `isOff` turns true, if there is one: a file that is
/// not whole by then is not written, and the result says so. Memory is taken for what is packed and for one
/// row.
AXDATA_EXPORT QString AxWriteGeoField(const QString& path, const AxGeoField& field,
                                      const std::atomic<bool>* isOff = nullptr);

/// The same cells as a picture for a map: red, green, blue and alpha, each cell `times` pixels wide and high,
/// with overviews. It is a file in GDAL's memory, packed, which goes with the object. Any thread.
class AXDATA_EXPORT AxGeoPicture
{
public:
    /// Makes it at once. Once `isOff`, if there is one, it ends soon and there is none.
    AxGeoPicture(const AxGeoRaster& raster, int times, const std::atomic<bool>* isOff = nullptr);
    ~AxGeoPicture();
    AxGeoPicture(const AxGeoPicture&) = delete;
    AxGeoPicture& operator=(const AxGeoPicture&) = delete;

    /// As GDAL opens it; empty when it could not be made.
    const QByteArray& Name() const { return name; }
    double Megabytes() const { return megabytes; } ///< that it takes

private:
    QByteArray name;
    double megabytes = 0.0;
};
