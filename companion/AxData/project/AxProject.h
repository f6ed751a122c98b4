#pragma once

#include <AxAlgorthm/CAxVector3D.h>
#include <AxData/AxDataExport.h>
#include <AxData/CAxBlock.h>
#include <AxData/CAxTaskPara.h>

#include <QList>
#include <QMap>
#include <QPointF>
#include <QString>
#include <QStringList>
#include <QVector>

#include <memory>
#include <optional>

struct AxKeptRoute;

/// A task as a project holds it.
struct AXDATA_EXPORT AxProjectTask
{
    QString id;             ///< unique within its block
    QString name;           ///< that the pilot sees
    QList<QPointF> anchors; ///< of its own area: longitude, latitude in degrees
    int direction = 0;      ///< which of three sub-routes is shown: 0, 1 or 2
    /// As CAxTask::InsertVariableHeightRoutePt() takes them: latitude, longitude, altitude.
    QMap<int, QList<CAxVector3D>> variableHeights;
    /// Of a task whose route follows from no parameters (AxMissionTask); else null.
    std::shared_ptr<const AxKeptRoute> route;
};

/// A block as a project holds it; the fields are those of CAxBlock.
struct AXDATA_EXPORT AxProjectBlock
{
    QString id;                                         ///< unique within the project
    QString name;                                       ///< that the pilot sees
    CAxBlock::EBlockType type = CAxBlock::PolygonBlock; ///< as its record was made
    QList<QPointF> anchors;                             ///< longitude, latitude in degrees
    CAxVector3D home;        ///< longitude, latitude, metres; null until set, altitude NaN if not known
    int enterDirection = -1; ///< 0 to 3; -1: none was chosen
    bool isDownhillLanding = false; ///< else by parachute or vertically
    int videoRadius = 50;           ///< metres
    double averageAltitude = 0.0;   ///< metres; the viewer works it out anew
    QStringList intersections;      ///< layers and zones that it touches; the viewer finds them anew
    CAxTaskPara parameters;         ///< with those of the air-line and of the extended record
    QVector<AxProjectTask> tasks;   ///< in their order
    bool isLocked = false;          ///< the viewer knows it, no record
    bool isVisible = true;          ///< the same
};

/// A named place.
struct AXDATA_EXPORT AxProjectMark
{
    QString id;             ///< unique within the project
    QString name;           ///< that the pilot sees
    double longitude = 0.0; ///< degrees
    double latitude = 0.0;  ///< degrees
    double altitude = 0.0;  ///< metres
    QString description;    ///< may have several lines
    /// The altitude is that of the ground, and is found anew with it; else a file or a person gave it.
    bool followsGround = false;
};

/// Where the camera stands.
struct AXDATA_EXPORT AxProjectView
{
    double longitude = 0.0; ///< degrees, of the point that it looks at
    double latitude = 0.0;  ///< degrees
    double altitude = 0.0;  ///< metres
    double heading = 0.0;   ///< degrees clockwise from north
    double pitch = -90.0;   ///< degrees; -90 looks straight down
    double range = 0.0;     ///< metres from the point
};

/// What a project file holds: plain values that know neither the viewer nor the registry of blocks. A copy
/// shares its contents until one of both is changed; copies may go to other threads.
struct AXDATA_EXPORT AxProject
{
    QVector<AxProjectBlock> blocks;    ///< in the order of CAxBlockManager::GetBlockList()
    QVector<AxProjectMark> marks;      ///< in the pilot's order
    std::optional<AxProjectView> view; ///< where it was saved
    QMap<QString, QString> values;     ///< what a host keeps beside, by names of its own
};

/// Exact comparisons of all fields; NaN equals NaN.
AXDATA_EXPORT bool operator==(const AxProjectTask& a, const AxProjectTask& b);
AXDATA_EXPORT bool operator==(const AxProjectBlock& a, const AxProjectBlock& b);
AXDATA_EXPORT bool operator==(const AxProjectMark& a, const AxProjectMark& b);
AXDATA_EXPORT bool operator==(const AxProjectView& a, const AxProjectView& b);
AXDATA_EXPORT bool operator==(const AxProject& a, const AxProject& b);
inline bool operator!=(const AxProject& a, const AxProject& b)
{
    return !(a == b);
}

/// Whether the pilot has made no difference: all is equal but the camera and what the viewer works out by
/// itself, average altitudes and intersections.
AXDATA_EXPORT bool AxIsSameWork(const AxProject& a, const AxProject& b);
/// The same of one block.
AXDATA_EXPORT bool AxIsSameWork(const AxProjectBlock& a, const AxProjectBlock& b);

/// The record as plain values; not locked, visible. GUI thread.
AXDATA_EXPORT AxProjectBlock AxProjectBlockOf(const CAxBlock& block);
/// Those of all registered blocks, in the order of their list. GUI thread.
AXDATA_EXPORT QVector<AxProjectBlock> AxProjectBlocks();

/// Gives a record of the same type all that is kept but the ID; its former tasks go. A task with a route of
/// its own becomes an AxMissionTask. The project is not marked as modified. GUI thread.
AXDATA_EXPORT void AxFillBlock(CAxBlock& block, const AxProjectBlock& stored);
