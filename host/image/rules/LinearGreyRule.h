#pragma once

#include "image/VectorKernels.h"
#include "image/YDRGBA32i.h"

#include <algorithm>
#include <array>
#include <cmath>

/// The constants and the pixel form of a grey that is the weighted sum of the channels' light, encoded.
///
/// The sum is formed in whole numbers and rounded to a 16384th, halves up; that is encoded by Encoded(), here
/// from a table of its values. That is reckoned in single precision, by steps that IEEE 754 rounds the same
/// way everywhere.
struct LinearGreyRule
{
    static constexpr auto Kernel = VectorKernels::LinearGreyRow;
    static constexpr int WhiteLight = 32767;     ///< of a channel
    static constexpr int Full = 1 << 14;         ///< the light of white, as it is encoded
    static constexpr int GreatestFactor = 10922; ///< in either direction: three of white fit into 32 bits

    using Decoding = std::array<quint16, 256>;
    using Encoding = std::array<quint8, Full + 1>;

    /// The sRGB curve above its toe, as levels, by the fourth root of light, within 0.01; half a level more,
    /// to be rounded down.
    static constexpr std::array<float, 5> Curve{-15.975942f, 50.014645f, 286.28382f, -85.5529f, 20.739145f};
    static constexpr float Toe = 12.92f * 255.0f; ///< levels of the straight part for the light of 1
    static constexpr float EndOfToe = 0.0031308f;

    const Decoding* decoding;
    const Encoding* encoding;
    qint16 red; ///< weights, times a power of two
    qint16 green;
    qint16 blue;
    int shift; ///< from the weighted sum to Full

    void operator()(YDRGBA32i& pixel) const
    {
        const auto& light = *decoding;
        const int sum = red * light[pixel.r] + green * light[pixel.g] + blue * light[pixel.b];
        const int index = std::clamp((sum + (1 << (shift - 1))) >> shift, 0, Full);
        const quint8 grey = (*encoding)[static_cast<std::size_t>(index)];
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
