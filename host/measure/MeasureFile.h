#pragma once
#include "interaction/AxMeasurement.h"

#include <AxData/geofiles/AxGeoFile.h>

#include <QByteArray>
#include <QString>

/// Measurements as files and as text to paste.
namespace MeasureFile {

/// A table for programs: UTF-8, commas, numbers with a point, a row for the whole of each measurement (part
/// 0) and one for each of its parts, with the places at which they begin and end, degrees, and a column for
/// each quantity that occurs.
QByteArray Csv(const QVector<AxMeasurement>& measurements);
/// For people: the name of each and its values line by line.
QString Text(const QVector<AxMeasurement>& measurements);
/// Lines, areas and points with their values as fields.
QVector<AxGeoShape> Shapes(const QVector<AxMeasurement>& measurements);

/// Writes a file in the format that its suffix names: csv, kml, geojson. Returns why it could not be written;
/// empty when it was. What was there before stays until the new file is whole.
QString Write(const QString& file, const QVector<AxMeasurement>& measurements);
} // namespace MeasureFile
