#include <AxData/CAxBlockManager.h>
#include <AxData/CAxTask.h>

#include <algorithm>

CAxBlockManager& CAxBlockManager::instance()
{
    static CAxBlockManager* const manager = new CAxBlockManager;
    return *manager;
}

CAxBlock* CAxBlockManager::AddBlock(const QString& id, CAxBlock::EBlockType type)
{
    if (id.isEmpty() || m_blocks.count(id) != 0)
        return nullptr;
    auto block = std::make_unique<CAxBlock>(id, type);
    block->SetBlockName(freeName());
    CAxBlock* const added = block.get();
    m_blocks.emplace(id, std::move(block));
    emit blockAdded(id);
    return added;
}

bool CAxBlockManager::DeleteBlock(const QString& id)
{
    const auto found = m_blocks.find(id);
    if (found == m_blocks.end())
        return false;
    const std::unique_ptr<CAxBlock> block = std::move(found->second);
    m_blocks.erase(found);
    emit blockDeleted(block->GetBlockID());
    return true;
}

void CAxBlockManager::DeleteAllBlocks()
{
    while (!m_blocks.empty())
        DeleteBlock(QString(m_blocks.begin()->first));
}

CAxBlock* CAxBlockManager::GetBlock(const QString& id) const
{
    const auto found = m_blocks.find(id);
    return found == m_blocks.end() ? nullptr : found->second.get();
}

QList<CAxBlock*> CAxBlockManager::GetBlockList() const
{
    QList<CAxBlock*> list;
    for (const auto& entry : m_blocks)
        list.append(entry.second.get());
    return list;
}

bool CAxBlockManager::_exist(const QString& name) const
{
    return std::any_of(m_blocks.begin(), m_blocks.end(),
                       [&name](const auto& entry) { return entry.second->GetBlockName() == name; });
}

QString CAxBlockManager::freeName() const
{
    int number = 1;
    while (_exist(tr("Block %1").arg(number)))
        ++number;
    return tr("Block %1").arg(number);
}
