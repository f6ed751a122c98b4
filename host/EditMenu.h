#pragma once
#include <QMenu>

class CAxEarthViewer;

/**
 * Undo and redo, deletion of the selected blocks, and the switches of what helps
 * while vertices are edited. It also answers the map's Delete key.
 */
class EditMenu : public QMenu
{
    Q_OBJECT
public:
    /// `history` shows or hides the list of what can be undone.
    EditMenu(CAxEarthViewer* viewer, QAction* history, QWidget* parent);

private:
    void AddAids();
    /// What Delete is about: the selected blocks, or else the current one.
    QStringList BlocksToDelete() const;
    void DeleteSelected();
    void OnKeyDelete();

    CAxEarthViewer* viewer;
    QAction* deleteBlock;
};
