#pragma once

#include <AxAlgorthm/AxAlgorthmExport.h>

/// True when a and b differ by no more than the tolerance; a difference equal to it counts as equal.
/// False when any argument is not a number.
AXALGORTHM_EXPORT bool IsEqual(double a, double b, double tolerance);

AXALGORTHM_EXPORT double DegreeToRadians(double degrees);
AXALGORTHM_EXPORT double RadiansToDegree(double radians);

/// A heading in radians as degrees for display, brought into [0, 360).
AXALGORTHM_EXPORT double Radian2Angle(double radians);

/// The nearest integer; halves go away from zero. Values beyond the range of int give its nearest end,
/// not-a-number gives 0.
AXALGORTHM_EXPORT int qrealToIntNumber(double value);
