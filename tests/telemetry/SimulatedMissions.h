#pragma once

#include <AxTelemetry/simulator/AxSimulatedAircraft.h>

#include <AxAlgorthm/AxConstants.h>
#include <AxAlgorthm/AxCoordinate.h>
#include <AxData/exchange/AxMission.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>
#include <vector>

/// Missions and aircraft for the tests of the simulator.
namespace simulated {
constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();
inline const AxPlace home{7.4, 46.9, 600.0};

/// A place so many metres away; good for a kilometre or two.
inline AxPlace Beside(const AxPlace& from, double north, double east)
{
    return {from.longitude + east / (111320.0 * std::cos(from.latitude * PI / 180.0)),
            from.latitude + north / 111170.0, from.altitude};
}

inline double Metres(const AxPlace& a, const AxPlace& b)
{
    return DistanceBetweenTwoLatLng(CAxVector3D(a.longitude, a.latitude, 0),
                                    CAxVector3D(b.longitude, b.latitude, 0));
}

inline AxMissionItem Item(int command, std::array<double, 4> params, const AxPlace& place, double height)
{
    AxMissionItem item;
    item.command = command;
    item.params = params;
    item.latitude = place.latitude;
    item.longitude = place.longitude;
    item.altitude = height;
    return item;
}

inline AxMissionItem Waypoint(const AxPlace& place, double height)
{
    return Item(AxMissionItem::Waypoint, {0.0, 0.0, 0.0, noNumber}, place, height);
}

inline AxMissionItem Doing(int command, std::array<double, 4> params)
{
    AxMissionItem item;
    item.command = command;
    item.frame = AxMissionItem::Mission;
    item.params = params;
    return item;
}

inline AxMission MissionOf(std::vector<AxMissionItem> items)
{
    AxMission mission;
    mission.home = {home.latitude, home.longitude, home.altitude};
    mission.items = std::move(items);
    return mission;
}

inline AxSimulatedAircraft Aircraft(EPlaneType type, const AxSimulatedWind& wind, const AxPlace& from = home)
{
    AxSimulatedAircraft aircraft;
    aircraft.type = type;
    aircraft.speed = aircraft.HasWings() ? 18.0 : 10.0;
    aircraft.wind = wind;
    aircraft.home = from;
    return aircraft;
}

/// Places within so many degrees, heights within what floats keep.
inline void ExpectSame(const AxMission& got, const AxMission& sent, double tolerance = 1e-7)
{
    ASSERT_EQ(got.items.size(), sent.items.size());
    for (std::size_t i = 0; i < sent.items.size(); ++i) {
        const AxMissionItem& a = got.items[i];
        const AxMissionItem& b = sent.items[i];
        EXPECT_EQ(a.command, b.command) << i;
        EXPECT_EQ(a.frame, b.frame) << i;
        for (std::size_t p = 0; p < 4; ++p)
            EXPECT_TRUE(a.params[p] == b.params[p] || (std::isnan(a.params[p]) && std::isnan(b.params[p])))
                << i << ' ' << p;
        EXPECT_NEAR(a.altitude, b.altitude, 1e-4) << i;
        if (std::isnan(b.latitude))
            continue;
        EXPECT_NEAR(a.latitude, b.latitude, tolerance) << i;
        EXPECT_NEAR(a.longitude, b.longitude, tolerance) << i;
    }
}
} // namespace simulated
