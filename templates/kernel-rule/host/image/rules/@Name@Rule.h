#pragma once

#include "image/Luma709.h"
#include "image/VectorKernels.h"

#include <algorithm>

/// The constants and the pixel form of a rule that mixes each channel with the pixel's luma.
///
/// Factors are 2048ths, channels and lumas 128ths, all of them within 16 signed bits; the sum is rounded to
/// nearest.
struct @Name@Rule
{
    static constexpr auto Kernel = VectorKernels::@Name@Row;
    static constexpr int LumaBits = 7;
    static constexpr int FactorBits = 11;
    static constexpr int Shift = LumaBits + FactorBits;
    static constexpr int Half = 1 << (Shift - 1);
    static constexpr int LumaShift = Luma709::Shift - LumaBits;
    static constexpr int LumaHalf = 1 << (LumaShift - 1);

    int take; ///< of the luma
    int keep; ///< of the channel

    /// `amount` in 0..100; a value outside counts as the nearest bound. 0 is the identity.
    explicit @Name@Rule(int amount)
        : take(((std::clamp(amount, 0, 100) << FactorBits) + 50) / 100), keep((1 << FactorBits) - take)
    {}

    void operator()(YDRGBA32i& pixel) const
    {
        const int sum = Luma709::Red * pixel.r + Luma709::Green * pixel.g + Luma709::Blue * pixel.b;
        const int mixed = ((sum + LumaHalf) >> LumaShift) * take + Half;
        pixel.b = static_cast<quint8>(((pixel.b << LumaBits) * keep + mixed) >> Shift);
        pixel.g = static_cast<quint8>(((pixel.g << LumaBits) * keep + mixed) >> Shift);
        pixel.r = static_cast<quint8>(((pixel.r << LumaBits) * keep + mixed) >> Shift);
    }
};
