#pragma once

#include "image/YDRGBA32i.h"

/// The luma of Rec. ITU-R BT.709, 0.2126 R + 0.7152 G + 0.0722 B of the encoded channels, in fixed point.
///
/// The weights are 32768ths, so that each of them fits into a signed 16-bit number, and sum to one: a grey
/// pixel's luma is its level. Rounded to nearest, halves up. One rule for all that measures how bright a
/// pixel is, so that a threshold falls where the histogram shows it.
struct Luma709
{
    static constexpr int Red = 6966;
    static constexpr int Green = 23436;
    static constexpr int Blue = 2366;
    static constexpr int Shift = 15;

    static constexpr int Of(const YDRGBA32i& pixel)
    {
        return (Red * pixel.r + Green * pixel.g + Blue * pixel.b + (1 << (Shift - 1))) >> Shift;
    }
};

static_assert(Luma709::Red + Luma709::Green + Luma709::Blue == 1 << Luma709::Shift, "greys keep their level");
