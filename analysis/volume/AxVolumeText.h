#pragma once
#include "analysis/volume/AxVolume.h"
#include "scene/base/AxEarthViewerExport.h"

#include <AxData/geofiles/AxGeoRaster.h>

#include <QPair>
#include <QString>
#include <QVector>

#include <atomic>

class QIODevice;

// What is shown, copied and exported of a volume, made of the same values. Texts are in the language of the
// program, numbers have a point; volumes and areas are in the units of AxUnits, heights in metres.

/// "Plane through the rim", for a list to choose from.
AXEARTHVIEWER_EXPORT QString AxVolumeBaseText(AxVolumeBase base);
/// All of them in the order in which they are offered.
AXEARTHVIEWER_EXPORT QVector<AxVolumeBase> AxVolumeBases();
/// For files: "plane".
AXEARTHVIEWER_EXPORT QString AxVolumeBaseKey(AxVolumeBase base);
/// Why there is no volume, of the question besides; empty when there is one.
AXEARTHVIEWER_EXPORT QString AxVolumeFaultText(AxVolumeFault fault, const AxVolumeQuestion& question);
/// "1000000 cells, about 40 MB".
AXEARTHVIEWER_EXPORT QString AxVolumeSizeText(const AxVolumeSize& size);

/// All figures with their names, in the order in which they are told.
AXEARTHVIEWER_EXPORT QVector<QPair<QString, QString>> AxVolumeFigures(const AxVolume& volume);
/// The same line by line.
AXEARTHVIEWER_EXPORT QString AxVolumeReport(const AxVolume& volume);

/// Where the ground stands above the base (red) and below it (blue), and by how much, in classes: the picture
/// for the map. Empty once `isOff`, if there is one.
AXEARTHVIEWER_EXPORT AxGeoRaster AxVolumeRaster(const AxVolume& volume,
                                                const std::atomic<bool>* isOff = nullptr);
/// Its classes that occur, from the highest above the base to the lowest below it.
AXEARTHVIEWER_EXPORT std::vector<AxGeoRaster::Class> AxVolumeLegend(const AxVolume& volume);
/// For files: difference, ground and base of each cell, read from the volume, which is to stay as long; and
/// the figures as facts.
AXEARTHVIEWER_EXPORT AxGeoField AxVolumeField(const AxVolume& volume);
/// The same as a table: a row for each cell that is inside or cut, with its place and its area inside. False
/// when the device takes no more, and once `isOff`. Any thread.
AXEARTHVIEWER_EXPORT bool AxWriteVolumeTable(QIODevice& device, const AxVolume& volume,
                                             const std::atomic<bool>& isOff);
