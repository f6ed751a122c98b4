#include "host/aircraft/MissionDoubts.h"

#include <AxAlgorthm/AxCoordinate.h>
#include <AxAlgorthm/AxGeoid.h>

#include <QLocale>

#include <algorithm>
#include <cmath>

namespace {
constexpr double mostHeightBetween = 5.0;  // metres; what barometers and maps may differ by
constexpr double mostPlaceBetween = 100.0; // metres

struct Start
{
    double longitude;
    double latitude;
    double altitude; // metres above the sea
};

std::optional<Start> StartOf(const AxAircraftState& state)
{
    if (state.home)
        return Start{state.home->longitude, state.home->latitude,
                     state.home->altitude -
                         AxGeoidHeight(state.home->latitude, state.home->longitude).value_or(0.0)};
    if (state.longitude && state.latitude && state.altitudeAboveSea &&
        state.isLanded.value_or(!state.isArmed))
        return Start{*state.longitude, *state.latitude, *state.altitudeAboveSea};
    return {};
}

QString Metres(double value)
{
    return QLocale().toString(value, 'f', 0);
}
} // namespace

QStringList MissionDoubts::Of(const AxMission& mission, const AxAircraftState& state)
{
    QStringList doubts;
    if (mission.isFixedWing != (state.planeType <= PlaneQuadPlane))
        doubts += mission.isFixedWing ? tr("The route is for an aircraft with wings, this one has none.")
                                      : tr("The route is for a multirotor, this aircraft has wings.");
    const AxMissionHome& home = mission.home;
    const std::optional<Start> start = home.IsOpen() ? std::nullopt : StartOf(state);
    if (!start)
        return doubts;
    const double apart = DistanceBetweenTwoLatLng({home.longitude, home.latitude, 0.0},
                                                  {start->longitude, start->latitude, 0.0});
    if (apart > mostPlaceBetween)
        doubts += tr("It starts %1 m away from the home that the route was planned for.").arg(Metres(apart));
    const double higher = start->altitude - home.altitude;
    if (std::fabs(higher) > mostHeightBetween)
        doubts += higher > 0.0
                      ? tr("It starts %1 m higher than planned, and flies the whole route so much higher.")
                            .arg(Metres(higher))
                      : tr("It starts %1 m lower than planned, and flies the whole route so much lower.")
                            .arg(Metres(-higher));
    return doubts;
}
