#pragma once

#include <AxData/geofiles/AxGeoCollector.h>

class OGRLayer;

/// The shapes of a table of texts: well-known text in a column, or a longitude and a latitude in each row.
/// Rows that follow each other with the same name and with "area" or "line" in a column "kind" are the points
/// of one shape; a row without is a point. A shape without a name gets the file's and the number of its first
/// row. `done` is told of each row. False: reading ends.
bool AxReadGeoTable(OGRLayer& table, const QString& fileName, const AxGeoReadOptions& options,
                    AxGeoContent& content, AxGeoCollector& collector, const std::function<bool()>& done);
