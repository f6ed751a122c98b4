#pragma once

#include <AxAlgorthm/CAxVector3D.h>
#include <AxData/AxDataExport.h>
#include <AxData/CAxBlock.h>
#include <AxData/planner/AxPlanRequest.h>
#include <AxData/planner/AxPlanResult.h>

#include <QList>
#include <QMap>
#include <QPair>
#include <QPointF>
#include <QString>

#include <memory>
#include <optional>

struct AxKeptRoute;

/// One task (mission) of a block. Created by the host and handed to its block, which owns it from then on.
/// A host with a planner of its own derives from this class. GUI thread only.
class AXDATA_EXPORT CAxTask
{
public:
    /// para are the planning parameters of the block that the task is for; they may be null.
    CAxTask(const QString& id, const QString& name, CAxTaskPara* para);
    virtual ~CAxTask();
    CAxTask(const CAxTask&) = delete;
    CAxTask& operator=(const CAxTask&) = delete;

    /// Unique within the block.
    QString GetTaskID() const { return m_id; }

    /// The name that the operator sees.
    QString GetTaskName() const { return m_name; }
    void SetTaskName(const QString& name) { m_name = name; }

    /// The ring of the task's own area as (longitude, latitude) in degrees.
    QList<QPointF> GetTaskAnchors() const { return m_anchors; }
    void SetTaskAnchors(const QList<QPointF>& ring) { m_anchors = ring; }

    /// Points to be flown between route point index and the next one, for flying at a variable height;
    /// replaces those given for that index before. A negative index changes nothing. Indices are those of the
    /// route without such points, places (latitude, longitude, altitude). Who plans anew gives them anew.
    void InsertVariableHeightRoutePt(int index, const QList<CAxVector3D>& points);
    /// The points given for that index, empty when there are none.
    QList<CAxVector3D> GetVariableHeightRoutePt(int index) const;
    /// Those of all indices.
    QMap<int, QList<CAxVector3D>> GetVariableHeightRoutePts() const { return m_variableHeightPoints; }

    /// What is to be planned for an entry point (0 to 3; less counts as 0): the task's own area, or its
    /// block's, with the block's parameters; asks for the no-fly zones if they are holes. Without a block the
    /// area and the parameters are missing.
    AxPlanRequest RequestOf(int entryPoint, CAxBlock::EBlockType blockType, int expectedRouteCount) const;

    /// The next ComputeRoute() gives the route of this plan instead of planning anew, for who has just
    /// planned RequestOf() himself. Once; a plan that has neither a route nor a fault takes back one that was
    /// given.
    void TakePlan(AxPlanResult plan);

    /// The route as (latitude, longitude, altitude) points, without home; where its ways from and to home go
    /// round no-fly zones, it begins and ends with their corners. lineMarkers gets the entry-point markers as
    /// pairs of their number, 0 to 3, and their place in the same order; of three directions those of the
    /// task's own `direction`, of its second one from 3 to 0. An empty list means that the parameters do not
    /// allow a route; the log then says why. Where the block's flying height changes, the points of
    /// InsertVariableHeightRoutePt() follow their route points, but not in three directions. appType, the
    /// kind of application, changes nothing.
    virtual QList<CAxVector3D> ComputeRoute(int entryPoint, QList<QPair<int, CAxVector3D>>& lineMarkers,
                                            CAxBlock::EBlockType blockType, int expectedRouteCount,
                                            int appType);

    /// Whether the route is shown whole and at the altitudes of its own points, whatever the parameters of
    /// the block say: a route that follows from none of them.
    virtual bool KeepsItsRoute() const { return false; }
    /// What a project keeps of such a route; null for one that follows from the parameters.
    virtual std::shared_ptr<const AxKeptRoute> KeptRoute() const;

private:
    friend class CAxBlock;

    QString m_id;
    QString m_name;
    CAxBlock* m_block = nullptr; // that has it
    QList<QPointF> m_anchors;
    QMap<int, QList<CAxVector3D>> m_variableHeightPoints;
    std::optional<AxPlanResult> m_plan; // for the next ComputeRoute()

public:
    /// Which of the three sub-routes is shown: 0, 1 or 2. Begins as that of the block's extended task
    /// parameters; from then on each task has its own.
    int direction = 0;
};
