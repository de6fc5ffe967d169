#pragma once

#include "image/Luma709.h"
#include "image/MulFixedPoint15.h"
#include "image/VectorKernels.h"
#include "image/YDRGBA32i.h"

#include <algorithm>
#include <cstdlib>

/// The constants of one YDHueSaturationTransformation, and its pixel form.
///
/// All numbers fit into 16 bits, so that vectors hold two a pixel; the single quotient is one correctly
/// rounded division, so that it is the same wherever it is computed.
struct HueSaturationRule
{
    static constexpr auto Kernel = VectorKernels::HueSaturationRow;

    enum class Kind
    {
        Weaken,     ///< turns the hue, keeps saturation or lowers it
        Strengthen, ///< turns the hue, raises saturation
        Colorize,   ///< a hue and a saturation for all, lightness from the luma
    };

    static constexpr int One = 1 << 14;    ///< of the factors
    static constexpr int Sixth = 1 << 12;  ///< of the circle of hues
    static constexpr int Level = 1 << 6;   ///< of the results before they are rounded
    static constexpr int Raised = 1 << 12; ///< of the factor that raises chroma
    static constexpr int TopLevel = 255 * Level;
    static constexpr int LumaShift = Luma709::Shift - 7; ///< leaves 128ths of a level

    Kind kind = Kind::Weaken;
    int turn = 5 * Sixth;          ///< what is added to hues that count from a sixth before red, in 0..6
    int keptLightness = One;       ///< share of the lightness that is kept
    int addedLightness = 0;        ///< what is added to it, in parts of a level
    int keptChroma = One;          ///< Weaken: share of the chroma that is kept
    int strength = 0;              ///< Strengthen: per cent
    float strengthened = 0.0f;     ///< Strengthen: 100 times the share of the lightness, in Raised
    float mostStrengthened = 0.0f; ///< Strengthen: bound of what the chroma is multiplied by, in Raised
    int hueOf[3] = {};             ///< Colorize: blue, green, red, times saturation, -One..One

    void operator()(YDRGBA32i& pixel) const
    {
        switch (kind) {
        case Kind::Weaken:
            return Weaken(pixel);
        case Kind::Strengthen:
            return Strengthen(pixel);
        case Kind::Colorize:
            return Colorize(pixel);
        }
    }

    void Weaken(YDRGBA32i& pixel) const
    {
        const Turned turned = TurnHue(pixel);
        const int middle = LightnessOf(64 * turned.sum);
        pixel.b = Rounded(middle + MulFixedPoint15(8 * turned.b, keptChroma));
        pixel.g = Rounded(middle + MulFixedPoint15(8 * turned.g, keptChroma));
        pixel.r = Rounded(middle + MulFixedPoint15(8 * turned.r, keptChroma));
    }

    void Strengthen(YDRGBA32i& pixel) const
    {
        const Turned turned = TurnHue(pixel);
        const int middle = LightnessOf(64 * turned.sum);
        const int most = std::min(turned.sum, 510 - turned.sum); // chroma that this lightness has room for
        const int divisor = strength * turned.chroma + (100 - strength) * most;
        const float quotient = float(most) * strengthened / float(std::max(divisor, 1));
        const int factor = int(std::min(quotient, mostStrengthened));
        pixel.b = Rounded(middle + 2 * MulFixedPoint15(16 * turned.b, factor));
        pixel.g = Rounded(middle + 2 * MulFixedPoint15(16 * turned.g, factor));
        pixel.r = Rounded(middle + 2 * MulFixedPoint15(16 * turned.r, factor));
    }

    void Colorize(YDRGBA32i& pixel) const
    {
        const int luma = Luma709::Red * pixel.r + Luma709::Green * pixel.g + Luma709::Blue * pixel.b;
        const int middle = LightnessOf(luma >> LumaShift);
        const int room = std::min(middle, TopLevel - middle);
        pixel.b = Rounded(middle + MulFixedPoint15(2 * room, hueOf[0]));
        pixel.g = Rounded(middle + MulFixedPoint15(2 * room, hueOf[1]));
        pixel.r = Rounded(middle + MulFixedPoint15(2 * room, hueOf[2]));
    }

private:
    /// Channels as their distance from the lightness, in 16ths of a level; the highest and the lowest
    /// channel's sum and difference in levels.
    struct Turned
    {
        int b, g, r;
        int sum;
        int chroma;
    };

    /// Hue times chroma is a sum of channels, so a hue can be turned without a division.
    Turned TurnHue(const YDRGBA32i& pixel) const
    {
        const int b = pixel.b, g = pixel.g, r = pixel.r;
        const int highest = std::max({b, g, r});
        const int lowest = std::min({b, g, r});
        const int chroma = highest - lowest;
        const int sector = highest == r ? g - b : highest == g ? 2 * chroma + b - r : 4 * chroma + r - g;
        const int unit = 16 * chroma;
        int hue = 16 * (sector + chroma) + MulFixedPoint15(128 * chroma, turn);
        if (hue >= 6 * unit)
            hue -= 6 * unit;
        const int half = unit / 2;
        const auto bounded = [half](int distance) { return std::clamp(distance, -half, half); };
        return {bounded(3 * half - std::abs(hue - 4 * unit)), bounded(3 * half - std::abs(hue - 2 * unit)),
                bounded(std::abs(hue - 3 * unit) - 3 * half), highest + lowest, chroma};
    }

    /// In parts of a level, from 128ths of a level.
    int LightnessOf(int before) const { return MulFixedPoint15(before, keptLightness) + addedLightness; }

    static quint8 Rounded(int level) { return quint8((level + Level / 2) / Level); }
};
