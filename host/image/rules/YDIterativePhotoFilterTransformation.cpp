#include "image/YDIterativePhotoFilterTransformation.h"

#include <cmath>

namespace {

constexpr long MostAbsorbed = 65535;

PhotoFilterRule::Filter FilterOf(int channel, int greatest, int lumaWeight, double density)
{
    const double absorbed = density * (greatest - channel) / std::max(greatest, 1);
    const long factor = std::lround(absorbed * (1 << PhotoFilterRule::FactorBits));
    return {static_cast<quint16>(std::min(factor, MostAbsorbed)),
            static_cast<qint16>(std::lround(lumaWeight * (1.0 - absorbed)))};
}

PhotoFilterRule PhotoFilterRuleOf(const YDRGBA32i& color, int density)
{
    const double share = std::clamp(density, 0, 100) / 100.0;
    const int greatest = std::max({color.r, color.g, color.b});
    return {FilterOf(color.b, greatest, Luma709::Blue, share),
            FilterOf(color.g, greatest, Luma709::Green, share),
            FilterOf(color.r, greatest, Luma709::Red, share)};
}

} // namespace

YDIterativePhotoFilterTransformation::YDIterativePhotoFilterTransformation(const YDRGBA32i& color,
                                                                           int density)
    : PixelRuleTransformation<PhotoFilterRule>(PhotoFilterRuleOf(color, density))
{}
