#include <AxAlgorthm/AxRoundStep.h>

#include <cmath>

namespace {
double PowerOfTenBelow(double value)
{
    return std::pow(10.0, std::floor(std::log10(value)));
}
} // namespace

double AxRoundStepAbove(double value)
{
    constexpr double slack = 1.0e-9;
    const double power = PowerOfTenBelow(value);
    for (const double factor : {1.0, 2.0, 5.0})
        if (factor * power >= value * (1.0 - slack))
            return factor * power;
    return 10.0 * power;
}

double AxRoundStepBelow(double value)
{
    const double power = PowerOfTenBelow(value);
    for (const double factor : {5.0, 2.0})
        if (factor * power <= value)
            return factor * power;
    return power;
}
