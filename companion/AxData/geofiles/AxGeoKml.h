#pragma once

#include <QByteArray>
#include <QStringList>

/// Makes KML fit for GDAL: UTF-8, no entities of its own, no deep nesting. Notes what in it GDAL passes over.
/// What is wrong with it; empty when it can be read.
QString AxPrepareKml(QByteArray& text, QStringList& notes);

/// The KML document of a KMZ file, whose name GDAL knows. What is wrong; empty when there is one.
QString AxUnpackKmz(const QByteArray& gdalName, QByteArray& text, QStringList& notes);
