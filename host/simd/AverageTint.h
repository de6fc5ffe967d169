#pragma once

#include "image/YDRGBA32i.h"

#include <algorithm>

/// What AverageTintAVX2 does to one pixel: its ends of rows, and what its vectors equal.
struct AverageTint
{
    /// 255 times the sum of the weights, and what the whole of the amount is.
    static constexpr int Full = 255000;

    /// Full without the powers of two in it. The quotient of two numbers that fit into a float exactly is
    /// found by its reciprocal, which has been tried for every numerator there is.
    static constexpr int OddPartOfFull = 31875;
    static constexpr int ShiftOfFull = 3;
    static constexpr float Reciprocal = 1.0f / OddPartOfFull;

    int red;         ///< weights, which sum to 1000
    int green;       ///<
    int blue;        ///<
    YDRGBA32i black; ///< what black becomes
    YDRGBA32i white; ///< what white becomes
    int amount;      ///< 0..Full

    void operator()(YDRGBA32i& pixel) const
    {
        const int level = red * pixel.r + green * pixel.g + blue * pixel.b;
        pixel.b = Mix(pixel.b, black.b, white.b, level);
        pixel.g = Mix(pixel.g, black.g, white.g, level);
        pixel.r = Mix(pixel.r, black.r, white.r, level);
    }

    /// What the vectors multiply a difference of two channels by, in 65536ths, to find its share of `share`
    /// in Full rounded down; `share` is less than Full. Such a factor exists for every share: between two
    /// fractions whose denominators do not exceed 255 there is always a 65536th.
    static unsigned FactorOf(int share)
    {
        constexpr int Percent = Full / 100;
        if (share % Percent == 0) // rounding the factor up adds less than a hundredth to any product
            return (static_cast<unsigned>(share / Percent) << 16) / 100 + (share != 0 ? 1 : 0);
        unsigned factor = 0;
        for (unsigned difference = 1; difference < 256; ++difference) {
            const unsigned product = difference * static_cast<unsigned>(share) / Full;
            factor = std::max(factor, ((product << 16) + difference - 1) / difference);
        }
        return factor;
    }

private:
    quint8 Mix(int channel, int blackChannel, int whiteChannel, int level) const
    {
        const int tone = (whiteChannel * level + blackChannel * (Full - level)) / Full;
        return static_cast<quint8>((tone * amount + channel * (Full - amount)) / Full);
    }
};

static_assert(AverageTint::OddPartOfFull << AverageTint::ShiftOfFull == AverageTint::Full,
              "dividing by both is dividing by the whole");
