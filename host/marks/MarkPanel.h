#pragma once
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <osg/Vec3d>

class CAxEarthViewer;
class MarkListModel;
class QMenu;
class QModelIndex;
class QPushButton;
class QSortFilterProxyModel;
class QTableView;

/**
 * The list of mark points. A click on a row, or Enter, flies to the mark; a double click or F2 renames,
 * Delete deletes, which can be undone. The marks that are selected on the map are the highlighted rows,
 * and the other way round. A right click, in the list and on a mark of the map, opens a menu. Marks are read
 * from and written to files.
 */
class MarkPanel : public QWidget
{
    Q_OBJECT
public:
    /// The viewer outlives the panel.
    explicit MarkPanel(CAxEarthViewer* viewer, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    /// Adds the points of a file, as one step that can be undone; a box tells what was left out.
    void Import(const QString& file);
    /// Writes the chosen marks, or else all, in the format that the suffix names; a box tells what could not
    /// be. False when nothing was written.
    bool Export(const QString& file);

signals:
    /// Something that the status bar shows.
    void Told(const QString& text);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QStringList Chosen() const;
    QString MarkOf(const QModelIndex& shown) const;
    void FollowMap();
    void TellMap();
    void Fly();
    void Delete();
    void ChooseImport();
    void ChooseExport();
    void AddActions(QMenu& menu);
    void OnRightClick(const osg::Vec3d& lngLatPos);
    void Enable();
    void Warn(const QString& title, const QString& text, const QStringList& details);

    CAxEarthViewer* viewer;
    MarkListModel* model;
    QSortFilterProxyModel* sorted;
    QTableView* list;
    QPushButton* exportButton;
    QString folder;
    bool isByHand = false; ///< mouse or keys are at work in the list
};
