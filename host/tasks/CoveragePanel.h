#pragma once
#include "host/tasks/CoverageOverlay.h"
#include "host/tasks/CoverageReport.h"
#include "scene/AxLatestWork.h"

#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <memory>
#include <optional>

class CAxEarthViewer;
class QCheckBox;
class QComboBox;
class QGridLayout;
class QLabel;
class QProgressBar;
class QPushButton;

/**
 * What the photos of a route really show of its block, painted on the map: how many of them each place, or
 * how finely. Beside it the colours with what they mean, and the place that is worst off. Counted on another
 * thread, from the heights of the viewer's map. GUI thread; the viewer may go first.
 */
class CoveragePanel : public QWidget
{
    Q_OBJECT
public:
    explicit CoveragePanel(CAxEarthViewer* viewer, QWidget* parent = nullptr);
    ~CoveragePanel() override;

    /// Counts for this plan from now on, or for none. What was painted of another one goes at once.
    void ShowPlan(const std::shared_ptr<const ShownPlan>& plan);

private:
    void Build();
    void Count();
    void OnCounted(CoverageReport&& counted);
    void Forget(); ///< what was counted, is counted, and is painted
    void ShowReport();
    void ShowLegend(const CoveragePainting& painting);
    QString StepText(const CoverageScale& scale, int step) const;
    QString WorstText() const;
    void OnBlockDeleted(const QString& id);
    void OnBlockState(const QString& id);
    void Fly(const QPointF& place);

    QPointer<CAxEarthViewer> viewer;
    std::shared_ptr<const ShownPlan> shown;
    std::optional<CoverageReport> report;
    CoverageOverlay overlay;
    std::shared_ptr<std::atomic<int>> percent; ///< of the piece of work that is done now
    QTimer clock;                              ///< looks at it

    QCheckBox* isOn;
    QComboBox* measure;
    QProgressBar* progress;
    QPushButton* cancel;
    QWidget* legend;
    QLabel* worst;
    QLabel* told;
    AxLatestWork work; ///< ends before what it reports to
};
