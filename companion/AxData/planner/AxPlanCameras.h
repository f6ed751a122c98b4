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
/// mm), "image" (the same in pixels), "focalLength" (mm) and "shortestInterval" (seconds between photos), and
/// perhaps "views": for each lens, or each direction of one that swings, degrees clockwise from the flight,
/// 0 up to 360, and from straight down, 0 up to 90. Without it lenses look as is usual for the type. On bad
/// input cameras is left as it is and the answer says why, with the camera and the field; else it is
/// empty.
AXDATA_EXPORT QString AxReadCameras(const QByteArray& json, QList<AxListedCamera>& cameras);

/// A file with such a list.
struct AXDATA_EXPORT AxCameraFile
{
    QString path;         ///< of the file
    bool isThere = false; ///< it exists
    QString fault;        ///< for people, with the file and what is wrong in it; empty when it is good
    QList<AxListedCamera> cameras; ///< empty where there is no file or a bad one
};
AXDATA_EXPORT AxCameraFile AxReadCameraFile(const QString& path);

/// The camera of a type and a name in a file; the first one of the type without a name, or with one of
/// another type. Where there is no file and no name, a plain one. A camera that is not to be had is never
/// replaced by another: its fault says what the file lacks.
AXDATA_EXPORT AxPlanCamera AxCameraIn(const AxCameraFile& file, ECameraType type, const QString& name = {});

/// The list that all plans take their cameras from: "cameras.json" beside the program, read once. Where there
/// is none, or a bad one, it is empty, and the log says so. GUI thread.
AXDATA_EXPORT const QList<AxListedCamera>& AxCameraList();

/// AxCameraIn() that file. GUI thread.
AXDATA_EXPORT AxPlanCamera AxCameraOfType(ECameraType type, const QString& name = {});
