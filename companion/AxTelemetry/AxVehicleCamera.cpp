#include "AxVehicleCamera.h"
#include "AxVehicleDecoder.h"
#include "AxVehiclePlaces.h"

#include <AxTelemetry/mavlink/AxMavMessages.h>

#include <QtMath>

#include <cmath>

namespace {
constexpr qint64 imageDelayMs = 2000;    // between two messages on one photo, at most
constexpr qint64 clockFaultMs = 3600000; // a camera whose clock is further off than this has none
constexpr qint64 silentMs = 3000;
constexpr quint16 yawInEarthFrame = 64; // flags of GIMBAL_DEVICE_ATTITUDE_STATUS
constexpr quint16 yawInVehicleFrame = 32;
constexpr quint16 yawLock = 16;
constexpr double steepestDegrees = 89.0; // beyond it the yaw of a camera is not told from its roll
constexpr quint8 isVideo = 1;            // flags of CAMERA_FEEDBACK
constexpr quint64 countedByAutopilot = quint64(1) << 63; // not by the camera itself

/// At the aircraft, and as it hangs in the air.
AxPhotoRecord PhotoHere(int index, qint64 time, const AxAircraftState& state)
{
    AxPhotoRecord photo;
    photo.index = index;
    photo.time = static_cast<quint64>(time);
    photo.longitude = state.longitude.value_or(0.0);
    photo.latitude = state.latitude.value_or(0.0);
    photo.altitude = state.altitude.value_or(0.0);
    photo.roll = state.roll.value_or(photo.roll);
    photo.pitch = state.pitch.value_or(photo.pitch);
    photo.yaw = state.yaw.value_or(photo.yaw);
    return photo;
}

/// Whether the photo is somewhere: where the message says, or else where the aircraft is.
bool PutTo(const std::optional<AxPlace>& aboveSea, const AxAircraftState& state, AxPhotoRecord& photo)
{
    if (!aboveSea)
        return state.longitude.has_value();
    const AxPlace place = AxAboveEllipsoid(*aboveSea);
    photo.longitude = place.longitude;
    photo.latitude = place.latitude;
    photo.altitude = place.altitude;
    return true;
}

std::optional<AxPlace> PlaceOf(qint32 latitude, qint32 longitude, double millimetres)
{
    constexpr double most = 1e9;
    if (AxIsNowhere(latitude, longitude) || !(std::fabs(millimetres) < most))
        return {};
    return AxPlaceAboveSea(latitude, longitude, static_cast<qint32>(std::lround(millimetres)));
}

void SetTime(quint64 microseconds, qint64 heard, AxPhotoRecord& photo)
{
    const auto taken = static_cast<qint64>(microseconds / 1000);
    if (qAbs(taken - heard) < clockFaultMs)
        photo.time = static_cast<quint64>(taken);
}

/// In the frame of the earth, where the aircraft's own yaw is known.
std::optional<double> EarthYaw(double fromNose, const AxAircraftState& state)
{
    return state.yaw ? std::make_optional(fromNose + qRadiansToDegrees(*state.yaw)) : std::nullopt;
}
} // namespace

bool AxVehicleCamera::Take(const AxMavFrame& frame, qint64 time, AxAircraftState& state,
                           AxVehicleEvents& events)
{
    bool isGood = true;
    m_now = time;
    switch (frame.messageId) {
    case AxMavCameraTrigger::id:
        takeTrigger(frame, time, state, events);
        break;
    case AxMavCameraFeedback::id:
        takeFeedback(frame, time, state, events);
        break;
    case AxMavCameraImageCaptured::id:
        takeImage(frame, time, state, events);
        break;
    case AxMavMountOrientation::id: {
        AxMavMountOrientation mount;
        AxMavDecode(frame, mount);
        isGood = point(mount.pitch, EarthYaw(mount.yaw, state), state, events);
        break;
    }
    case AxMavMountStatus::id: {
        AxMavMountStatus mount;
        AxMavDecode(frame, mount);
        isGood = point(mount.pointing_a * 0.01, EarthYaw(mount.pointing_c * 0.01, state), state, events);
        break;
    }
    case AxMavGimbalDeviceAttitudeStatus::id:
        isGood = takeGimbal(frame, state, events);
        break;
    default:
        return false;
    }
    state.refused += isGood ? 0 : 1;
    return true;
}

void AxVehicleCamera::ForgetYaw(qint64 time, AxAircraftState& state) const
{
    if (time - m_pointed >= silentMs)
        state.cameraYaw.reset();
}

