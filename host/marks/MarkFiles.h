#pragma once
#include <AxData/geofiles/AxGeoFile.h>
#include <AxData/project/AxProject.h>

#include <QVector>

/// Mark points as files have them. Any thread.
namespace MarkFiles {
/// The points of a file: name, place, height where it says one, else NaN, and the note out of a field that is
/// called so. Areas, lines and circles are none.
QVector<AxProjectMark> MarksOf(const AxGeoContent& content);
/// Points with their names, their heights, and their notes as the field "description"; on request with the
/// place in fields of its own as well, as a table has it: "longitude" and "latitude" in degrees, "altitude"
/// in metres.
QVector<AxGeoShape> ShapesOf(const QVector<AxProjectMark>& marks, bool hasPlaceFields = false);
} // namespace MarkFiles
