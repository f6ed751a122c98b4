#include "host/StartBlocks.h"
#include "host/BlockPanel.h"
#include "host/LogPanel.h"
#include "viewer/CAxEarthViewer.h"

#include <AxAlgorthm/AxUniqueID.h>
#include <AxData/CAxBlockManager.h>

#include <QStatusBar>
#include <QTextStream>

bool StartBlocks::Draw(CAxEarthViewer& viewer, const QList<FileBlock>& blocks, QStringList& made)
{
    CAxBlockManager& records = CAxBlockManager::instance();
    for (const FileBlock& wanted : blocks) {
        const QString id = CreateUniqueID();
        CAxBlock* block = records.AddBlock(id, wanted.type);
        made += id;
        if (!wanted.name.isEmpty())
            block->SetBlockName(wanted.name);
        block->SetVideoRadius(wanted.radius);
        block->SetAnchor(wanted.anchor);
        if (viewer.ImportShapeNode(id))
            continue;
        QTextStream(stderr) << "AxGroundControl: "
                            << tr("--blocks: block '%1' cannot be drawn.").arg(block->GetBlockName())
                            << Qt::endl;
        for (const QString& other : qAsConst(made))
            if (!viewer.RemoveHanderAdapter(other, true))
                records.DeleteBlock(other);
        made.clear();
        return false;
    }
    return true;
}

void StartBlocks::TellFaults(const QStringList& made, const BlockPanel& panel, LogPanel& log, QStatusBar& bar)
{
    int count = 0;
    for (const QString& id : made) {
        const QString fault = panel.FaultOf(id);
        if (fault.isEmpty())
            continue;
        ++count;
        const QString line = tr("--blocks: block '%1' is drawn, but drawing would refuse it: %2")
                                 .arg(CAxBlockManager::instance().GetBlock(id)->GetBlockName(),
                                      QString(fault).replace(QLatin1Char('\n'), QLatin1Char(' ')));
        QTextStream(stderr) << "AxGroundControl: " << line << Qt::endl;
        log.AppendLine(line);
    }
    if (count > 0)
        bar.showMessage(
            tr("%1 of %2 blocks would be refused if they were drawn; they have a warning sign in the list.")
                .arg(count)
                .arg(made.size()));
}
