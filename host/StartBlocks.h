#pragma once
#include "host/BlockFile.h"

#include <QCoreApplication>

class BlockPanel;
class CAxEarthViewer;
class LogPanel;
class QStatusBar;

/// The blocks that the command line asks for. GUI thread.
class StartBlocks
{
    Q_DECLARE_TR_FUNCTIONS(StartBlocks)
public:
    /// Draws them. False where one of them cannot be drawn, which standard error tells: none is left then.
    static bool Draw(CAxEarthViewer& viewer, const QList<FileBlock>& blocks, QStringList& made);
    /// Tells of those, by their IDs, that drawing by hand would refuse.
    static void TellFaults(const QStringList& made, const BlockPanel& panel, LogPanel& log, QStatusBar& bar);
};
