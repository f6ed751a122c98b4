#pragma once

#include <AxTelemetry/AxAircraftState.h>

#include <optional>
#include <set>
#include <utility>

class AxVehicleEvents;
struct AxMavCameraImageCaptured;
struct AxMavFrame;

/// The photos and the direction of the cameras of one aircraft.
class AxVehicleCamera
{
public:
    /// Takes a message of a camera or its mount, heard at `time`; false for any other one.
    bool Take(const AxMavFrame& frame, qint64 time, AxAircraftState& state, AxVehicleEvents& events);

private:
    void takeTrigger(const AxMavFrame& frame, qint64 time, AxAircraftState& state, AxVehicleEvents& events);
    void takeImage(const AxMavFrame& frame, qint64 time, AxAircraftState& state, AxVehicleEvents& events);
    static bool point(double pitch, std::optional<double> yaw, AxAircraftState& state,
                      AxVehicleEvents& events);
    static bool takeGimbal(const AxMavFrame& frame, AxAircraftState& state, AxVehicleEvents& events);

    // A camera that tells of its images has its triggers told, too: the image, which knows more, counts.
    bool m_tellsImages = false;
    std::optional<qint64> m_trigger;                // heard, of the latest trigger that became a photo
    std::set<std::pair<quint64, quint32>> m_images; // camera and index, since the camera started: told again
};
