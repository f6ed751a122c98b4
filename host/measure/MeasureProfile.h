#pragma once
#include "host/tasks/ProfileMarker.h"
#include "interaction/AxMeasurement.h"
#include "scene/AxLatestWork.h"

#include <QPointer>
#include <QWidget>

#include <vector>

class CAxEarthViewer;
class ProfilePlot;
class QLabel;
struct ProfileLine;

/**
 * The heights of the ground along a measurement, as a plot: the place under the mouse in the plot is marked
 * on the map. Heights are read on another thread, from the finest of the viewer's map, while it is visible,
 * and anew when that has changed. GUI thread; the viewer may go first.
 */
class MeasureProfile : public QWidget
{
    Q_OBJECT
public:
    explicit MeasureProfile(CAxEarthViewer* viewer, QWidget* parent = nullptr);
    ~MeasureProfile() override;

    /// This measurement from now on; a default one for none. A place has no profile, which is told.
    void Show(const AxMeasurement& measurement);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void ReadAgain();
    void Read();
    void OnRead(ProfileLine&& line);
    void OnPointed(int place);
    void OnLeft();
    void Tell(const QString& text);

    QPointer<CAxEarthViewer> viewer;
    QString shownID;
    bool isPlace = false; ///< what is shown has only one point
    std::vector<osg::Vec3d> path;
    bool isRead = false; ///< or on its way
    ProfileMarker marker;
    ProfilePlot* plot;
    QLabel* reading;
    QString idleText;  ///< of the reading while the mouse is elsewhere
    AxLatestWork work; ///< ends before what it reports to
};
