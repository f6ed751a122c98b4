#pragma once

#include <AxTelemetry/AxAircraftState.h>

#include <QObject>

/// Where the data of one aircraft come from: a live link (AxMavlinkAircraft) or a recorded flight
/// (AxReplaySource). The globe's aircraft takes it as its signal object. Owned by whoever made it; GUI
/// thread. A source never emits what is no place on the globe, no number, or older than what it emitted
/// before, save when a replay jumps back.
class AXTELEMETRY_EXPORT AxTelemetrySource : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// What is known at this moment.
    virtual const AxAircraftState& State() const = 0;

signals:
    /// Degrees, degrees, metres above the ellipsoid; milliseconds since 1970, UTC.
    void globalPositionChanged(double longitude, double latitude, double altitude, quint64 time);
    /// Radians: right wing down, nose up, clockwise from north; milliseconds since 1970, UTC.
    void attitudeChanged(double roll, double pitch, double yaw, quint64 time);
    /// A photo was taken. As the camera counts; degrees.
    void picture_Idx(int index, double longitude, double latitude);
    /// Where the camera looks: `angle` from straight down towards ahead, times DVAngleFactor in degrees; zoom
    /// times; 0; 1 while it is known.
    void VideoData(quint16 angle, qint8 zoom, quint8 reserved, quint8 flag);

    /// State() is another one.
    void signalState();
    /// The aircraft says something; MAV_SEVERITY: 0 emergency to 7 debug.
    void signalMessage(int severity, const QString& text);
    /// Silent for 3 s.
    void signalLinkLost();
    /// Heard again after signalLinkLost().
    void signalLinkBack();
    /// As picture_Idx(), with all that is known.
    void signalPhoto(const AxPhotoRecord& photo);
};
