#include "image/YDIterativeBlackAndWhiteTransformation.h"

#include "image/SRgb.h"

#include <cmath>

namespace {

constexpr int LightBits = 15;   // of LinearGreyRule::WhiteLight
constexpr int EncodedBits = 14; // of LinearGreyRule::Full
constexpr int MostFactorBits = 13;

double Bounded(float weight)
{
    constexpr double Bound = BlackAndWhiteRule::GreatestWeight;
    return std::isnan(weight) ? 0.0 : std::clamp(double(weight), -Bound, Bound);
}

BlackAndWhiteRule GreyRuleOf(float r, float g, float b)
{
    const auto scaled = [](float weight) {
        return static_cast<int>(std::lround(Bounded(weight) * (1 << BlackAndWhiteRule::Shift)));
    };
    return {scaled(r), scaled(g), scaled(b)};
}

LinearGreyRule::Decoding MakeDecoding()
{
    LinearGreyRule::Decoding decoding{};
    for (std::size_t v = 0; v < 256; ++v)
        decoding[v] =
            static_cast<quint16>(std::lround(SRgb::ToLinear(double(v) / 255.0) * LinearGreyRule::WhiteLight));
    return decoding;
}

LinearGreyRule::Encoding MakeEncoding()
{
    LinearGreyRule::Encoding encoding{};
    for (int light = 0; light <= LinearGreyRule::Full; ++light)
        encoding[static_cast<std::size_t>(light)] = LinearGreyRule::Encoded(light);
    return encoding;
}

LinearGreyRule LinearGreyRuleOf(float r, float g, float b)
{
    static const LinearGreyRule::Decoding decoding = MakeDecoding();
    static const LinearGreyRule::Encoding encoding = MakeEncoding();
    const double greatest = std::max({std::abs(Bounded(r)), std::abs(Bounded(g)), std::abs(Bounded(b))});
    int bits = MostFactorBits;
    while (greatest * (1 << bits) > LinearGreyRule::GreatestFactor)
        --bits;
    const auto scaled = [bits](float weight) {
        return static_cast<qint16>(std::lround(Bounded(weight) * (1 << bits)));
    };
    return {&decoding, &encoding, scaled(r), scaled(g), scaled(b), LightBits + bits - EncodedBits};
}

} // namespace

YDIterativeBlackAndWhiteTransformation::YDIterativeBlackAndWhiteTransformation(bool cieFlag, float r, float g,
                                                                               float b)
    : m_isLinear(cieFlag), m_rule(GreyRuleOf(r, g, b)), m_linearRule(LinearGreyRuleOf(r, g, b))
{}

void YDIterativeBlackAndWhiteTransformation::ProcessRow(YDRGBA32i* row, int count) const
{
    if (m_isLinear)
        ApplyRuleToRow(m_linearRule, row, count);
    else
        ApplyRuleToRow(m_rule, row, count);
}
