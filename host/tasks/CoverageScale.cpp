#include "host/tasks/CoverageScale.h"

#include <AxAlgorthm/AxRoundStep.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace {
constexpr double infinite = std::numeric_limits<double>::infinity();
// Vermilion, unlike all others to every kind of eye.
const QColor withoutPhoto(0xd5, 0x5e, 0x00);
// From light to dark, yellow to blue: brightness alone tells them apart.
const std::array<QColor, 6> ramp{QColor(0xff, 0xff, 0xcc), QColor(0xc7, 0xe9, 0xb4),
                                 QColor(0x7f, 0xcd, 0xbb), QColor(0x41, 0xb6, 0xc4),
                                 QColor(0x22, 0x5e, 0xa8), QColor(0x08, 0x1d, 0x58)};
constexpr double finestStep = 0.0001; // metres a pixel
} // namespace

CoverageScale CoverageScale::OfPhotos()
{
    CoverageScale scale{{{0.0, 1.0, withoutPhoto}}};
    const std::array<double, ramp.size() + 1> bounds{1.0, 2.0, 3.0, 5.0, 8.0, 13.0, infinite};
    for (std::size_t i = 0; i < ramp.size(); ++i)
        scale.steps.push_back({bounds[i], bounds[i + 1], ramp[i]});
    return scale;
}

CoverageScale CoverageScale::OfSample(double least, double most)
{
    // One step is lost where the round numbers begin below the least value.
    const double step =
        AxRoundStepAbove(std::max(finestStep, (most - least) / static_cast<double>(ramp.size() - 1)));
    CoverageScale scale{{{0.0, 0.0, withoutPhoto}}};
    const double first = std::floor(least / step + 1e-9);
    const int count = std::clamp(static_cast<int>(std::floor(most / step + 1e-9) - first) + 1, 1,
                                 static_cast<int>(ramp.size()));
    // Few steps take the whole ramp; the finest sample is the darkest.
    const double stride = count > 1 ? static_cast<double>(ramp.size() - 1) / (count - 1) : 0.0;
    for (int i = 0; i < count; ++i)
        scale.steps.push_back({(first + i) * step, (first + i + 1) * step,
                               ramp[ramp.size() - 1 - static_cast<std::size_t>(std::lround(i * stride))]});
    return scale;
}

int CoverageScale::StepOf(double value) const
{
    if (!(value > 0.0))
        return 0;
    const auto after =
        std::upper_bound(steps.begin() + 1, steps.end(), value,
                         [](double wanted, const CoverageStep& step) { return wanted < step.from; });
    return std::max(1, static_cast<int>(after - steps.begin()) - 1);
}
