#pragma once

#include "AutomaticInputRange.h"
#include "image/Percent.h"

/// Levels that stretch each colour channel from a range of its own to all levels, and leave the composite.
/// `Levels` is YDIterativeLevelsTransformation, or YDLevelsTransformation for a rule that goes on from there.
template <class Levels>
Levels StretchFrom(const LevelRange& red, const LevelRange& green, const LevelRange& blue)
{
    constexpr int Whole[][2] = {{0, 255}, {0, 255}, {0, 255}, {0, 255}};
    constexpr double NoGamma[] = {1.0, 1.0, 1.0, 1.0};
    const int input[][2] = {{0, 255}, {red.low, red.high}, {green.low, green.high}, {blue.low, blue.high}};
    return Levels(input, Whole, NoGamma, FullPercent);
}
