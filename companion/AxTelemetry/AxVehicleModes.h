#pragma once

#include <QString>

/// The flight mode in words, out of a heartbeat's fields (MAV_AUTOPILOT, MAV_TYPE, base_mode, custom_mode).
/// Where the autopilot's own modes are not known, what the base mode says.
QString AxModeName(int autopilot, int mavType, int baseMode, quint32 customMode);
