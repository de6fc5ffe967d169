#pragma once

#include "image/Luma709.h"
#include "image/VectorKernels.h"

#include <algorithm>

/// The constants and the pixel form of YDIterativeColorizeTransformation.
///
/// What a channel becomes is the sum of three products: of the channel, of the pixel's luma, and of how far
/// that luma exceeds the colour's. Factors are 2048ths, channels and lumas 128ths, all of them within 16
/// signed bits; the sum is rounded to nearest.
struct ColorizeRule
{
    static constexpr auto Kernel = VectorKernels::ColorizeRow;
    static constexpr int LumaBits = 7;
    static constexpr int FactorBits = 11;
    static constexpr int Shift = LumaBits + FactorBits;
    static constexpr int Half = 1 << (Shift - 1);
    static constexpr int LumaShift = Luma709::Shift - LumaBits;
    static constexpr int LumaHalf = 1 << (LumaShift - 1);

    struct Tint
    {
        qint16 slope; ///< from black on
        qint16 bend;  ///< added to the slope above the knee
    };

    Tint blue;
    Tint green;
    Tint red;
    qint16 keep; ///< of the channel itself
    qint16 knee; ///< luma of the colour

    void operator()(YDRGBA32i& pixel) const
    {
        const int sum = Luma709::Red * pixel.r + Luma709::Green * pixel.g + Luma709::Blue * pixel.b;
        const int luma = (sum + LumaHalf) >> LumaShift;
        const int above = std::max(luma - knee, 0);
        pixel.b = Mix(pixel.b, blue, luma, above);
        pixel.g = Mix(pixel.g, green, luma, above);
        pixel.r = Mix(pixel.r, red, luma, above);
    }

private:
    quint8 Mix(int channel, const Tint& tint, int luma, int above) const
    {
        const int sum = (channel << LumaBits) * keep + luma * tint.slope + above * tint.bend + Half;
        return static_cast<quint8>(std::clamp(sum >> Shift, 0, 255));
    }
};
