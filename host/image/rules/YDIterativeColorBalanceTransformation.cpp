#include "image/YDIterativeColorBalanceTransformation.h"

#include "image/Percent.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double Reach = 1.0; // levels that a setting of 1 shifts by

ColorBalanceRule::Shifts ShiftsOf(const int* settings)
{
    constexpr double Unit = Reach * ColorBalanceRule::Level * ColorBalanceRule::ShiftUnit;
    const auto scaled = [](int setting, double unit) {
        return static_cast<int>(std::lround(setting * unit));
    };
    const int shadows = std::clamp(settings[0], -FullPercent, FullPercent);
    const int midtones = std::clamp(settings[1], -FullPercent, FullPercent);
    const int highlights = std::clamp(settings[2], -FullPercent, FullPercent);
    return {scaled(midtones, Unit), scaled(shadows - midtones, 2 * Unit),
            scaled(highlights - midtones, 2 * Unit)};
}

} // namespace

YDIterativeColorBalanceTransformation::YDIterativeColorBalanceTransformation(const int* cyanRed,
                                                                             const int* magentaGreen,
                                                                             const int* yellowBlue)
    : PixelRuleTransformation<ColorBalanceRule>(
          {ShiftsOf(yellowBlue), ShiftsOf(magentaGreen), ShiftsOf(cyanRed)})
{}
