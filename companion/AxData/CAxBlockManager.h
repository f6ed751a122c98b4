#pragma once

#include <AxData/AxDataExport.h>
#include <AxData/CAxBlock.h>

#include <QHash>
#include <QObject>
#include <QPair>
#include <QString>

#include <map>
#include <memory>
#include <set>

/// The process-wide registry of survey blocks, keyed by block ID; it owns them. It lives from its first use
/// to the end of the process, so it may be asked at any time, even while the program shuts down. GUI thread
/// only.
class AXDATA_EXPORT CAxBlockManager : public QObject
{
    Q_OBJECT

public:
    /// The one registry of the process.
    static CAxBlockManager& instance();

    /// Creates an empty block with a name that no other block has. Null, and nothing changes, when the ID
    /// is empty or taken.
    CAxBlock* AddBlock(const QString& id, CAxBlock::EBlockType type);

    /// Deletes the block with its tasks; false when there is none.
    bool DeleteBlock(const QString& id);
    /// Deletes the blocks one after the other, with a signal for each.
    void DeleteAllBlocks();

    /// Takes the block, whole with its tasks, out of the registry, which tells of it as of a deletion; null
    /// when there is none. PutBack() registers it again and tells of it as of a new one. Where another block
    /// has its name by then, it gets a number behind it. Null, with the block left where it is, when its ID
    /// is taken.
    std::unique_ptr<CAxBlock> TakeBlock(const QString& id);
    CAxBlock* PutBack(std::unique_ptr<CAxBlock>& block);

    /// Null when there is none.
    CAxBlock* GetBlock(const QString& id) const;

    /// In ascending order of their IDs.
    QList<CAxBlock*> GetBlockList() const;

    /// Whether a block of exactly that name exists.
    bool _exist(const QString& name) const;

signals:
    /// Sent after the block was registered.
    void blockAdded(const QString& id);
    /// Sent while the block is already out of the registry, but still whole.
    void blockDeleted(const QString& id);
    /// Sent after the name or the vertices of a registered block became different ones.
    void blockChanged(const QString& id);

private:
    friend class CAxBlock;

    CAxBlockManager() = default;
    ~CAxBlockManager() override = default;
    // By value: a listener may delete the block that the text belongs to.
    void OnChanged(QString id);
    void OnRenamed(const QString& id, const QString& oldName, const QString& newName);
    CAxBlock* Register(std::unique_ptr<CAxBlock> block);
    void DropName(const QString& name);
    QString NumberedName(const QString& name);
    QString FreeName();

    std::map<QString, std::unique_ptr<CAxBlock>> m_blocks;
    QHash<QString, int> m_nameCounts; // how many blocks have the name
    // Which "Block N" is the lowest free one is known without a search. All numbers below m_nextNumber were
    // taken once and stand in m_numbers; those that were given back since stand in m_freedNumbers.
    QString m_namePattern;
    QHash<QString, int> m_numbers;
    std::set<int> m_freedNumbers;
    int m_nextNumber = 1;
    // Which "Field (N)" may be the lowest free one: all below were taken when it was looked for last. The
    // other way round, by the numbered names.
    QHash<QString, int> m_nextOfName;
    QHash<QString, QPair<QString, int>> m_numbered;
};
