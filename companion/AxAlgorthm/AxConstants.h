#pragma once

/// The ratio of a circle's circumference to its diameter.
constexpr double PI = 3.14159265358979323846;

/// What a query returns when it has no answer. Finite, so that callers can compare with ==.
constexpr double INVALID_DOUBLE_VALUE = -999999.0;

/// Degrees per unit of the camera angle in a video-data message: the angle travels as an unsigned
/// 16-bit count of hundredths of a degree.
constexpr double DVAngleFactor = 0.01;
