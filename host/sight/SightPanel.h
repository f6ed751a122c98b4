#pragma once
#include <QPointer>
#include <QPointF>
#include <QWidget>

#include <optional>

class AxSightAnalysis;
class CAxEarthViewer;
class EscapeKey;
class LimitedNumber;
class QAction;
class QLabel;
class QMenu;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;
class SightKept;
class SightPick;
struct AxSightEnd;

/**
 * Lines of sight and viewsheds: heights and sizes to fill in, the places to click, and what was found, to be
 * hidden, flown to, copied, exported and removed. GUI thread; the viewer may go first.
 */
class SightPanel : public QWidget
{
    Q_OBJECT
public:
    explicit SightPanel(CAxEarthViewer* viewer, QWidget* parent = nullptr);
    ~SightPanel() override;

    /// Adds the entries that begin; each is checked while its clicks are waited for.
    void FillMenu(QMenu* menu);
    /// What of it goes with a project.
    SightKept* Kept() const { return kept; }

signals:
    /// The operator has begun: the panel is to be seen.
    void Wanted();
    /// Something that the status bar shows.
    void Told(const QString& text);

private:
    void Build();
    QWidget* BuildForm();
    QWidget* BuildList();
    void FillFromMenu(QMenu* menu);
    void OnWanted(int clicks);
    void OnPicked(const QList<QPointF>& places);
    void OnPointed(double longitude, double latitude);
    void LookAround(const QPointF& place);
    void CallOff();
    void OnBusy(bool busy);
    void OnAdded(int number);
    void OnShown(int number);
    void ShowWaiting();
    bool IsEscapeMeant() const;
    void OnItemChanged(QTreeWidgetItem* item);
    void ShowChosen();
    QList<int> Chosen() const; ///< numbers of results
    QString ReportOf(int number) const;
    void Fly();
    void Copy() const;
    void Export();
    void Remove();
    AxSightAnalysis* Analysis() const;
    /// Places that a viewshed may be from besides a click; nothing where there is none now.
    std::optional<QPointF> HomeOfBlock() const;
    std::optional<QPointF> MarkPoint() const;
    std::optional<QPointF> BelowCamera() const;

    QPointer<CAxEarthViewer> viewer;
    SightPick* pick;
    SightKept* kept;
    EscapeKey* escape; ///< while something is looked at
    QAction* lineAction;
    QAction* viewshedAction;
    LimitedNumber* observerHeight;
    LimitedNumber* targetHeight;
    LimitedNumber* radius;
    LimitedNumber* cell;
    LimitedNumber* refraction;
    QProgressBar* progress;
    QPushButton* cancel;
    QLabel* told;
    QTreeWidget* list;
    QPlainTextEdit* report;
    QList<QPushButton*> ofChosen; ///< what can be done with results that are chosen
    QPushButton* removeButton = nullptr;
};
