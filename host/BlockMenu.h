#pragma once
#include <QMenu>

#include <functional>

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

signals:
    /// What the operator does next, until an empty one comes.
    void Hinted(const QString& text);

private:
    QStringList Chosen() const;
    void EnableWhatIsPossible();
    void FollowCut();
    void ShowProperties();
    /// Asks for a number and hands it on with the ID of the chosen block.
    void AskFor(const QString& title, const QString& label, double value, double least, double most,
                const std::function<void(const QString& id, double value)>& change);
    void AskForGrowth();
    void AskForDeviation();

    CAxEarthViewer* viewer;
    QAction* cut = nullptr;
    bool wasCutting = false;
    QList<QAction*> ofOne;
    QList<QAction*> ofSeveral;
};
