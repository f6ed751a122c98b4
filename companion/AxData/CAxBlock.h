#pragma once

#include <AxAlgorthm/CAxVector3D.h>
#include <AxData/AxDataExport.h>
#include <AxData/CAxTaskPara.h>

#include <QList>
#include <QPointF>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

class CAxBlockManager;
class CAxTask;

/// One survey block and its tasks. Created and owned by CAxBlockManager; a pointer to it is good until the
/// block is deleted there. GUI thread only.
class AXDATA_EXPORT CAxBlock
{
public:
    /// The kind of map object that draws the block. The values are stored in projects.
    enum EBlockType
    {
        PolygonBlock = 0,
        RectangleBlock = 1,
        StripBlock = 2,
        VideoBlock = 3,
        ProhibitedAreaBlock = 4, ///< an area of an application to fly in a prohibited area
        MarkPointBlock = 5,      ///< mark points; the viewer keeps no block record for them
    };

    /// Made by CAxBlockManager::AddBlock; a block made by others is not registered.
    CAxBlock(const QString& id, EBlockType type);
    ~CAxBlock();
    CAxBlock(const CAxBlock&) = delete;
    CAxBlock& operator=(const CAxBlock&) = delete;

    /// The same as the handle ID of the map object that draws the block.
    QString GetBlockID() const { return m_id; }

    /// The kind that the block was made as; it never changes.
    EBlockType GetBlockType() const { return m_type; }

    /// The name is not checked against those of other blocks. A change of the name or the vertices of a
    /// registered block is told by CAxBlockManager::blockChanged.
    QString GetBlockName() const { return m_name; }
    void SetBlockName(const QString& name);

    /// The vertices as (longitude, latitude) in degrees, the first one not repeated at the end; for a strip
    /// block the points of its centre line.
    QList<QPointF> GetAnchor() const { return m_anchor; }
    void SetAnchor(const QList<QPointF>& ring);

    /// The planning parameters; they live as long as the block.
    CAxTaskPara* GetTaskPara() { return &m_taskPara; }
    const CAxTaskPara* GetTaskPara() const { return &m_taskPara; }

    /// The tasks in the order in which they were added; the block owns them.
    QList<CAxTask*> GetMissionList() const;
    /// Null when the block has no such task.
    CAxTask* GetTask(const QString& id) const;
    /// Takes over the task and returns it; null, with the task deleted, when it is null itself or its ID is
    /// taken already.
    CAxTask* AddTask(std::unique_ptr<CAxTask> task);
    /// Deletes the task; false when there is none of that ID.
    bool RemoveTask(const QString& id);

    /// Home, where the aircraft takes off and lands: longitude, latitude, altitude. Null until set. With
    /// projectModified the project is marked as modified, too.
    CAxVector3D GetHomePosition() const { return m_home; }
    void SetHomePosition(const CAxVector3D& position, bool projectModified);

    /// Index (0 to 3) of the chosen entry point, -1 when none was chosen.
    int GetEnterDirection() const { return m_enterDirection; }
    void SetEnterDirection(int index) { m_enterDirection = index; }

    /// True: the aircraft glides down to its landing point; false: it comes down by parachute or vertically.
    bool IsDownhillLanding() const { return m_downhillLanding; }
    void SetDownhillLanding(bool downhill) { m_downhillLanding = downhill; }

    /// Radius of a video block in metres. Its change is told as that of a vertex is.
    int GetVideoRadius() const { return m_videoRadius; }
    void SetVideoRadius(int metres);

    /// Mean altitude of the block's terrain in metres, 0 until set. The viewer works it out and sets it some
    /// moments after the vertices have changed, unless it has been set to another value by then.
    double GetAverageAltitude() const { return m_averageAltitude; }
    void SetAverageAltitude(double metres) { m_averageAltitude = metres; }

    /// Names of the model layers, and ids of the no-fly zones, that the block touches.
    QStringList GetIntersections() const { return m_intersections; }
    void SetIntersections(QStringList names) { m_intersections = std::move(names); }

private:
    friend class CAxBlockManager;

    CAxBlockManager* m_manager = nullptr; // null while the block is not registered
    QString m_id;
    QString m_name;
    EBlockType m_type;
    QList<QPointF> m_anchor;
    CAxTaskPara m_taskPara;
    std::vector<std::unique_ptr<CAxTask>> m_tasks;
    CAxVector3D m_home;
    int m_enterDirection = -1;
    bool m_downhillLanding = false;
    int m_videoRadius = 50;
    double m_averageAltitude = 0.0;
    QStringList m_intersections;
};
