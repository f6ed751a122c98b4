#pragma once

#include <AxAlgorthm/AxAlgorthmExport.h>

#include <QMetaType>
#include <QString>

/// The aircraft kinds that a block can be planned for. The values are stored in projects.
enum EPlaneType
{
    PlaneFixedWing = 0,
    PlaneTailSitter = 1,
    PlaneQuadPlane = 2,
    PlaneQuadcopter = 3,
    PlaneHexacopter = 4,
    PlaneOctocopter = 5,
    PlaneObliqueCopter = 6, ///< a multirotor that carries the swinging camera (CameraSwing)
};

/// The cameras. The values are stored in projects.
enum ECameraType
{
    CameraFullFrame = 0,
    CameraApsC = 1,
    CameraMediumFormat = 2,
    CameraMultispectral = 3,
    CameraThermal = 4,
    CameraOblique = 5, ///< several lenses, flown in up to three directions
    CameraVideo = 6,
    CameraLidar = 7,
    CameraDual = 8,
    CameraSwing = 9, ///< one lens that swings; oblique when carried by PlaneObliqueCopter
};

/// What a task is flown for. The values are stored in projects.
enum ETaskType
{
    TaskOrthophoto = 0,
    TaskOblique = 1,
    TaskVariableHeight = 2, ///< every route point has a height of its own
    TaskVideo = 3,
};

/// Whether the camera looks in several directions from that aircraft: flown for oblique photos in the mode of
/// three directions, its route is three routes, and for heights of its own each point keeps its altitude.
AXALGORTHM_EXPORT bool AxIsSpecialCamera(ECameraType camera, EPlaneType plane);

/// The file-name stem of the model of a plane type, such as "QuadPlane"; each type has one of its own. Empty
/// for a value that is no plane type.
AXALGORTHM_EXPORT QString GetPlaneStringByType(EPlaneType type);

Q_DECLARE_METATYPE(EPlaneType)
Q_DECLARE_METATYPE(ECameraType)
Q_DECLARE_METATYPE(ETaskType)
