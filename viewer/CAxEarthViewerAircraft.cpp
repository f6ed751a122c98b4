// The face of the viewer: aircraft.
#include "interaction/models/AxModelLayers.h"
#include "mission/aircraft/CAxUavNode.h"
#include "viewer/AxViewerPrivate.h"

#include <AxAlgorthm/AxGeoid.h>

#include <cmath>
#include <limits>

CAxUavNode* CAxEarthViewer::GetUavNode() const
{
    return d->aircraft.Focus();
}

CAxUavNode* CAxEarthViewer::CreateUavMarker(QObject* telemetry, EPlaneType type)
{
    const QPointer<CAxUavNode> aircraft = AddAircraft(telemetry, type);
    d->aircraft.SetFocus(aircraft);
    return aircraft;
}

CAxUavNode* CAxEarthViewer::AddAircraft(QObject* telemetry, EPlaneType type)
{
    const QPointer<CAxUavNode> aircraft = d->aircraft.Add(telemetry, type);
    ConnectUavSignals(aircraft);
    return aircraft;
}

bool CAxEarthViewer::RemoveAircraft(CAxUavNode* aircraft)
{
    return d->aircraft.Remove(aircraft);
}

QList<CAxUavNode*> CAxEarthViewer::Aircraft() const
{
    return d->aircraft.All();
}

bool CAxEarthViewer::SetFocusAircraft(CAxUavNode* aircraft)
{
    return d->aircraft.SetFocus(aircraft);
}

void CAxEarthViewer::ClearUavMarker()
{
    d->aircraft.RemoveAll();
}

void CAxEarthViewer::ConnectUavSignals(CAxUavNode* aircraft)
{
    QObject* telemetry = aircraft ? aircraft->GetSignalObject() : nullptr;
    if (!telemetry)
        return;
    connect(telemetry, SIGNAL(globalPositionChanged(double, double, double, quint64)), aircraft,
            SLOT(slotPositionChanged(double, double, double, quint64)));
    connect(telemetry, SIGNAL(attitudeChanged(double, double, double, quint64)), aircraft,
            SLOT(slotAttitudeChanged(double, double, double, quint64)));
    connect(telemetry, SIGNAL(picture_Idx(int, double, double)), aircraft,
            SLOT(slotAddPicPoint(int, double, double)));
    connect(telemetry, SIGNAL(VideoData(quint16, qint8, quint8, quint8)), aircraft,
            SLOT(slotVideoData(quint16, qint8, quint8, quint8)));
}

void CAxEarthViewer::DisconnectUavSignals(CAxUavNode* aircraft)
{
    QObject* telemetry = aircraft ? aircraft->GetSignalObject() : nullptr;
    if (!telemetry)
        return;
    disconnect(telemetry, SIGNAL(globalPositionChanged(double, double, double, quint64)), aircraft,
               SLOT(slotPositionChanged(double, double, double, quint64)));
    disconnect(telemetry, SIGNAL(attitudeChanged(double, double, double, quint64)), aircraft,
               SLOT(slotAttitudeChanged(double, double, double, quint64)));
    disconnect(telemetry, SIGNAL(picture_Idx(int, double, double)), aircraft,
               SLOT(slotAddPicPoint(int, double, double)));
    // Meant so: the footprint goes on when position, attitude and photos are taken from elsewhere.
    connect(telemetry, SIGNAL(VideoData(quint16, qint8, quint8, quint8)), aircraft,
            SLOT(slotVideoData(quint16, qint8, quint8, quint8)));
}

void CAxEarthViewer::SetAircraftView()
{
    SetAircraftView(GetAircraftView() == AircraftViewFree ? AircraftViewFollow : AircraftViewFree);
}

void CAxEarthViewer::SetAircraftView(EAircraftView view)
{
    d->aircraft.SetView(view);
}

CAxEarthViewer::EAircraftView CAxEarthViewer::GetAircraftView() const
{
    return d->aircraft.View();
}

void CAxEarthViewer::SetHomeView(const CAxVector3D& home)
{
    d->aircraft.LookFromHome(home);
}

void CAxEarthViewer::SetDisplayShootPoint(bool display)
{
    d->aircraft.ShowShootPoints(display);
}

bool CAxEarthViewer::IsDisplayShootPoint() const
{
    return d->aircraft.AreShootPointsShown();
}

double CAxEarthViewer::GetHAE(double longitude, double latitude, double altitude) const
{
    return d->GetHAE(longitude, latitude, altitude);
}

void CAxEarthViewer::SetMapHeightsAboveEllipsoid(bool above)
{
    d->aircraft.heightsAboveEllipsoid = above;
    d->modelLayers->PlaceAgain(above);
}

bool CAxEarthViewer::AreMapHeightsAboveEllipsoid() const
{
    return d->aircraft.heightsAboveEllipsoid;
}

double AxViewerPrivate::GetHAE(double longitude, double latitude, double altitude) const
{
    if (!std::isfinite(altitude) || !std::isfinite(longitude) || !(std::abs(latitude) <= 90.0))
        return std::numeric_limits<double>::quiet_NaN();
    const double geoid =
        aircraft.heightsAboveEllipsoid ? 0.0 : AxGeoidHeight(latitude, longitude).value_or(0.0);
    return altitude - geoid;
}
