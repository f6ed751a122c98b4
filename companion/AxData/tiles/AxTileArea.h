#pragma once

#include <AxData/AxDataExport.h>

#include <QList>
#include <QPointF>
#include <QString>
#include <QVector>

#include <optional>

// Tiles are those of the Web Mercator pyramid (EPSG:3857): one at level 0, four times as many at each further
// one; columns count from 180 degrees west, rows from the north. Any thread.

/// The finest level that tiles are counted at; a tile is 10 m wide there.
constexpr int axMostTileLevel = 22;
/// The pyramid ends there, degrees north and south: atan(sinh(pi)).
constexpr double axMostTileLatitude = 85.05112877980659;

/// One tile.
struct AxTile
{
    int level = 0;  ///< 0 to axMostTileLevel
    int column = 0; ///< 0 to 2^level - 1, from the west
    int row = 0;    ///< 0 to 2^level - 1, from the north
};

/// Tiles of one column, one below the other.
struct AxTileRun
{
    int column = 0;   ///< from the west
    int firstRow = 0; ///< from the north
    int lastRow = 0;  ///< it belongs to the run
};

/// A rectangle of degrees; it crosses 180 degrees where its east is less than its west.
struct AxTileBounds
{
    double west = 0.0;  ///< degrees
    double south = 0.0; ///< degrees
    double east = 0.0;  ///< degrees
    double north = 0.0; ///< degrees
};

/// Ground of which tiles are wanted. A plain value.
class AXDATA_EXPORT AxTileArea
{
public:
    /// Nothing.
    AxTileArea() = default;
    /// Nothing where a number is not finite, a longitude beyond 360 or a latitude beyond 90 degrees, or where
    /// west and east or south and north are the same or the wrong way round. What lies beyond
    /// axMostTileLatitude has no tiles. The whole turn is -180 to 180.
    static std::optional<AxTileArea> OfRectangle(const AxTileBounds& bounds);
    /// Rings of (longitude, latitude), degrees, the first point not repeated; edges run the shorter way round
    /// the globe; one that goes around a pole has all that lies towards the pole of the hemisphere where most
    /// of it is. Nothing for a ring of fewer than three points or one that is no place.
    static std::optional<AxTileArea> OfRings(const QList<QList<QPointF>>& rings);
    /// "west,south,east,north"; nothing for anything else.
    static std::optional<AxTileArea> OfText(const QString& text);

    /// No ground at all.
    bool IsEmpty() const { return rings.isEmpty(); }
    /// The same rings in the same order.
    bool operator==(const AxTileArea& other) const { return rings == other.rings; }
    /// Around everything.
    AxTileBounds Bounds() const;
    /// All tiles that the area touches, columns ascending, rows ascending in them, none twice.
    QVector<AxTileRun> Runs(int level) const;
    /// How many these are. Of ground that reaches over hundreds of thousands of columns, with a box around it
    /// of more than axMostTilesCounted tiles, the tiles of that box.
    qint64 Count(int level) const;
    qint64 Count(int firstLevel, int lastLevel) const;

private:
    /// Of a ring on the unit square of the pyramid; x goes on beyond 1 where it crosses 180 degrees.
    using Ring = QVector<QPointF>;
    QVector<Ring> rings;
};

/// Wide levels with more tiles than this in the box around the ground are not counted one by one.
constexpr qint64 axMostTilesCounted = 5000000;

/// How wide a pixel of 256 to a tile is on the ground, metres.
AXDATA_EXPORT double AxTilePixelMetres(int level, double latitude);
