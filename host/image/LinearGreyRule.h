#pragma once

#include "image/YDRGBA32i.h"

#include <algorithm>
#include <array>

/// The constants and the pixel form of a grey that is the weighted sum of the channels' light: each channel
/// is decoded and weighted by its table, and the sum, clamped to 0..1 and rounded to nearest, is encoded by
/// another.
struct LinearGreyRule
{
    static constexpr const char* Kernel = "LinearGreyRow";
    static constexpr int LightBits = 24;    ///< of the decoded channels
    static constexpr int EncodingBits = 14; ///< of the sum as it is encoded
    static constexpr int Shift = LightBits - EncodingBits;
    static constexpr int Half = 1 << (Shift - 1);
    static constexpr int GreatestWeight = 32; ///< in either direction: three such of white fit into 32 bits

    /// A level for each sum; the three bytes behind are there to be read along with the last.
    using Encoding = std::array<quint8, (1 << EncodingBits) + 4>;

    std::array<int, 256> red;
    std::array<int, 256> green;
    std::array<int, 256> blue;
    const Encoding* encoding;

    void operator()(YDRGBA32i& pixel) const
    {
        const int light = red[pixel.r] + green[pixel.g] + blue[pixel.b];
        const int index = std::clamp((light + Half) >> Shift, 0, 1 << EncodingBits);
        const quint8 grey = (*encoding)[static_cast<std::size_t>(index)];
        pixel = YDRGBA32i(grey, grey, grey, pixel.a);
    }
};
