#include "host/heights/HeightsFile.h"

#include <AxData/geofiles/AxGeoHeights.h>

#include <QSaveFile>

#include <cmath>

QByteArray HeightsTable(const AxHeightGrid& grid, bool aboveEllipsoid)
{
    constexpr int ofDegrees = 8; // a millimetre
    constexpr int ofMetres = 2;
    QByteArray table = "longitude,latitude,";
    table += aboveEllipsoid ? "alt_ellipsoid\n" : "alt_amsl\n";
    for (int row = 0; row < grid.rows; ++row)
        for (int column = 0; column < grid.columns; ++column) {
            const float height =
                grid.heights[static_cast<std::size_t>(row) * static_cast<std::size_t>(grid.columns) +
                             static_cast<std::size_t>(column)];
            if (std::isnan(height))
                continue;
            const QPointF place = grid.PlaceOf(column, row);
            table += QByteArray::number(place.x(), 'f', ofDegrees) + ',' +
                     QByteArray::number(place.y(), 'f', ofDegrees) + ',' +
                     QByteArray::number(static_cast<double>(height), 'f', ofMetres) + '\n';
        }
    return table;
}

QString WriteHeights(const QString& file, const AxHeightGrid& grid, bool aboveEllipsoid)
{
    if (file.endsWith(QLatin1String(".csv"), Qt::CaseInsensitive)) {
        const QByteArray table = HeightsTable(grid, aboveEllipsoid);
        QSaveFile target(file);
        const bool isWritten =
            target.open(QIODevice::WriteOnly) && target.write(table) == table.size() && target.commit();
        return isWritten ? QString() : target.errorString();
    }
    AxGeoHeights heights;
    heights.west = grid.west;
    heights.south = grid.south;
    heights.stepLng = grid.stepLng;
    heights.stepLat = grid.stepLat;
    heights.columns = grid.columns;
    heights.rows = grid.rows;
    heights.heights = grid.heights;
    heights.facts = {{QStringLiteral("HEIGHTS"), aboveEllipsoid
                                                     ? QStringLiteral("metres above the ellipsoid WGS 84")
                                                     : QStringLiteral("metres above mean sea level")}};
    return AxWriteGeoHeights(file, heights);
}
