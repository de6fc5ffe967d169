#pragma once

#include "image/ColorBalanceRule.h"
#include "image/PixelRuleTransformation.h"

/// Shifts colours along three axes, apart for shadows, midtones and highlights.
///
/// The three weights of a pixel follow from its luma and sum to 1; each changes smoothly from one tone to the
/// next. What they make of the settings shifts red, green and blue, by at most so many levels as the setting
/// says and by less the nearer the channel is to the end that it is shifted to, so that nothing is clipped.
class YDIterativeColorBalanceTransformation : public PixelRuleTransformation<ColorBalanceRule>
{
public:
    /// Each points to three settings, for shadows, midtones and highlights, in -100..100; values outside
    /// count as the nearest bound. Positive ones shift towards red, green and blue.
    YDIterativeColorBalanceTransformation(const int* cyanRed, const int* magentaGreen, const int* yellowBlue);
};
