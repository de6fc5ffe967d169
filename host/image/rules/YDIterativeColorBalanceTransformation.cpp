#include "image/YDIterativeColorBalanceTransformation.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int Bound = 100;
constexpr double Reach = 1.0; // levels that a setting of 1 shifts by

ColorBalanceRule::Shifts ShiftsOf(const int* settings)
{
    constexpr double Unit = Reach * ColorBalanceRule::Level * ColorBalanceRule::ShiftUnit;
    const auto scaled = [](int setting, double unit) {
        return static_cast<int>(std::lround(setting * unit));
    };
    const int shadows = std::clamp(settings[0], -Bound, Bound);
    const int midtones = std::clamp(settings[1], -Bound, Bound);
    const int highlights = std::clamp(settings[2], -Bound, Bound);
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
