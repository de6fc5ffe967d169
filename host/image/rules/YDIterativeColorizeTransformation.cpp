#include "image/YDIterativeColorizeTransformation.h"

#include <cmath>

namespace {

constexpr double White = 255.0;
constexpr double LumaScale = 1 << Luma709::Shift;

qint16 ToFactor(double value)
{
    return static_cast<qint16>(std::lround(value * (1 << ColorizeRule::FactorBits)));
}

/// A colour of luma 0 has no line from black to it, and white none to white; the other line is the whole.
ColorizeRule::Tint TintOf(int channel, double luma, double share)
{
    const double above = luma < White ? (White - channel) / (White - luma) : 1.0;
    const double below = luma > 0.0 ? channel / luma : above;
    return {ToFactor(share * below), luma < White ? ToFactor(share * (above - below)) : qint16(0)};
}

ColorizeRule ColorizeRuleOf(const YDRGBA32i& color, int amount)
{
    const double share = std::clamp(amount, 0, 100) / 100.0;
    const double luma =
        (Luma709::Red * color.r + Luma709::Green * color.g + Luma709::Blue * color.b) / LumaScale;
    ColorizeRule rule{};
    rule.blue = TintOf(color.b, luma, share);
    rule.green = TintOf(color.g, luma, share);
    rule.red = TintOf(color.r, luma, share);
    rule.keep = ToFactor(1.0 - share);
    rule.knee = static_cast<qint16>(std::lround(luma * (1 << ColorizeRule::LumaBits)));
    return rule;
}

} // namespace

YDIterativeColorizeTransformation::YDIterativeColorizeTransformation(const YDRGBA32i& color, int amount)
    : PixelRuleTransformation<ColorizeRule>(ColorizeRuleOf(color, amount))
{}
