#include "image/YDIterativeBlackAndWhiteTransformation.h"

#include "image/SRgb.h"

#include <cmath>

namespace {

constexpr int WhiteLight = 65535; // in LinearGreyRule::Decoding

double Bounded(float weight)
{
    constexpr double Bound = BlackAndWhiteRule::GreatestWeight;
    return std::isnan(weight) ? 0.0 : std::clamp(double(weight), -Bound, Bound);
}

BlackAndWhiteRule RuleOf(float r, float g, float b)
{
    const auto scaled = [](float weight) {
        return static_cast<int>(std::lround(Bounded(weight) * (1 << BlackAndWhiteRule::Shift)));
    };
    return {scaled(r), scaled(g), scaled(b)};
}

LinearGreyRule::Decoding MakeDecoding()
{
    LinearGreyRule::Decoding decoding{};
    for (std::size_t v = 0; v < 256; ++v) {
        const double light = SRgb::ToLinear(double(v) / 255.0) * WhiteLight;
        decoding.words[v] = static_cast<quint16>(std::lround(light));
        decoding.light[v] = decoding.words[v];
    }
    return decoding;
}

LinearGreyRule::Encoding MakeEncoding()
{
    LinearGreyRule::Encoding encoding{};
    for (int light = 0; light <= LinearGreyRule::Full; ++light)
        encoding[static_cast<std::size_t>(light)] = LinearGreyRule::Encoded(light);
    return encoding;
}

LinearGreyRule LinearRuleOf(float r, float g, float b)
{
    static const LinearGreyRule::Decoding decoding = MakeDecoding();
    static const LinearGreyRule::Encoding encoding = MakeEncoding();
    const auto scaled = [](float weight) {
        return static_cast<float>(Bounded(weight) * LinearGreyRule::Full / WhiteLight);
    };
    return {&decoding, &encoding, scaled(r), scaled(g), scaled(b)};
}

} // namespace

YDIterativeBlackAndWhiteTransformation::YDIterativeBlackAndWhiteTransformation(bool cieFlag, float r, float g,
                                                                               float b)
    : m_isLinear(cieFlag), m_rule(RuleOf(r, g, b)), m_linearRule(LinearRuleOf(r, g, b))
{}

void YDIterativeBlackAndWhiteTransformation::ProcessRow(YDRGBA32i* row, int count) const
{
    if (m_isLinear)
        ApplyRuleToRow(m_linearRule, row, count);
    else
        ApplyRuleToRow(m_rule, row, count);
}
