#include <AxData/CAxTask.h>

CAxTask::CAxTask(const QString& id, const QString& name, CAxTaskPara* para)
    : m_id(id), m_name(name), direction(para ? para->GetExtendedTaskParam()->direction : 0)
{
}

CAxTask::~CAxTask() = default;

void CAxTask::InsertVariableHeightRoutePt(int index, const QList<CAxVector3D>& points)
{
    if (index >= 0)
        m_variableHeightPoints.insert(index, points);
}

QList<CAxVector3D> CAxTask::GetVariableHeightRoutePt(int index) const
{
    return m_variableHeightPoints.value(index);
}

QList<CAxVector3D> CAxTask::ComputeRoute(int /*entryPoint*/, QList<QPair<int, CAxVector3D>>& lineMarkers,
                                         CAxBlock::EBlockType /*blockType*/, int /*expectedRouteCount*/,
                                         int /*appType*/)
{
    lineMarkers.clear();
    return {};
}
