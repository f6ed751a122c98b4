#pragma once

/// How urgent a message is, as MAVLink counts: the smaller the worse.
namespace MavSeverity {
constexpr int alert = 1;
constexpr int critical = 2;
constexpr int error = 3;
constexpr int warning = 4;
constexpr int notice = 5;
} // namespace MavSeverity
