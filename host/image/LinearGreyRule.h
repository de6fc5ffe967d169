#pragma once

#include "image/YDRGBA32i.h"

#include <algorithm>
#include <array>
#include <cmath>

/// The constants and the pixel form of a grey that is the weighted sum of the channels' light, encoded.
///
/// The sum is formed in single precision in the order that is written here, and rounded to a 16384th, halves
/// up; that is encoded by Encoded(), here from a table of its values. IEEE 754 rounds each step the same way
/// everywhere.
struct LinearGreyRule
{
    static constexpr const char* Kernel = "LinearGreyRow";
    static constexpr int Full = 1 << 14; ///< the light of white, as it is encoded

    /// Light of each level, 65535 for white, as whole numbers in two types.
    struct Decoding
    {
        std::array<quint16, 256> words;
        std::array<float, 256> light;
    };
    using Encoding = std::array<quint8, Full + 1>;

    /// The sRGB curve above its toe, as levels, by the fourth root of light, within 0.01; half a level more,
    /// to be rounded down.
    static constexpr std::array<float, 5> Curve{-15.975942f, 50.014645f, 286.28382f, -85.5529f, 20.739145f};
    static constexpr float Toe = 12.92f * 255.0f; ///< levels of the straight part for the light of 1
    static constexpr float EndOfToe = 0.0031308f;

    const Decoding* decoding;
    const Encoding* encoding;
    float red; ///< a weight times Full / 65535
    float green;
    float blue;

    void operator()(YDRGBA32i& pixel) const
    {
        const float redGreen = red * decoding->light[pixel.r] + green * decoding->light[pixel.g];
        const float sum = redGreen + blue * decoding->light[pixel.b] + 0.5f;
        const auto index = static_cast<std::size_t>(std::clamp(sum, 0.0f, float(Full)));
        const quint8 grey = (*encoding)[index];
        pixel = YDRGBA32i(grey, grey, grey, pixel.a);
    }

    /// The level of `light`, 0..Full.
    static quint8 Encoded(int light)
    {
        const float x = static_cast<float>(light) * (1.0f / Full);
        const float root = std::sqrt(std::sqrt(x));
        float curve = Curve.back();
        for (std::size_t i = Curve.size() - 1; i-- > 0;)
            curve = Curve[i] + root * curve;
        return static_cast<quint8>(x <= EndOfToe ? x * Toe + 0.5f : curve);
    }
};
