#include <AxAlgorthm/AxConstants.h>
#include <AxAlgorthm/AxMath.h>

#include <cmath>
#include <limits>

bool IsEqual(double a, double b, double tolerance)
{
    return a == b || std::abs(a - b) <= tolerance;
}

double DegreeToRadians(double degrees)
{
    return degrees * (PI / 180.0);
}

double RadiansToDegree(double radians)
{
    return radians * (180.0 / PI);
}

double Radian2Angle(double radians)
{
    const double angle = std::fmod(RadiansToDegree(radians), 360.0);
    if (angle >= 0.0)
        return angle + 0.0; // turns -0 into 0
    const double positive = angle + 360.0;
    return positive < 360.0 ? positive : 0.0;
}

int qrealToIntNumber(double value)
{
    if (std::isnan(value))
        return 0;
    const double rounded = std::round(value);
    if (rounded >= static_cast<double>(std::numeric_limits<int>::max()))
        return std::numeric_limits<int>::max();
    if (rounded <= static_cast<double>(std::numeric_limits<int>::min()))
        return std::numeric_limits<int>::min();
    return static_cast<int>(rounded);
}
