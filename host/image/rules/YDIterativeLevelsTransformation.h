#pragma once

#include "image/ChannelTablesTransformation.h"

/// Levels: a range of input levels stretched onto a range of output levels, bent by a gamma between them, for
/// each colour channel and for all of them on top of it.
///
///     v' = outLow + (outHigh - outLow) * x^(1 / gamma),  x = clamp((v - inLow) / (inHigh - inLow), 0, 1)
///
/// A colour channel goes through its own range and the result, rounded to a level, through the composite
/// one. An output range whose low lies above its high inverts. An input range without width, or whose low
/// lies above its high, is a step at its low: what is below it gives the output's low, all else its high.
class YDIterativeLevelsTransformation : public ChannelTablesTransformation
{
public:
    static constexpr double SmallestGamma = 0.01;
    static constexpr double LargestGamma = 9.99;

    /// Each argument points to four elements: composite, red, green, blue; of the ranges, the low comes
    /// first. Levels outside 0..255 and gammas outside 0.01..9.99, zero, negative and infinite ones among
    /// them, count as the nearest bound; a gamma that is not a number counts as 1. `strength` mixes the
    /// result with the original, in per cent: 100 is the result alone.
    YDIterativeLevelsTransformation(const int (*input)[2], const int (*output)[2], const double* gamma,
                                    int strength);
};
