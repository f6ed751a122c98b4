#include <AxData/CAxBlock.h>
#include <AxData/CAxControl.h>
#include <AxData/CAxTask.h>

#include <algorithm>

CAxBlock::CAxBlock(const QString& id, EBlockType type) : m_id(id), m_type(type) {}

CAxBlock::~CAxBlock() = default;

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
