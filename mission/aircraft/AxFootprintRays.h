#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <AxAlgorthm/CAxVector3D.h>

#include <QList>
#include <QPointF>

#include <functional>
#include <optional>
#include <vector>

/// A video camera in flight, as far as it decides what is seen of the ground.
struct AxVideoSight
{
    CAxVector3D camera;       ///< degrees, degrees and metres in the heights of the map
    double height = 0.0;      ///< metres above the plane that stands for the ground
    double scale = 0.0;       ///< focal length in pixels
    double heading = 0.0;     ///< of the camera, degrees clockwise from north
    double cameraAngle = 0.0; ///< of the axis, degrees from straight down towards ahead
};

/// What that camera sees.
struct AxVideoOutline
{
    std::vector<CAxVector3D> points;  ///< round the picture, from its upper left corner; empty when nothing
    std::vector<CAxVector3D> corners; ///< upper left and right, lower right and left
    double width = 0.0;               ///< metres between the lower two corners
    bool meetsRelief = false;         ///< false: on the plane, because not all of the relief is known
};

/// Height of the ground at longitude and latitude, metres; nothing where it is not known.
using AxGroundHeights = std::function<std::optional<double>(double longitude, double latitude)>;

/// The outline on the ground: where the rays of the picture's edge meet the relief, or the plane so far below
/// the camera where the relief is not known all the way. A ray that meets no ground within
/// MaxFootprintDistance ends there. Nothing seen for values out of range. Pure but for the heights.
AXEARTHVIEWER_EXPORT AxVideoOutline AxVideoOutlineOf(const AxVideoSight& sight,
                                                     const AxGroundHeights& heights);
