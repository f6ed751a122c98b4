#include "viewer/AxAircraftFleet.h"
#include "interaction/input/CAxEarthManipulator.h"
#include "mission/aircraft/CAxUavNode.h"
#include "scene/base/AxLongitudes.h"
#include "scene/shape/AxDrawnGround.h"
#include "viewer/AxViewerPrivate.h"
#include "viewer/overlay/CAxMapToolsWidget.h"

#include <AxAlgorthm/AxCoordinate.h>

#include <algorithm>
#include <cmath>

namespace {
constexpr double flightSeconds = 1.5;
// Of the camera that follows and that chases, metres and degrees.
constexpr double nearestFollowing = 60.0;
constexpr double farthestFollowing = 2000.0;
constexpr double followPitch = -45.0;
constexpr double chaseRange = 120.0;
constexpr double chasePitch = -15.0;
// Of the view from home: how near and far the eye is, its pitch, and by how much home may lie below the
// aircraft in the picture, whose half is 15 degrees.
constexpr double nearestHome = 150.0;
constexpr double farthestHome = 100000.0;
constexpr double homePitch = -15.0;
constexpr double homeOffMiddle = 11.0;

double Heading(const CAxVector3D& from, const CAxVector3D& to)
{
    const double east = AxLongitudes::Normalized(to.x() - from.x()) *
                        std::cos(osg::DegreesToRadians(0.5 * (from.y() + to.y())));
    return osg::RadiansToDegrees(std::atan2(east, to.y() - from.y()));
}

/// From where home is so far below the aircraft in the picture, by the law of sines.
double HomeRange(double flat, double up)
{
    const double off = osg::DegreesToRadians(homeOffMiddle);
    // At the aircraft, between the ways to the eye and to home.
    const double corner = std::abs(std::atan2(up, flat) - osg::DegreesToRadians(homePitch));
    const double range = std::hypot(flat, up) * std::sin(off + corner) / std::sin(off);
    return std::clamp(range, nearestHome, farthestHome);
}
} // namespace

/// With the update traversal, between the events that let the camera follow and the moment when it is placed.
class AxAircraftFleet::Step : public osg::NodeCallback
{
public:
    explicit Step(AxAircraftFleet* of) : fleet(of) {}
    void operator()(osg::Node* node, osg::NodeVisitor* visitor) override
    {
        traverse(node, visitor);
        if (fleet)
            fleet->advance();
    }
    AxAircraftFleet* fleet;
};

AxAircraftFleet::AxAircraftFleet(AxViewerPrivate& viewerScene, CAxEarthViewer* viewer)
    : scene(viewerScene), q(viewer)
{
}

AxAircraftFleet::~AxAircraftFleet()
{
    if (step)
        step->fleet = nullptr;
}

bool AxAircraftFleet::contains(const CAxUavNode* aircraft) const
{
    return aircraft &&
           std::any_of(fleet.begin(), fleet.end(), [aircraft](const auto& one) { return one == aircraft; });
}

QList<CAxUavNode*> AxAircraftFleet::All() const
{
    QList<CAxUavNode*> all;
    for (const QPointer<CAxUavNode>& one : fleet)
        if (one)
            all += one;
    return all;
}

CAxUavNode* AxAircraftFleet::Focus() const
{
    return focus;
}

CAxUavNode* AxAircraftFleet::Add(QObject* telemetry, EPlaneType type)
{
    if (!scene.mapNode || !scene.drawGroup)
        return nullptr;
    if (!step) {
        step = new Step(this);
        scene.drawGroup->addUpdateCallback(step);
    }
    auto* aircraft = new CAxUavNode(q, telemetry, true);
    aircraft->setParent(q);
    // Where it stands comes with its first message; it is not seen before.
    osg::Node* node = aircraft->CreatePlane(type, osgEarth::GeoPoint(), scene.mapNode);
    if (!node) {
        delete aircraft;
        return nullptr;
    }
    scene.drawGroup->addChild(node);
    aircraft->SetShootPointVisible(shootPoints);
    aircraft->SetLostLabel(true);
    fleet.emplace_back(aircraft);
    // A host may delete one by itself.
    QObject::connect(aircraft, &QObject::destroyed, q, [this, aircraft] { forget(aircraft); });
    if (!focus)
        focus = aircraft;
    showPanels();
    const QPointer<CAxUavNode> kept(aircraft);
    emit q->signalAircraft();
    return kept;
}

void AxAircraftFleet::forget(CAxUavNode*)
{
    fleet.erase(std::remove_if(fleet.begin(), fleet.end(), [](const auto& one) { return one.isNull(); }),
                fleet.end());
    if (!focus && !fleet.empty())
        focus = fleet.front();
    showPanels();
    emit q->signalAircraft();
}

// Those of many aircraft cover each other. One that is lost is told all the same.
void AxAircraftFleet::showPanels()
{
    for (CAxUavNode* aircraft : All())
        aircraft->SetPanelVisible(aircraft == focus);
}

bool AxAircraftFleet::Remove(CAxUavNode* aircraft)
{
    if (!contains(aircraft))
        return false;
    // Who hears that the view has ended may remove it.
    const QPointer<CAxUavNode> kept(aircraft);
    if (aircraft == focus)
        letGo();
    if (!kept)
        return true;
    aircraft->RemovePicPoint();
    aircraft->RemoveAllTrailLine();
    delete aircraft;
    return true;
}

