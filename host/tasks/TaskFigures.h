#pragma once
#include "host/tasks/ShownPlan.h"
#include "scene/AxLatestWork.h"

#include <QList>
#include <QPointer>
#include <QPointF>
#include <QWidget>

#include <memory>

class CAxEarthViewer;
class QFormLayout;
class QLabel;
class QListWidget;
class TaskFlights;

struct AxCoveredArea;

/// What a planned route amounts to, and what its pilot is warned of. The area that photos show is counted on
/// another thread, on the ground of the viewer's map. GUI thread; the viewer may go first.
class TaskFigures : public QWidget
{
    Q_OBJECT
public:
    explicit TaskFigures(CAxEarthViewer* viewer, QWidget* parent = nullptr);

    /// Null shows none.
    void Show(const std::shared_ptr<const ShownPlan>& shown);

signals:
    /// A warning or a flight was clicked: longitude, latitude of what it is about.
    void PlaceWanted(const QPointF& place);
    /// That flight, counted from 0, is to be written to a file.
    void FlightExportWanted(int flight);

private:
    QLabel* AddRow(QFormLayout& form, const QString& name);
    void ShowFigures(const ShownPlan& shown);
    void ShowWarnings(const ShownPlan& shown);
    void CountCovered();
    void ShowCovered(const AxCoveredArea& counted);

    QPointer<CAxEarthViewer> viewer;
    std::shared_ptr<const ShownPlan> last; ///< that is shown
    QLabel* fault;
    QList<QLabel*> values;
    QLabel* length;
    QLabel* time;
    QLabel* flights;
    QLabel* photos;
    QLabel* interval;
    QLabel* passes;
    QLabel* area;
    QLabel* covered;
    QLabel* sample;
    QLabel* aboveGround;
    TaskFlights* flightList;
    QLabel* danger;
    QListWidget* warnings;
    AxLatestWork work; ///< ends before what it reports to
};
