#pragma once
#include "host/tasks/ProfileLine.h"
#include "host/tasks/ProfileMarker.h"
#include "scene/AxLatestWork.h"

#include <QPointer>
#include <QWidget>

#include <memory>
#include <optional>

class CAxEarthViewer;
class ProfilePlot;
class QLabel;

/**
 * The heights of a route against the ground, as a plot whose cursor is tied to the map: the place under the
 * mouse in the plot is marked on the map, and the route's place under the mouse on the map is marked in the
 * plot. Heights of the ground are read on another thread, from the viewer's map, while the panel is visible.
 * GUI thread; the viewer may go first.
 */
class ProfilePanel : public QWidget
{
    Q_OBJECT
public:
    explicit ProfilePanel(CAxEarthViewer* viewer, QWidget* parent = nullptr);
    ~ProfilePanel() override;

    /// This plan from now on, or none.
    void ShowPlan(const std::shared_ptr<const ShownPlan>& plan);

signals:
    /// The mouse is over this place of the route in the plot: degrees, degrees, metres above the ellipsoid.
    void PlaceHovered(double longitude, double latitude, double altitude);
    /// It is over none any more.
    void PlaceLeft();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void Read();
    void OnRead(ProfileLine&& read);
    void Clear();
    void OnPointedInPlot(int place);
    void OnLeftPlot();
    void OnPointedOnMap(double longitude, double latitude, double altitude, double range);
    void Tell(const QString& text); ///< while there is no cursor
    void SetCursor(std::optional<std::size_t> place);

    QPointer<CAxEarthViewer> viewer;
    std::shared_ptr<const ShownPlan> shown;
    QString plottedTask; ///< of the line that is plotted
    bool isRead = false; ///< the plan's line is read, or is on its way
    ProfileMarker marker;
    ProfilePlot* plot;
    QLabel* reading;  ///< what is at the cursor
    QString idleText; ///< what it says without one
    AxLatestWork work;    ///< ends before what it reports to
};
