#pragma once

#include <AxTelemetry/AxAircraftState.h>

#include <optional>
#include <set>
#include <utility>

class AxVehicleEvents;
struct AxMavCameraImageCaptured;
struct AxMavFrame;

/// The photos and the direction of the cameras of one aircraft. A photo may be told by up to three messages,
/// of which the one that knows most counts.
class AxVehicleCamera
{
public:
    /// Takes a message of a camera or its mount, heard at `time`; false for any other one.
    bool Take(const AxMavFrame& frame, qint64 time, AxAircraftState& state, AxVehicleEvents& events);
    /// A yaw that has not been told for 3 s is not known: the aircraft turns meanwhile.
    void ForgetYaw(qint64 time, AxAircraftState& state) const;

private:
    /// Who tells of a photo; the later ones know more.
    enum class Teller
    {
        Trigger,
        Feedback,
        Image
    };

    bool isAnother(Teller teller, qint64 time);
    void takeTrigger(const AxMavFrame& frame, qint64 time, AxAircraftState& state, AxVehicleEvents& events);
    void takeFeedback(const AxMavFrame& frame, qint64 time, AxAircraftState& state, AxVehicleEvents& events);
    void takeImage(const AxMavFrame& frame, qint64 time, AxAircraftState& state, AxVehicleEvents& events);
    bool point(double pitch, std::optional<double> yaw, AxAircraftState& state, AxVehicleEvents& events);
    bool takeGimbal(const AxMavFrame& frame, AxAircraftState& state, AxVehicleEvents& events);

    qint64 m_now = 0;
    qint64 m_pointed = 0;              // when the camera's direction was heard
    Teller m_teller = Teller::Trigger; // the best so far
    std::optional<qint64> m_latest;    // heard, of the latest photo
    // Camera and index, and when it was taken: cameras repeat what they told, and count anew when they start.
    std::set<std::pair<quint64, quint32>> m_images;
};
