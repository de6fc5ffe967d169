#include "gui/ZoomSteps.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr std::array<double, 26> Steps = {ZoomSteps::Smallest,
                                          0.015,
                                          0.02,
                                          0.03,
                                          0.04,
                                          0.06,
                                          0.08,
                                          0.12,
                                          0.16,
                                          0.25,
                                          1.0 / 3,
                                          0.5,
                                          2.0 / 3,
                                          1.0,
                                          1.5,
                                          2.0,
                                          3.0,
                                          4.0,
                                          6.0,
                                          8.0,
                                          12.0,
                                          16.0,
                                          24.0,
                                          32.0,
                                          48.0,
                                          ZoomSteps::Largest};

/// What a factor may be off a step and still count as on it: less than shows on any picture.
constexpr double Tolerance = 1e-6;

} // namespace

double ZoomSteps::Bounded(double zoom)
{
    return std::isnan(zoom) ? 1.0 : std::clamp(zoom, Smallest, Largest);
}

double ZoomSteps::Above(double zoom)
{
    const auto* const step = std::upper_bound(Steps.begin(), Steps.end(), Bounded(zoom) * (1 + Tolerance));
    return step == Steps.end() ? Largest : *step;
}

double ZoomSteps::Below(double zoom)
{
    const auto* const step = std::lower_bound(Steps.begin(), Steps.end(), Bounded(zoom) * (1 - Tolerance));
    return step == Steps.begin() ? Smallest : *(step - 1);
}
