#include "host/aircraft/AircraftOnMap.h"
#include "host/aircraft/AircraftText.h"
#include "host/aircraft/MissionOfPlan.h"
#include "mission/aircraft/CAxUavNode.h"
#include "viewer/CAxEarthViewer.h"

#include <AxTelemetry/record/AxReplaySource.h>

#include <AxAlgorthm/AxGeoid.h>
#include <AxData/CAxBlock.h>

#include <osgEarth/MapNode>

#include <algorithm>
#include <cmath>

namespace {
constexpr qint64 oldPlaceMs = 3000;

// Nothing has been heard of it, or nothing of where it is.
bool IsPlaceOld(const AxAircraftState& state)
{
    if (state.lastHeard == 0)
        return false;
    return !state.isHeard || (state.placeHeard > 0 && state.lastHeard - state.placeHeard >= oldPlaceMs);
}

// In the heights of the map. Of a line the ground does not count, which may be finer or coarser later.
CAxVector3D PlaceOnMap(const CAxEarthViewer& viewer, double longitude, double latitude, double altitude)
{
    const double geoid =
        viewer.AreMapHeightsAboveEllipsoid() ? 0.0 : AxGeoidHeight(latitude, longitude).value_or(0.0);
    return {longitude, latitude, altitude - geoid};
}
} // namespace

AircraftOnMap::AircraftOnMap(CAxEarthViewer* earthViewer, AxTelemetrySource* from)
    : viewer(earthViewer), source(from), state(from->State())
{
    connect(from, &AxTelemetrySource::signalState, this, &AircraftOnMap::take);
    connect(from, &AxTelemetrySource::signalPhoto, this, [this](const AxPhotoRecord& photo) {
        if (!replay)
            photos.push_back(photo);
    });
    connect(earthViewer, &CAxEarthViewer::signalLoadEarth, this, &AircraftOnMap::draw);
    draw();
}

AircraftOnMap::AircraftOnMap(CAxEarthViewer* earthViewer, AxReplaySource* from)
    : AircraftOnMap(earthViewer, static_cast<AxTelemetrySource*>(from))
{
    replay = from;
    connect(from, &AxReplaySource::signalPhotosTo, this, [this](int count) {
        if (!node)
            return;
        node->ShowReplayPhotosTo(count);
        // The bar has jumped: what lies between was not flown now.
        node->Jump();
    });
    connect(from, &AxReplaySource::signalIndex, this, [this](int index) {
        // Up to and with the sample that is passed.
        if (node)
            node->SetPathIndexMask(index + 1);
    });
    if (node)
        drawFlight(*from);
}

AircraftOnMap::~AircraftOnMap()
{
    if (viewer && node)
        viewer->RemoveAircraft(node);
}

CAxUavNode* AircraftOnMap::Node() const
{
    return node;
}

void AircraftOnMap::draw()
{
    // Who has taken it off the map meant it.
    if (!viewer || !source || node || wasDrawn)
        return;
    node = viewer->AddAircraft(source, state.planeType);
    if (!node)
        return;
    wasDrawn = true;
    node->SetTitle(Name());
    node->SetBlockType(blockType);
    node->SetTrailVisible(isTrailVisible);
    if (replay)
        drawFlight(*replay);
    take();
}

void AircraftOnMap::drawFlight(const AxReplaySource& from)
{
    std::vector<CAxVector3D> line;
    line.reserve(from.Flight().Samples().size());
    for (const AxFlightSample& sample : from.Flight().Samples())
        line.push_back(PlaceOnMap(*viewer, sample.longitude, sample.latitude, sample.altitude));
    node->CreateReplayFlightLine(line);
    node->SetPathIndexMask(from.Index() + 1);
    const std::vector<AxPhotoRecord>& taken = from.Flight().Photos();
    std::vector<AxReplayPhoto> shown;
    shown.reserve(taken.size());
    for (const AxPhotoRecord& photo : taken)
        shown.push_back({photo.index, PlaceOnMap(*viewer, photo.longitude, photo.latitude, photo.altitude)});
    node->SetReplayPhotos(shown);
    node->ShowReplayPhotosTo(static_cast<int>(AxCountTo(taken, from.Time())));
}

void AircraftOnMap::take()
{
    if (source)
        state = source->State();
    if (!node || !viewer)
        return;
    if (node->GetPlaneType() != state.planeType && viewer->getMapNode()) {
        const bool hasPlace = node->HasPosition();
        const CAxVector3D place = node->GetPosition();
        node->CreatePlane(state.planeType, osgEarth::GeoPoint(), viewer->getMapNode());
        if (hasPlace)
            node->SetPosition(place.x(), place.y(), place.z());
    }
    node->SetTitle(Name());
    node->SetLanded(state.isLanded.value_or(false));
    node->SetFlightMode(!replay && IsInTheAir(state));
    node->SetCameraHeading(state.cameraYaw);
    if (isLost && !IsPlaceOld(state)) {
        isLost = false;
        node->SetLinkLost(false, 0.0);
        node->SetPositionLost(false, 0.0);
    }
}

void AircraftOnMap::Refresh(qint64 now)
{
    const AxAircraftState& known = State();
    if (!node || !IsPlaceOld(known))
        return;
    isLost = true;
    constexpr double second = 1000.0;
    node->SetLinkLost(!known.isHeard, static_cast<double>(known.HeardAgo(now)) / second);
    node->SetPositionLost(known.isHeard, static_cast<double>(known.PlaceAgo(now)) / second);
}

const AxAircraftState& AircraftOnMap::State() const
{
    return source ? source->State() : state;
}

QString AircraftOnMap::Name() const
{
    const AxAircraftState& known = State();
    return known.name.isEmpty() ? tr("Aircraft %1").arg(known.systemId) : known.name;
}

std::optional<double> AircraftOnMap::AboveGround() const
{
    const AxAircraftState& known = State();
    if (!viewer || !known.longitude || !known.latitude || !known.altitude)
        return {};
    const std::optional<double> ground = GroundAboveEllipsoid(*viewer, *known.longitude, *known.latitude);
    return ground ? std::make_optional(*known.altitude - *ground) : std::nullopt;
}

const std::vector<AxPhotoRecord>& AircraftOnMap::Photos() const
{
    return replay ? replay->Flight().Photos() : photos;
}

void AircraftOnMap::SetTrailVisible(bool visible)
{
    isTrailVisible = visible;
    if (node)
        node->SetTrailVisible(visible);
}

void AircraftOnMap::SetBlockType(int type)
{
    blockType = type;
    if (node)
        node->SetBlockType(type);
}

void AircraftOnMap::ClearTrail()
{
    if (node)
        node->ClearAllTrailLine();
}
