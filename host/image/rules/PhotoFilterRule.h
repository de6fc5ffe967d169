#pragma once

#include "image/Luma709.h"
#include "image/VectorKernels.h"

#include <algorithm>

/// The constants and the pixel form of YDIterativePhotoFilterTransformation.
///
/// It reckons with complements, the distances of channels and lumas from white. All is in whole numbers,
/// rounded down but for the result, which is rounded to nearest, and for one quotient: that is a
/// single-precision division, which IEEE 754 rounds the same way everywhere.
struct PhotoFilterRule
{
    static constexpr auto Kernel = VectorKernels::PhotoFilterRow;
    static constexpr int ChannelBits = 7; ///< channels are 128ths of a level
    static constexpr int White = 255 << ChannelBits;
    static constexpr int WhiteLuma = 255 << Luma709::Shift;
    static constexpr int Half = 1 << (ChannelBits - 1);
    static constexpr int FactorBits = 16; ///< of `absorbed` and of the quotient
    static constexpr float Whole = 65535.0f;

    struct Filter
    {
        quint16 absorbed; ///< what the filter holds back of the channel, in 65536ths
        qint16 weight;    ///< of what it lets through in the luma, as those of Luma709, which none exceeds
    };

    Filter blue;
    Filter green;
    Filter red;

    void operator()(YDRGBA32i& pixel) const
    {
        const int before =
            WhiteLuma - Luma709::Red * pixel.r - Luma709::Green * pixel.g - Luma709::Blue * pixel.b;
        const int after = WhiteLuma - red.weight * pixel.r - green.weight * pixel.g - blue.weight * pixel.b;
        // Both are whole numbers of at most 23 bits, and the second is not the smaller.
        const float quotient = static_cast<float>(before) / static_cast<float>(std::max(after, 1));
        const unsigned ratio = static_cast<unsigned>(quotient * Whole);
        pixel.b = Restored(pixel.b, blue, ratio);
        pixel.g = Restored(pixel.g, green, ratio);
        pixel.r = Restored(pixel.r, red, ratio);
    }

private:
    static quint8 Restored(int channel, const Filter& filter, unsigned ratio)
    {
        const unsigned level = static_cast<unsigned>(channel) << ChannelBits;
        const unsigned filtered = White - level + (level * filter.absorbed >> FactorBits);
        return static_cast<quint8>((White + Half - (filtered * ratio >> FactorBits)) >> ChannelBits);
    }
};
