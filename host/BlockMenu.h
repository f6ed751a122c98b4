#pragma once
#include <QMenu>
#include <QMessageBox>

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
    /// The one that is chosen; empty, with the operator told, where there are several.
    QString TheOne(const QString& title);
    /// Asks for a number and hands it on with the ID of each chosen block, as one step of undo. `edit` has no
    /// mnemonic and no dots.
    void AskFor(const QString& edit, const QString& label, double value, double least, double most,
                const std::function<QStringList(const QString& id, double value)>& change);
    void Tell(QMessageBox::Icon icon, const QString& title, const QString& text);
    void AskForGrowth();
    void AskForDeviation();

    CAxEarthViewer* viewer;
    QAction* cut = nullptr;
    bool wasCutting = false;
    QList<QAction*> ofOne;     ///< exactly
    QList<QAction*> ofAny;     ///< one or several
    QList<QAction*> ofSeveral; ///< two at least
};
