#pragma once

#include <AxData/AxDataExport.h>

#include <QPointF>
#include <QString>

#include <memory>

/// Where the pixels of a picture of ground are that was seen straight from above, along parallel lines, with
/// north up in its middle.
struct AxGeoMapPlace
{
    QPointF middle;        ///< longitude, latitude, degrees: where the four pixels in the middle meet
    double altitude = 0.0; ///< metres above the ellipsoid, at which the pixels have their size
    double pixel = 0.0;    ///< side, metres
    int columns = 0;       ///< pixels from the west to the east
    int rows = 0;          ///< pixels from the north to the south
};

/**
 * Writes such a picture as a GeoTIFF of red, green and blue, part by part, so that it never is in memory as a
 * whole. It is placed by the orthographic projection (WGS 84) around its middle. It is written aside, in the
 * folder of the file, and takes its place when it is whole; what is not finished goes with the object. One
 * thread at a time.
 */
class AXDATA_EXPORT AxGeoMapPicture
{
public:
    /// Begins the file that is to be at the path, of a picture that lies there.
    AxGeoMapPicture(const QString& path, const AxGeoMapPlace& place);
    ~AxGeoMapPicture();
    AxGeoMapPicture(const AxGeoMapPicture&) = delete;
    AxGeoMapPicture& operator=(const AxGeoMapPicture&) = delete;

    // What is wrong, in the language of the program; empty when nothing is. Nothing more is written then.

    /// Whether the picture can be written there; also without being called before Write().
    QString Begin();
    /// A part: its upper left pixel, its size, three bytes a pixel, so many from row to row.
    QString Write(int column, int row, int columns, int rows, const unsigned char* pixels, int bytesPerRow);
    /// Puts the whole picture into the file's place.
    QString Finish();

private:
    struct State;
    const std::unique_ptr<State> d;
};
