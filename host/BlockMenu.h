#pragma once
#include <QMenu>

class BlockPanel;
class CAxEarthViewer;

/**
 * What is done to whole blocks: the selected ones, or else the current one. The list of blocks offers it for
 * its rows, too.
 */
class BlockMenu : public QMenu
{
    Q_OBJECT
public:
    BlockMenu(CAxEarthViewer* viewer, BlockPanel* panel, QWidget* parent);

private:
    QStringList Chosen() const;
    void EnableWhatIsPossible();
    /// Asks for a number and hands it on with the ID of the chosen block.
    void AskFor(const QString& title, const QString& label, double value, double least, double most,
                void (BlockMenu::*change)(const QString& id, double value));
    void Buffer(const QString& id, double metres);
    void Simplify(const QString& id, double metres);
    void Turn(const QString& id, double degrees);
    void Scale(const QString& id, double percent);

    CAxEarthViewer* viewer;
    QList<QAction*> ofOne;
    QList<QAction*> ofSeveral;
};
