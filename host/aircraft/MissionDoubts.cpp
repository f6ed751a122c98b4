#include "host/aircraft/MissionDoubts.h"
#include "host/aircraft/AircraftText.h"

#include <AxAlgorthm/AxCoordinate.h>
#include <AxAlgorthm/AxGeoid.h>
#include <AxData/planner/AxPlanFlights.h>

#include <QLocale>
#include <QPointF>

#include <algorithm>
#include <cmath>

namespace {
constexpr double mostHeightBetween = 5.0;  // metres; what barometers and maps may differ by
constexpr double mostPlaceBetween = 100.0; // metres

struct Start
{
    std::optional<QPointF> place; // longitude and latitude, where it is known
    double altitude;              // metres above the sea
};

std::optional<Start> StartOf(const AxAircraftState& state)
{
    if (state.home)
        return Start{QPointF(state.home->longitude, state.home->latitude),
                     state.home->altitude -
                         AxGeoidHeight(state.home->latitude, state.home->longitude).value_or(0.0)};
    if (!state.altitudeAboveSea)
        return {};
    if (IsInTheAir(state))
        return state.heightAboveHome
                   ? std::make_optional(Start{{}, *state.altitudeAboveSea - *state.heightAboveHome})
                   : std::nullopt;
    if (!state.longitude || !state.latitude)
        return {};
    return Start{QPointF(*state.longitude, *state.latitude), *state.altitudeAboveSea};
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
    const std::optional<Start> start = StartOf(state);
    if (!start && IsInTheAir(state))
        doubts += tr("Where it has its home is not known; the heights of the route count from there.");
    if (!start || home.IsOpen())
        return doubts;
    const double apart = start->place ? DistanceBetweenTwoLatLng({home.longitude, home.latitude, 0.0},
                                                                 {start->place->x(), start->place->y(), 0.0})
                                      : 0.0;
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

QStringList MissionDoubts::OfPlan(const ShownPlan& shown)
{
    if (!shown.hasFigures || !shown.plan.IsPlanned())
        return {};
    constexpr double second = 1000.0;
    const auto span = [](double seconds) {
        return AircraftText::Span(static_cast<qint64>(std::llround(seconds * second)));
    };
    const QString most = span(shown.request.aircraft.endurance);
    const std::size_t flights = AxSplitIntoFlights(shown.request, shown.plan).size();
    if (flights == 1)
        return {};
    if (flights == 0)
        return {tr("A part of the route is too far from home for a flight of %1.").arg(most)};
    return {tr("The route takes %1, a flight %2 at most. It needs %3 flights, but is uploaded whole.")
                .arg(span(shown.plan.figures.seconds), most)
                .arg(flights)};
}

QStringList MissionDoubts::NotesOn(const AxMission& mission, const ShownPlan& shown)
{
    QStringList notes{
        tr("Take-off, the climb at home and the return are added to the route: %1 items in all.")
            .arg(mission.items.size()),
        tr("The aircraft is not told of no-fly zones, nor is a fence set.")};
    if (shown.request.kind == AxPlanRequest::Kind::Orbit || shown.request.isThreeDirections)
        notes += tr("Where the camera looks is not part of the mission; set it on the aircraft.");
    return notes;
}