void AxAircraftFleet::RemoveAll()
{
    letGo();
    // A host that hears of the first one may remove others, or add one, which stays.
    const std::vector<QPointer<CAxUavNode>> all = fleet;
    for (const QPointer<CAxUavNode>& aircraft : all)
        Remove(aircraft);
}

bool AxAircraftFleet::SetFocus(CAxUavNode* aircraft)
{
    if (!contains(aircraft))
        return false;
    if (aircraft == focus)
        return true;
    focus = aircraft;
    showPanels();
    const QPointer<CAxUavNode> kept(aircraft);
    const CAxEarthViewer::EAircraftView before = view;
    if (before != CAxEarthViewer::AircraftViewFree)
        takeView(before);
    emit q->signalAircraft();
    return kept && kept == focus;
}

void AxAircraftFleet::ShowShootPoints(bool shown)
{
    shootPoints = shown;
    for (CAxUavNode* aircraft : All())
        aircraft->SetShootPointVisible(shown);
    if (scene.mapToolsWidget)
        scene.mapToolsWidget->SetShootPointChecked(shown);
}

void AxAircraftFleet::ForgetPointer()
{
    for (CAxUavNode* aircraft : All())
        aircraft->ForgetPointer();
}

// The camera

void AxAircraftFleet::letGo()
{
    if (view == CAxEarthViewer::AircraftViewFree)
        return;
    view = CAxEarthViewer::AircraftViewFree;
    chasedHeading.reset();
    if (scene.manipulator)
        scene.manipulator->breakTether();
    emit q->signalAircraftView(view);
}

void AxAircraftFleet::takeView(CAxEarthViewer::EAircraftView wanted)
{
    if (!focus || !focus->HasPosition() || !focus->GetFollowedNode())
        return letGo();
    CAxEarthManipulator& camera = *scene.manipulator;
    osgEarth::Viewpoint viewpoint;
    viewpoint.setNode(focus->GetFollowedNode());
    chasedHeading.reset();
    if (wanted == CAxEarthViewer::AircraftViewChase) {
        chasedHeading = focus->GetDrawnHeading();
        viewpoint.setHeading(*chasedHeading);
        viewpoint.setPitch(chasePitch);
        viewpoint.setRange(chaseRange);
    } else {
        viewpoint.setPitch(followPitch);
        viewpoint.setRange(std::clamp(camera.getDistance(), nearestFollowing, farthestFollowing));
    }
    camera.setViewpoint(viewpoint, flightSeconds);
    view = wanted;
}

void AxAircraftFleet::SetView(CAxEarthViewer::EAircraftView wanted)
{
    const CAxEarthViewer::EAircraftView before = view;
    if (wanted == CAxEarthViewer::AircraftViewFree)
        return letGo();
    takeView(wanted);
    if (view != before && view == wanted)
        emit q->signalAircraftView(view);
}

void AxAircraftFleet::LookFromHome(const CAxVector3D& home)
{
    if (!scene.mapNode || !std::isfinite(home.x()) || !std::isfinite(home.y()) || !std::isfinite(home.z()))
        return;
    letGo();
    if (!scene.mapNode)
        return;
    // Home may lie below ground that is coarse from afar.
    const double height =
        std::max(home.z(), AxLoadedHeight(*scene.mapNode, home.x(), home.y()).value_or(home.z()));
    osgEarth::Viewpoint viewpoint("", home.x(), home.y(), height, 0.0, homePitch, nearestHome);
    if (focus && focus->HasPosition()) {
        // High above, an aircraft is not in a picture that has home in its middle.
        const CAxVector3D place = focus->GetDrawnPosition();
        const double flat = DistanceBetweenTwoLatLng(home, place);
        const double heading = flat > 1.0 ? Heading(home, place) : 0.0;
        viewpoint = osgEarth::Viewpoint("", place.x(), place.y(), place.z(), heading, homePitch,
                                        HomeRange(flat, place.z() - height));
    }
    scene.manipulator->setViewpoint(viewpoint, flightSeconds);
}

void AxAircraftFleet::TellView()
{
    if (view == CAxEarthViewer::AircraftViewFree)
        return;
    CAxEarthManipulator& camera = *scene.manipulator;
    // A pan, a flight elsewhere or another viewpoint has let go of it.
    if (!focus || camera.getTetherNode() != focus->GetFollowedNode()) {
        view = CAxEarthViewer::AircraftViewFree;
        chasedHeading.reset();
        emit q->signalAircraftView(view);
    }
}

void AxAircraftFleet::advance()
{
    CAxEarthManipulator& camera = *scene.manipulator;
    if (view == CAxEarthViewer::AircraftViewFree || camera.isSettingViewpoint() || !camera.isTethering())
        return;
    // The manipulator asks for frame after frame while it follows; what moves is seen without that.
    scene.viewer->requestContinuousUpdate(false);
    if (!chasedHeading || !focus)
        return;
    const double heading = focus->GetDrawnHeading();
    const double turn = std::remainder(heading - *chasedHeading, AxLongitudes::fullTurn);
    chasedHeading = heading;
    if (turn != 0.0)
        camera.setRotation(camera.getRotation() *
                           osg::Quat(osg::DegreesToRadians(turn), osg::Vec3d(0.0, 0.0, -1.0)));
}
