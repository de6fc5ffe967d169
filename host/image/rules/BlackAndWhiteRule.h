#pragma once

#include "image/VectorKernels.h"
#include "image/YDRGBA32i.h"

#include <algorithm>

/// The constants and the pixel form of a grey that is the weighted sum of the encoded channels, clamped to
/// 0..255: weights are 65536ths, and the sum is rounded to nearest, halves up.
struct BlackAndWhiteRule
{
    static constexpr auto Kernel = VectorKernels::BlackAndWhiteRow;
    static constexpr int Shift = 16;
    static constexpr int Half = 1 << (Shift - 1);
    static constexpr int GreatestWeight = 32; ///< in either direction: three such of white fit into 32 bits

    int red;
    int green;
    int blue;

    void operator()(YDRGBA32i& pixel) const
    {
        const int sum = red * pixel.r + green * pixel.g + blue * pixel.b + Half;
        const auto grey = static_cast<quint8>(std::clamp(sum >> Shift, 0, 255));
        pixel = YDRGBA32i(grey, grey, grey, pixel.a);
    }
};
