#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/ref_ptr>
#include <osgEarth/Map>

#include <QList>
#include <QPointF>

#include <atomic>
#include <optional>

/// Where the ground is averaged.
struct AxMeanAltitudeJob
{
    osg::ref_ptr<const osgEarth::Map> map;
    QList<QPointF> vertices; ///< longitude (x), latitude (y), degrees
    bool isArea = true;      ///< they enclose an area, when there are three; else they are a line or points
};

/// The mean altitude of the ground, metres, of the cells inside the area (AxHeightGridOf()) or at equal steps
/// along the line; nothing where no height is known, and once the work is called off. Reads the map's
/// sources, so it takes long and belongs on a thread that may wait.
AXEARTHVIEWER_EXPORT std::optional<double> AxMeanAltitude(const AxMeanAltitudeJob& job,
                                                          const std::atomic<bool>& isOff);
