#include <AxData/exchange/AxExchangeText.h>
#include <AxData/exchange/AxMissionPoints.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {
/// Waypoints of all kinds, gates, take-offs and landings, but no place that is only looked at or fenced in.
bool IsFlownThrough(const AxMissionItem& item)
{
    constexpr int commands[] = {AxMissionItem::Waypoint, 17, 18, 19, 21, 22, 31, 82, 84, 85, 4501};
    return std::find(std::begin(commands), std::end(commands), item.command) != std::end(commands) &&
           AxIsOnGlobe(item.latitude, item.longitude);
}

double AltitudeOf(const AxMissionItem& item, const AxMissionHome& home)
{
    switch (item.frame) {
    case 0:
    case 5:
        return item.altitude;
    case 3:
    case 6:
        return home.altitude + item.altitude;
    default:
        return std::numeric_limits<double>::quiet_NaN();
    }
}
} // namespace

std::vector<AxPlanPoint> AxPointsOf(const AxMission& mission, QStringList& notes)
{
    using PointRole = AxPlanPoint::Role;
    std::vector<AxPlanPoint> points;
    bool isShooting = false;
    int passes = 0;
    int withoutAltitude = 0;
    for (const AxMissionItem& item : mission.items) {
        if (IsFlownThrough(item)) {
            const double altitude = AltitudeOf(item, mission.home);
            withoutAltitude += std::isnan(altitude) ? 1 : 0;
            points.push_back({item.longitude, item.latitude, altitude,
                              isShooting ? PointRole::OnPass : PointRole::Turn,
                              isShooting ? passes - 1 : -1});
        } else if (item.command == AxMissionItem::TriggerDistance && !points.empty()) {
            const bool isOn = item.params[0] > 0.0;
            if (isOn && !isShooting) {
                points.back().role = PointRole::PassStart;
                points.back().pass = passes++;
            } else if (!isOn && isShooting) {
                points.back().role = PointRole::PassEnd;
            }
            isShooting = isOn;
        }
    }
    if (withoutAltitude > 0)
        notes << AxExchangeText(QT_TRANSLATE_NOOP("AxExchange",
                                                  "The altitude of %1 points is not known: they "
                                                  "follow the terrain, or home's is left open."))
                     .arg(withoutAltitude);
    notes << AxExchangeText(QT_TRANSLATE_NOOP(
        "AxExchange",
        "Altitudes are shown as the file states them; if another program made it, they count from "
        "the sea."));
    return points;
}
