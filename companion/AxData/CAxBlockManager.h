#pragma once

#include <AxData/AxDataExport.h>
#include <AxData/CAxBlock.h>

#include <QObject>
#include <QString>

#include <map>
#include <memory>

/// The process-wide registry of survey blocks, keyed by block ID; it owns them. It lives from its first use
/// to the end of the process, so it may be asked at any time, even while the program shuts down. GUI thread
/// only.
class AXDATA_EXPORT CAxBlockManager : public QObject
{
    Q_OBJECT

public:
    static CAxBlockManager& instance();

    /// Creates an empty block with a name that no other block has. Null, and nothing changes, when the ID
    /// is empty or taken.
    CAxBlock* AddBlock(const QString& id, CAxBlock::EBlockType type);

    /// Deletes the block with its tasks; false when there is none.
    bool DeleteBlock(const QString& id);
    void DeleteAllBlocks();

    /// Null when there is none.
    CAxBlock* GetBlock(const QString& id) const;

    /// In ascending order of their IDs.
    QList<CAxBlock*> GetBlockList() const;

    /// Whether a block of exactly that name exists.
    bool _exist(const QString& name) const;

signals:
    /// Sent after the block was registered.
    void blockAdded(const QString& id);
    /// Sent while the block is already out of the registry but not yet deleted.
    void blockDeleted(const QString& id);

private:
    CAxBlockManager() = default;
    ~CAxBlockManager() override = default;
    QString freeName() const;

    std::map<QString, std::unique_ptr<CAxBlock>> m_blocks;
};
