#pragma once

#include <AxData/exchange/AxMission.h>

// A planned route for programs that show it: its points, its photos, its home. No aircraft flies by these
// files. Altitudes are those of the map, as planned; a point without one is a fault. Any thread.

/// KML 2.2: the route as a line with heights, the photos as points in a folder that is closed at first.
AXDATA_EXPORT AxExported AxWriteKml(const AxPlanResult& route, const AxPlanRequest& request,
                                    const QString& name);

/// CSV by RFC 4180 with a line of column names: the points of the route, then the photos.
AXDATA_EXPORT AxExported AxWriteCsv(const AxPlanResult& route, const AxPlanRequest& request,
                                    const QString& name);

/// GeoJSON by RFC 7946: the route as a line, cut at the antimeridian, the photos as one feature of points.
AXDATA_EXPORT AxExported AxWriteGeoJson(const AxPlanResult& route, const AxPlanRequest& request,
                                        const QString& name);

/// The text without the control characters that XML forbids even as entities.
AXDATA_EXPORT QString AxTextForXml(const QString& text);
