#pragma once

#include "image/Luma709.h"

#include <algorithm>

/// The constants and the pixel form of what YDColorEnhancerTransformation does after the levels.
///
/// The result is the sum of three products: of the original channel, of the levelled one, and of how far that
/// lies from the levelled pixel's luma. Factors are 2048ths, channels and lumas 128ths, all of them within 16
/// signed bits; the boost is rounded down, the sum to nearest.
struct ColorEnhancerRule
{
    static constexpr int LumaBits = 7;
    static constexpr int FactorBits = 11;
    static constexpr int Whole = 1 << FactorBits;
    static constexpr int Shift = LumaBits + FactorBits;
    static constexpr int Half = 1 << (Shift - 1);
    static constexpr int LumaShift = Luma709::Shift - LumaBits;
    static constexpr int LumaHalf = 1 << (LumaShift - 1);

    qint16 keep = Whole; ///< of the original
    qint16 take = 0;     ///< of the levelled pixel
    qint16 boost = 0;    ///< of its colour, times what its channels lack of the widest range in 256ths

    /// Mixes the original `pixel` with the `levelled` one; the original's alpha stays.
    void operator()(const YDRGBA32i& levelled, YDRGBA32i& pixel) const
    {
        const int sum = Luma709::Red * levelled.r + Luma709::Green * levelled.g + Luma709::Blue * levelled.b;
        const int luma = (sum + LumaHalf) >> LumaShift;
        const int range =
            std::max({levelled.r, levelled.g, levelled.b}) - std::min({levelled.r, levelled.g, levelled.b});
        const int colour = boost * (255 - range) >> 8;
        pixel.b = Mix(pixel.b, levelled.b, luma, colour);
        pixel.g = Mix(pixel.g, levelled.g, luma, colour);
        pixel.r = Mix(pixel.r, levelled.r, luma, colour);
    }

private:
    quint8 Mix(int original, int levelled, int luma, int colour) const
    {
        const int level = levelled << LumaBits;
        const int sum = (original << LumaBits) * keep + level * take + (level - luma) * colour + Half;
        return static_cast<quint8>(std::clamp(sum >> Shift, 0, 255));
    }
};
