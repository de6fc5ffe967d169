#include "image/YDHueSaturationTransformation.h"

#include "image/Percent.h"

#include <cmath>

namespace {

using Rule = HueSaturationRule;

constexpr int FullTurn = 360;
constexpr double Sector = 60.0;      // degrees from one primary or secondary hue to the next
constexpr int MostStrengthening = 8; // times the chroma: the noise of greys does not become colours

int Scaled(double factor, int one) { return static_cast<int>(std::lround(factor * one)); }

/// How much of each channel the pure hue has, blue, green, red, in 0..1.
void PureHue(int degrees, double (&channels)[3])
{
    const double hue = degrees / Sector;
    channels[0] = std::clamp(2.0 - std::abs(hue - 4.0), 0.0, 1.0);
    channels[1] = std::clamp(2.0 - std::abs(hue - 2.0), 0.0, 1.0);
    channels[2] = std::clamp(std::abs(hue - 3.0) - 1.0, 0.0, 1.0);
}

void SetColour(Rule& rule, int degrees, int saturation)
{
    rule.kind = Rule::Kind::Colorize;
    double channels[3];
    PureHue(degrees, channels);
    for (int i = 0; i < 3; ++i)
        rule.hueOf[i] =
            Scaled((2.0 * channels[i] - 1.0) * (saturation + FullPercent) / (2.0 * FullPercent), Rule::One);
}

void SetSaturation(Rule& rule, int saturation, double lightness)
{
    rule.kind = saturation > 0 ? Rule::Kind::Strengthen : Rule::Kind::Weaken;
    rule.keptChroma =
        Scaled(lightness * std::min(saturation + FullPercent, FullPercent) / FullPercent, Rule::One);
    rule.strength = std::max(saturation, 0);
    rule.strengthened = static_cast<float>(lightness * FullPercent * Rule::Raised);
    rule.mostStrengthened = static_cast<float>(lightness * (MostStrengthening * Rule::Raised - 1));
}

} // namespace

YDHueSaturationTransformation::YDHueSaturationTransformation(int hue, int saturation, int lightness,
                                                             bool colorize)
{
    const int degrees = (hue % FullTurn + FullTurn) % FullTurn;
    const int s = std::clamp(saturation, -FullPercent, FullPercent);
    const int l = std::clamp(lightness, -FullPercent, FullPercent);
    const double kept = (FullPercent - std::abs(l)) / double(FullPercent);
    m_rule.turn = Scaled((degrees + 5 * FullTurn / 6) % FullTurn / Sector, Rule::Sixth);
    m_rule.keptLightness = Scaled(kept, Rule::One);
    m_rule.addedLightness = Scaled(std::max(l, 0) / double(FullPercent), Rule::TopLevel);
    if (colorize)
        SetColour(m_rule, degrees, s);
    else
        SetSaturation(m_rule, s, kept);
}
