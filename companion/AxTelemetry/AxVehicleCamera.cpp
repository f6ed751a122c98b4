#include "AxVehicleCamera.h"
#include "AxVehicleDecoder.h"
#include "AxVehiclePlaces.h"

#include <AxTelemetry/mavlink/AxMavMessages.h>

#include <QtMath>

#include <cmath>

namespace {
constexpr qint64 imageDelayMs = 2000;    // between a trigger and the message on its image, at most
constexpr qint64 clockFaultMs = 3600000; // a camera whose clock is further off than this has none
constexpr quint16 yawInEarthFrame = 64;  // flags of GIMBAL_DEVICE_ATTITUDE_STATUS
constexpr quint16 yawInVehicleFrame = 32;
constexpr quint16 yawLock = 16;

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
} // namespace

bool AxVehicleCamera::Take(const AxMavFrame& frame, qint64 time, AxAircraftState& state,
                           AxVehicleEvents& events)
{
    bool isGood = true;
    switch (frame.messageId) {
    case AxMavCameraTrigger::id:
        takeTrigger(frame, time, state, events);
        break;
    case AxMavCameraImageCaptured::id:
        takeImage(frame, time, state, events);
        break;
    case AxMavMountOrientation::id: {
        AxMavMountOrientation mount;
        AxMavDecode(frame, mount);
        isGood = point(mount.pitch, mount.yaw + qRadiansToDegrees(state.yaw.value_or(0.0)), state, events);
        break;
    }
    case AxMavMountStatus::id: {
        AxMavMountStatus mount;
        AxMavDecode(frame, mount);
        const double yaw = mount.pointing_c * 0.01 + qRadiansToDegrees(state.yaw.value_or(0.0));
        isGood = point(mount.pointing_a * 0.01, yaw, state, events);
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

bool AxVehicleCamera::point(double pitch, std::optional<double> yaw, AxAircraftState& state,
                            AxVehicleEvents& events)
{
    if (!(std::fabs(pitch) <= 180.0))
        return false;
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
    const double pitch = std::asin(qBound(-1.0, 2.0 * (w * y - z * x) / norm, 1.0));
    double yaw = std::atan2(2.0 * (w * z + x * y), 1.0 - 2.0 * (y * y + z * z) / norm);
    const bool isEarth = (gimbal.flags & yawInEarthFrame) != 0 ||
                         ((gimbal.flags & yawLock) != 0 && (gimbal.flags & yawInVehicleFrame) == 0);
    if (!isEarth)
        yaw += state.yaw.value_or(0.0);
    return point(qRadiansToDegrees(pitch), qRadiansToDegrees(yaw), state, events);
}

void AxVehicleCamera::takeTrigger(const AxMavFrame& frame, qint64 time, AxAircraftState& state,
                                  AxVehicleEvents& events)
{
    if (m_tellsImages)
        return;
    if (!state.longitude) {
        ++state.refused;
        return;
    }
    AxMavCameraTrigger trigger;
    AxMavDecode(frame, trigger);
    m_trigger = time;
    events.Photo(PhotoHere(static_cast<int>(trigger.seq), time, state));
}

void AxVehicleCamera::takeImage(const AxMavFrame& frame, qint64 time, AxAircraftState& state,
                                AxVehicleEvents& events)
{
    AxMavCameraImageCaptured image;
    AxMavDecode(frame, image);
    if (image.capture_result == 0)
        return; // it may be tried again under the same index
    const quint64 camera = frame.componentId * 256u + image.camera_id;
    const quint64 key = (camera << 32) + static_cast<quint32>(image.image_index);
    if (!m_images.emplace(key, image.time_boot_ms).second)
        return;
    const bool isFirst = !m_tellsImages;
    m_tellsImages = true;
    if (isFirst && m_trigger && time - *m_trigger < imageDelayMs)
        return; // of the trigger that was taken for a photo
    AxPhotoRecord photo = PhotoHere(image.image_index, time, state);
    const auto place = AxPlaceAboveSea(image.lat, image.lon, image.alt);
    if (place && !AxIsNowhere(image.lat, image.lon)) {
        const AxPlace raised = AxAboveEllipsoid(*place);
        photo.longitude = raised.longitude;
        photo.latitude = raised.latitude;
        photo.altitude = raised.altitude;
    } else if (!state.longitude) {
        ++state.refused;
        return;
    }
    const auto taken = static_cast<qint64>(image.time_utc / 1000);
    if (qAbs(taken - time) < clockFaultMs)
        photo.time = static_cast<quint64>(taken);
    events.Photo(photo);
}
