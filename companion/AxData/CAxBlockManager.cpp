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
    block->SetBlockName(FreeName());
    return Register(std::move(block));
}

CAxBlock* CAxBlockManager::Register(std::unique_ptr<CAxBlock> block)
{
    const QString id = block->GetBlockID();
    block->m_manager = this;
    ++m_nameCounts[block->GetBlockName()];
    m_blocks.emplace(id, std::move(block));
    emit blockAdded(id);
    return GetBlock(id); // who heard of it may have deleted it
}

bool CAxBlockManager::DeleteBlock(const QString& id)
{
    return TakeBlock(id) != nullptr;
}

std::unique_ptr<CAxBlock> CAxBlockManager::TakeBlock(const QString& id)
{
    const auto found = m_blocks.find(id);
    if (found == m_blocks.end())
        return nullptr;
    std::unique_ptr<CAxBlock> block = std::move(found->second);
    m_blocks.erase(found);
    block->m_manager = nullptr;
    DropName(block->GetBlockName());
    emit blockDeleted(block->GetBlockID());
    return block;
}

CAxBlock* CAxBlockManager::PutBack(std::unique_ptr<CAxBlock>& block)
{
    if (!block || m_blocks.count(block->GetBlockID()) != 0)
        return nullptr;
    if (_exist(block->GetBlockName()))
        block->SetBlockName(NumberedName(block->GetBlockName()));
    return Register(std::move(block));
}

// A file may have thousands of one name.
QString CAxBlockManager::NumberedName(const QString& name)
{
    int& next = m_nextOfName[name];
    next = std::max(next, 2);
    QString numbered;
    do {
        numbered = QStringLiteral("%1 (%2)").arg(name, QString::number(next));
        m_numbered.insert(numbered, {name, next++});
    } while (_exist(numbered));
    return numbered;
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
    return m_nameCounts.contains(name);
}

void CAxBlockManager::OnChanged(QString id)
{
    emit blockChanged(id);
}

void CAxBlockManager::OnRenamed(const QString& id, const QString& oldName, const QString& newName)
{
    ++m_nameCounts[newName];
    DropName(oldName);
    OnChanged(id);
}

void CAxBlockManager::DropName(const QString& name)
{
    const auto count = m_nameCounts.find(name);
    Q_ASSERT(count != m_nameCounts.end());
    if (--*count > 0)
        return;
    m_nameCounts.erase(count);
    const auto number = m_numbers.constFind(name);
    if (number != m_numbers.constEnd())
        m_freedNumbers.insert(*number);
    const auto numbered = m_numbered.constFind(name);
    if (numbered == m_numbered.constEnd())
        return;
    int& next = m_nextOfName[numbered->first];
    next = std::min(next, numbered->second);
}

QString CAxBlockManager::FreeName()
{
    const QString pattern = tr("Block %1");
    if (pattern != m_namePattern) {
        // The language was changed.
        m_namePattern = pattern;
        m_numbers.clear();
        m_freedNumbers.clear();
        m_nextNumber = 1;
    }
    while (!m_freedNumbers.empty()) {
        const QString name = pattern.arg(*m_freedNumbers.begin());
        m_freedNumbers.erase(m_freedNumbers.begin());
        if (!_exist(name))
            return name;
    }
    QString name;
    do {
        name = pattern.arg(m_nextNumber);
        m_numbers.insert(name, m_nextNumber++);
    } while (_exist(name));
    return name;
}
