#include "image/YDTemperatureCorrection.h"

#include "image/Percent.h"
#include "image/SRgb.h"

#include <cmath>

namespace {

constexpr int Coldest = 1000; // kelvin
constexpr int Hottest = 40000;
constexpr int Neutral = 6500;
constexpr double TintStops = 0.5; // by which green changes at full tint
constexpr double LeastGain = 1.0 / 64.0;
constexpr double MostChroma = 2.0; // times what greys get

struct Rgb
{
    double r;
    double g;
    double b;
};

struct Xyz
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

/// A bell whose flanks differ; nanometres.
double Lobe(double wavelength, double centre, double below, double above)
{
    const double distance = (wavelength - centre) / (wavelength < centre ? below : above);
    return std::exp(-0.5 * distance * distance);
}

/// The CIE 1931 colour matching functions as C. Wyman, P.-P. Sloan and P. Shirley fit them: Simple Analytic
/// Approximations to the CIE XYZ Color Matching Functions, Journal of Computer Graphics Techniques 2 (2),
/// 2013.
Xyz ColourMatching(double wavelength)
{
    return {1.056 * Lobe(wavelength, 599.8, 37.9, 31.0) + 0.362 * Lobe(wavelength, 442.0, 16.0, 26.7) -
                0.065 * Lobe(wavelength, 501.1, 20.4, 26.2),
            0.821 * Lobe(wavelength, 568.8, 46.9, 40.5) + 0.286 * Lobe(wavelength, 530.9, 16.3, 31.1),
            1.217 * Lobe(wavelength, 437.0, 11.8, 36.0) + 0.681 * Lobe(wavelength, 459.0, 26.0, 13.8)};
}

/// Planck's law, but for constant factors.
double Radiance(double wavelength, int kelvin)
{
    constexpr double SecondRadiationConstant = 1.438776877e7; // nanometre kelvin
    return std::pow(wavelength, -5.0) / std::expm1(SecondRadiationConstant / (wavelength * kelvin));
}

Xyz BlackBody(int kelvin)
{
    Xyz sum;
    for (int wavelength = 380; wavelength <= 780; wavelength += 5) {
        const Xyz matching = ColourMatching(wavelength);
        const double radiance = Radiance(wavelength, kelvin);
        sum.x += matching.x * radiance;
        sum.y += matching.y * radiance;
        sum.z += matching.z * radiance;
    }
    return sum;
}

/// Encoded channels, the brightest 1. The reddest lights have less blue than sRGB can show: none.
Rgb TemperatureColour(int kelvin)
{
    const Xyz light = BlackBody(std::clamp(kelvin, Coldest, Hottest));
    const double r = 3.2406 * light.x - 1.5372 * light.y - 0.4986 * light.z;
    const double g = -0.9689 * light.x + 1.8758 * light.y + 0.0415 * light.z;
    const double b = 0.0557 * light.x - 0.2040 * light.y + 1.0570 * light.z;
    const double brightest = std::max({r, g, b});
    const auto encoded = [brightest](double channel) {
        return SRgb::FromLinear(std::max(channel, 0.0) / brightest);
    };
    return {encoded(r), encoded(g), encoded(b)};
}

/// What the channels are multiplied by, the greatest 1. None vanishes, so that no colour does.
Rgb Gains(int kelvin, int tint)
{
    const Rgb colour = TemperatureColour(kelvin);
    const Rgb neutral = TemperatureColour(Neutral);
    const double magenta = std::exp2(-TintStops * std::clamp(tint, -FullPercent, FullPercent) / FullPercent);
    const Rgb gains{colour.r / neutral.r, colour.g / neutral.g * magenta, colour.b / neutral.b};
    const double greatest = std::max({gains.r, gains.g, gains.b});
    const auto bounded = [greatest](double gain) { return std::max(gain / greatest, LeastGain); };
    return {bounded(gains.r), bounded(gains.g), bounded(gains.b)};
}

TemperatureRule::Factors Scaled(const Rgb& factors, const TemperatureRule::Factors& weights)
{
    const auto scaled = [](double factor, int weight) {
        return static_cast<int>(std::lround(factor * weight));
    };
    return {scaled(factors.b, weights.b), scaled(factors.g, weights.g), scaled(factors.r, weights.r)};
}

} // namespace

void YDTemperatureCorrection::SetData(int temperature, int strength, int tint)
{
    constexpr int One = TemperatureRule::One;
    constexpr double HighestFactor = 32767.0 / TemperatureRule::Chroma;
    const Rgb gains = Gains(temperature, tint);
    const int share = std::clamp(strength, 0, FullPercent);
    m_rule.gains = Scaled(gains, {One, One, One});
    m_rule.gainedLuma = Scaled(gains, TemperatureRule::Luma);
    m_rule.mixed = (share * One + FullPercent / 2) / FullPercent;
    m_rule.kept = One - m_rule.mixed;
    const TemperatureRule::Factors& luma = m_rule.gainedLuma;
    const double chromaOfGreys = double(One) / (luma.b + luma.g + luma.r);
    m_rule.mostChroma = static_cast<float>(std::min(MostChroma * chromaOfGreys, HighestFactor));
    m_rule.strength = static_cast<float>(share * TemperatureRule::Chroma / double(FullPercent));
}

YDRGBA32i YDTemperatureCorrection::GetTemperatureColor(int kelvin)
{
    const Rgb colour = TemperatureColour(kelvin);
    const auto level = [](double channel) { return static_cast<quint8>(std::lround(255.0 * channel)); };
    return {level(colour.b), level(colour.g), level(colour.r), 255};
}
