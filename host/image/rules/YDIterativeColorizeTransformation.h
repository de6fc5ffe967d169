#pragma once

#include "image/ColorizeRule.h"
#include "image/PixelRuleTransformation.h"

/// Tints the picture with one colour and keeps its luma.
///
/// Each luma Y has one tinted colour: from black at 0 in a straight line to the colour at the colour's own
/// luma, and on in a straight line to white. Its luma is Y and none of its channels leaves 0..255, whatever
/// the colour. `amount` per cent of that are mixed with the pixel; alpha stays.
class YDIterativeColorizeTransformation : public PixelRuleTransformation<ColorizeRule>
{
public:
    /// `amount` in 0..100; a value outside counts as the nearest bound. The alpha of `color` is not used.
    YDIterativeColorizeTransformation(const YDRGBA32i& color, int amount);
};
