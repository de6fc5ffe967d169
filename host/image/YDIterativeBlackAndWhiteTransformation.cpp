#include "image/YDIterativeBlackAndWhiteTransformation.h"

#include "image/SRgb.h"

#include <cmath>

namespace {

static_assert(BlackAndWhiteRule::GreatestWeight == LinearGreyRule::GreatestWeight, "one bound for both");

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

LinearGreyRule::Encoding MakeEncoding()
{
    constexpr int Most = 1 << LinearGreyRule::EncodingBits;
    LinearGreyRule::Encoding encoding{};
    for (int i = 0; i <= Most; ++i)
        encoding[static_cast<std::size_t>(i)] =
            static_cast<quint8>(std::lround(SRgb::FromLinear(i / double(Most)) * 255.0));
    return encoding;
}

LinearGreyRule LinearRuleOf(float r, float g, float b)
{
    static const LinearGreyRule::Encoding encoding = MakeEncoding();
    LinearGreyRule rule{};
    rule.encoding = &encoding;
    for (int v = 0; v < 256; ++v) {
        const double light = SRgb::ToLinear(v / 255.0) * (1 << LinearGreyRule::LightBits);
        const auto scaled = [light](float weight) {
            return static_cast<int>(std::lround(Bounded(weight) * light));
        };
        const auto i = static_cast<std::size_t>(v);
        rule.red[i] = scaled(r);
        rule.green[i] = scaled(g);
        rule.blue[i] = scaled(b);
    }
    return rule;
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
