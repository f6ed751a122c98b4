#include <AxData/CAxBlock.h>
#include <AxData/CAxBlockManager.h>
#include <AxData/CAxControl.h>
#include <AxData/CAxTask.h>

#include <algorithm>

namespace {
// Bit for bit: QPointF's own comparison takes places apart by micrometres for one.
bool IsSameRing(const QList<QPointF>& left, const QList<QPointF>& right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](const QPointF& a, const QPointF& b) { return a.x() == b.x() && a.y() == b.y(); });
}
} // namespace

CAxBlock::CAxBlock(const QString& id, EBlockType type) : m_id(id), m_type(type)
{
    m_taskPara.m_widthsChanged.call = [this] {
        if (m_manager)
            m_manager->OnChanged(m_id);
    };
}

CAxBlock::~CAxBlock() = default;

void CAxBlock::SetBlockName(const QString& name)
{
    if (name == m_name)
        return;
    const QString oldName = m_name;
    m_name = name;
    if (m_manager)
        m_manager->OnRenamed(m_id, oldName, name);
}

void CAxBlock::SetAnchor(const QList<QPointF>& ring)
{
    const bool changed = !IsSameRing(ring, m_anchor);
    m_anchor = ring;
    if (m_manager && changed)
        m_manager->OnChanged(m_id);
}

void CAxBlock::SetVideoRadius(int metres)
{
    const bool changed = metres != m_videoRadius;
    m_videoRadius = metres;
    if (m_manager && changed)
        m_manager->OnChanged(m_id);
}

QList<CAxTask*> CAxBlock::GetMissionList() const
{
    QList<CAxTask*> list;
    for (const auto& task : m_tasks)
        list.append(task.get());
    return list;
}

CAxTask* CAxBlock::GetTask(const QString& id) const
{
    const auto found = std::find_if(m_tasks.begin(), m_tasks.end(),
                                    [&id](const auto& task) { return task->GetTaskID() == id; });
    return found == m_tasks.end() ? nullptr : found->get();
}

CAxTask* CAxBlock::AddTask(std::unique_ptr<CAxTask> task)
{
    if (!task || GetTask(task->GetTaskID()))
        return nullptr;
    task->m_block = this;
    m_tasks.push_back(std::move(task));
    return m_tasks.back().get();
}

bool CAxBlock::RemoveTask(const QString& id)
{
    const auto found = std::find_if(m_tasks.begin(), m_tasks.end(),
                                    [&id](const auto& task) { return task->GetTaskID() == id; });
    if (found == m_tasks.end())
        return false;
    m_tasks.erase(found);
    return true;
}

void CAxBlock::SetHomePosition(const CAxVector3D& position, bool projectModified)
{
    m_home = position;
    if (projectModified)
        CAxControl::GetInstance()->SetProjectModified(true);
}
