#pragma once
#include <AxBaseUI/EToolType.h>

#include <QActionGroup>

class CAxEarthViewer;

/**
 * An action for each tool that the host offers, one of them checked: the
 * viewer's tool. When a drawing has ended the viewer goes back to browsing,
 * unless its tool measures.
 */
class ToolActions : public QActionGroup
{
    Q_OBJECT
public:
    ToolActions(CAxEarthViewer* viewer, QObject* parent);

    /// An action for a further tool. Whoever calls puts it into a menu.
    QAction* Add(EToolType tool, const QString& text, const QString& tip);
    /// Checks the action of the tool in hand; none for a tool without one.
    void Follow();
    /// Whether the operator draws the line along which a block is cut, which is no tool's.
    static bool IsCutting(const CAxEarthViewer& viewer);

private:
    void OnPickEnded(EToolType ended);

    CAxEarthViewer* viewer;
};
