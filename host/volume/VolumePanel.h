#pragma once
#include "scene/AxLatestWork.h"

#include <QPointer>
#include <QWidget>

class AxVolumeAnalysis;
class AxVolumeFields;
class CAxEarthViewer;
class CAxMessageBox;
class CAxVolumeWgt;
class VolumeKept;
class LimitedNumber;
class QComboBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;
struct AxVolumeResult;

/**
 * The volumes that were measured: what each is measured against and on which grid, to be changed without
 * drawing it again; its figures and the legend of its picture; to be hidden, flown to, copied, exported and
 * removed. GUI thread; the viewer may go first.
 */
class VolumePanel : public QWidget
{
    Q_OBJECT
public:
    explicit VolumePanel(CAxEarthViewer* viewer, QWidget* parent = nullptr);
    ~VolumePanel() override;

    /// Measures the volume within a block's outline as it is now, with what the next one is measured with; a
    /// second time anew. Why not, for the operator; empty when it has begun.
    static QString MeasureBlock(CAxEarthViewer& viewer, const QString& blockID);
    /// What a project keeps of them.
    VolumeKept* Kept() const { return kept; }
    /// Writes all texts anew: the units are others now.
    void WriteAgain();

signals:
    void Wanted();                  ///< a volume was measured: the panel is to be seen
    void Told(const QString& text); ///< for the status bar

protected:
    /// The map says what the colours mean while the list is seen.
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void Build();
    AxVolumeAnalysis* Analysis() const;
    QTreeWidgetItem* ItemOf(const QString& id) const;
    QStringList Chosen() const; ///< IDs
    void Add(const QString& id);
    void Fill(const QString& id);
    void OnItemChanged(QTreeWidgetItem* item);
    void ShowChosen();
    void ShowOnMap();
    void ShowResult(const AxVolumeResult& result);
    void Compute();
    void Fly();
    void Copy() const;
    void Export();
    void ShowWriting();
    void Write(const AxVolumeResult& result, const QString& file, bool isTable);
    void Remove();
    CAxMessageBox* WarningBox(const QString& title, const QString& text);
    bool Ask(const QString& text);

    QPointer<CAxEarthViewer> viewer;
    QComboBox* base;
    LimitedNumber* height;
    LimitedNumber* cell;
    AxVolumeFields* fields;
    QPushButton* compute;
    QProgressBar* progress;
    QPushButton* cancel;
    QLabel* told;
    QTreeWidget* list;
    CAxVolumeWgt* figures;
    VolumeKept* kept;
    QList<QPushButton*> ofChosen; ///< what can be done with results that are chosen
    QPushButton* exportButton = nullptr;
    QString shownID;      ///< whose question the fields were last filled with
    QString folder;       ///< that was exported to last
    AxLatestWork writing; ///< ends before what it reports to
};
