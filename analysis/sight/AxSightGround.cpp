#include "analysis/sight/AxSightGround.h"
#include "scene/base/AxWgs84.h"

#include <AxAlgorthm/AxMath.h>

#include <cmath>

AxSight::Curvature::Curvature(double latitude)
{
    const double sine = std::sin(DegreeToRadians(latitude));
    const double w2 = 1.0 - AxWgs84::eccentricity2 * sine * sine;
    across = AxWgs84::semiMajorAxis / std::sqrt(w2);
    meridian = across * (1.0 - AxWgs84::eccentricity2) / w2;
}
