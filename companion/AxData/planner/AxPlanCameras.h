#pragma once

#include <AxAlgorthm/AxMissionTypes.h>
#include <AxData/AxDataExport.h>
#include <AxData/planner/AxPlanRequest.h>

#include <QByteArray>
#include <QList>
#include <QString>

/// A camera of the list and what kind it is.
struct AXDATA_EXPORT AxListedCamera
{
    ECameraType type = CameraFullFrame; ///< for which it can be taken
    AxPlanCamera camera;                ///< itself
};

/// The cameras of a list: JSON, an array of objects with "name", "type" (fullFrame, apsC, mediumFormat,
/// multispectral, thermal, oblique, video, lidar, dual, swing), "sensor" (width across the flight and height,
/// mm), "image" (the same in pixels), "focalLength" (mm) and "shortestInterval" (seconds between photos). On
/// bad input cameras is left as it is and the answer says why, with the camera and the field; else it is
/// empty.
AXDATA_EXPORT QString AxReadCameras(const QByteArray& json, QList<AxListedCamera>& cameras);

/// The list that all plans take their cameras from: "cameras.json" beside the program, read once. Where there
/// is none, or a bad one (which is logged), it is empty. GUI thread.
AXDATA_EXPORT const QList<AxListedCamera>& AxCameraList();

/// The first camera of a type in that list, or a plain one.
AXDATA_EXPORT AxPlanCamera AxCameraOfType(ECameraType type);
