#pragma once
#include "host/tasks/ShownPlan.h"

#include <AxData/planner/AxPlanFlights.h>

#include <QPointF>
#include <QWidget>

#include <memory>
#include <vector>

class QListWidget;
class QPushButton;

/// A flight as a route of its own. It ends and begins with a pass where it is cut within one.
std::shared_ptr<const ShownPlan> RouteOf(const ShownPlan& route, const AxPlanFlight& flight);

/// The flights of a route: how long each takes, its photos, where it begins. Hidden where there are less than
/// two. GUI thread.
class TaskFlights : public QWidget
{
    Q_OBJECT
public:
    explicit TaskFlights(QWidget* parent = nullptr);

    void Show(const std::vector<AxPlanFlight>& flights);

signals:
    /// A flight was clicked: longitude, latitude of where it begins.
    void PlaceWanted(const QPointF& place);
    /// That flight, counted from 0, is to be written to a file.
    void ExportWanted(int flight);

private:
    QListWidget* list;
    QPushButton* exportFlight;
};