bool AxVehicleCamera::point(double pitch, std::optional<double> yaw, AxAircraftState& state,
                            AxVehicleEvents& events)
{
    if (!(std::fabs(pitch) <= 180.0))
        return false;
    m_pointed = m_now;
    state.cameraPitch = pitch;
    state.cameraYaw.reset();
    if (yaw && std::isfinite(*yaw))
        state.cameraYaw = AxCompassDegrees(*yaw);
    events.Camera(90.0 + pitch);
    return true;
}

bool AxVehicleCamera::takeGimbal(const AxMavFrame& frame, AxAircraftState& state, AxVehicleEvents& events)
{
    AxMavGimbalDeviceAttitudeStatus gimbal;
    AxMavDecode(frame, gimbal);
    const double w = gimbal.q[0];
    const double x = gimbal.q[1];
    const double y = gimbal.q[2];
    const double z = gimbal.q[3];
    const double norm = w * w + x * x + y * y + z * z;
    if (!(norm > 0.9 && norm < 1.1))
        return false;
    const double pitch = qRadiansToDegrees(std::asin(qBound(-1.0, 2.0 * (w * y - z * x) / norm, 1.0)));
    if (std::fabs(pitch) > steepestDegrees)
        return point(pitch, std::nullopt, state, events);
    const double yaw = qRadiansToDegrees(std::atan2(2.0 * (w * z + x * y), norm - 2.0 * (y * y + z * z)));
    const bool isEarth = (gimbal.flags & yawInEarthFrame) != 0 ||
                         ((gimbal.flags & yawLock) != 0 && (gimbal.flags & yawInVehicleFrame) == 0);
    return point(pitch, isEarth ? yaw : EarthYaw(yaw, state), state, events);
}

/// Of a photo that has not been told yet. One that knows more speaks of the latest, when it speaks first.
bool AxVehicleCamera::isAnother(Teller teller, qint64 time)
{
    if (teller < m_teller)
        return false;
    const bool isOfLatest = teller > m_teller && m_latest && time - *m_latest < imageDelayMs;
    m_teller = teller;
    if (!isOfLatest)
        m_latest = time;
    return !isOfLatest;
}

void AxVehicleCamera::takeTrigger(const AxMavFrame& frame, qint64 time, AxAircraftState& state,
                                  AxVehicleEvents& events)
{
    if (!state.longitude) {
        ++state.refused;
        return;
    }
    AxMavCameraTrigger trigger;
    AxMavDecode(frame, trigger);
    if (isAnother(Teller::Trigger, time))
        events.Photo(PhotoHere(static_cast<int>(trigger.seq), time, state));
}

void AxVehicleCamera::takeFeedback(const AxMavFrame& frame, qint64 time, AxAircraftState& state,
                                   AxVehicleEvents& events)
{
    AxMavCameraFeedback feedback;
    AxMavDecode(frame, feedback);
    if (feedback.flags == isVideo)
        return;
    const quint64 camera = frame.componentId * 256u + feedback.cam_idx;
    const std::pair image(countedByAutopilot | camera << 32 | feedback.img_idx,
                          static_cast<quint32>(feedback.time_usec / 1000));
    if (m_images.count(image) > 0)
        return;
    AxPhotoRecord photo = PhotoHere(feedback.img_idx, time, state);
    if (!PutTo(PlaceOf(feedback.lat, feedback.lng, static_cast<double>(feedback.alt_msl) * 1e3), state,
               photo)) {
        ++state.refused;
        return;
    }
    m_images.insert(image);
    if (std::isfinite(feedback.roll) && std::isfinite(feedback.pitch) && std::isfinite(feedback.yaw)) {
        photo.roll = qDegreesToRadians(static_cast<double>(feedback.roll));
        photo.pitch = qDegreesToRadians(static_cast<double>(feedback.pitch));
        photo.yaw = qDegreesToRadians(std::remainder(static_cast<double>(feedback.yaw), 360.0));
    }
    SetTime(feedback.time_usec, time, photo);
    if (isAnother(Teller::Feedback, time))
        events.Photo(photo);
}

void AxVehicleCamera::takeImage(const AxMavFrame& frame, qint64 time, AxAircraftState& state,
                                AxVehicleEvents& events)
{
    AxMavCameraImageCaptured captured;
    AxMavDecode(frame, captured);
    if (captured.capture_result == 0)
        return; // it may be tried again under the same index
    const quint64 camera = frame.componentId * 256u + captured.camera_id;
    const std::pair image((camera << 32) + static_cast<quint32>(captured.image_index), captured.time_boot_ms);
    if (m_images.count(image) > 0)
        return;
    AxPhotoRecord photo = PhotoHere(captured.image_index, time, state);
    if (!PutTo(PlaceOf(captured.lat, captured.lon, captured.alt), state, photo)) {
        ++state.refused;
        return;
    }
    m_images.insert(image);
    SetTime(captured.time_utc, time, photo);
    if (isAnother(Teller::Image, time))
        events.Photo(photo);
}
