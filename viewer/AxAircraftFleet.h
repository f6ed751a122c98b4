#pragma once
#include "viewer/CAxEarthViewer.h"

#include <osg/ref_ptr>

#include <QPointer>

#include <optional>
#include <vector>

class AxViewerPrivate;

/**
 * The aircraft that a viewer shows, which of them is in focus, and how the camera goes with that one. Part of
 * AxViewerPrivate. GUI thread.
 */
class AxAircraftFleet
{
public:
    AxAircraftFleet(AxViewerPrivate& scene, CAxEarthViewer* viewer);
    ~AxAircraftFleet();

    CAxUavNode* Add(QObject* telemetry, EPlaneType type);
    bool Remove(CAxUavNode* aircraft);
    void RemoveAll();
    QList<CAxUavNode*> All() const;
    CAxUavNode* Focus() const;
    bool SetFocus(CAxUavNode* aircraft);

    void SetView(CAxEarthViewer::EAircraftView view);
    CAxEarthViewer::EAircraftView View() const { return view; }
    void LookFromHome(const CAxVector3D& home);
    /// With every tick: tells when the pilot has ended a view.
    void TellView();

    void ShowShootPoints(bool shown);
    void ForgetPointer();
    bool AreShootPointsShown() const { return shootPoints; }

    bool heightsAboveEllipsoid = false;

private:
    class Step;

    void advance();
    void showPanels();
    bool contains(const CAxUavNode* aircraft) const;
    void forget(CAxUavNode* aircraft);
    void takeView(CAxEarthViewer::EAircraftView wanted);
    void letGo();

    AxViewerPrivate& scene;
    CAxEarthViewer* const q;
    std::vector<QPointer<CAxUavNode>> fleet; // the oldest first
    QPointer<CAxUavNode> focus;
    CAxEarthViewer::EAircraftView view = CAxEarthViewer::AircraftViewFree;
    std::optional<double> chasedHeading; // of the last turn, degrees
    bool shootPoints = false;
    osg::ref_ptr<Step> step; // null before the first aircraft
};
