#pragma once
#include <AxBaseUI/EToolType.h>

#include <QActionGroup>

class CAxEarthViewer;

/**
 * An action for each tool that the host offers, one of them checked: the
 * viewer's tool. When a drawing has ended the viewer goes back to browsing.
 */
class ToolActions : public QActionGroup
{
    Q_OBJECT
public:
    ToolActions(CAxEarthViewer* viewer, QObject* parent);

    /// Checks the action of the tool in hand; none for a tool without one.
    void Follow();

private:
    void Add(EToolType tool, const QString& text, const QString& tip);
    void OnPickEnded(EToolType ended);

    CAxEarthViewer* viewer;
};
