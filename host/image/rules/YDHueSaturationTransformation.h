#pragma once

#include "image/HueSaturationRule.h"
#include "image/PixelRuleFunctor.h"

/// Hue, saturation and lightness of HSL, or a picture in shades of one hue. A pixel functor.
///
/// Hue turns. Saturation s below 0 scales by `1 + s / 100`; above, S becomes `S / (S + (1 - S) (1 - s /
/// 100))`, but at most 8 S: greys stay grey, and only what is nearly grey stays short of 1 at 100. Lightness
/// l moves every colour towards black or white by `|l|` per cent of the way, so that dark and pale colours do
/// not flare up.
///
/// Colorized, every pixel has the given hue, the HSL saturation `(s + 100) / 2` per cent, and its luma as
/// HSL lightness, which `lightness` then moves in the same way.
class YDHueSaturationTransformation : public PixelRuleFunctor<HueSaturationRule>
{
public:
    /// `hue` in degrees, any number of turns; `saturation` and `lightness` in -100..100, values outside
    /// count as the nearest bound.
    YDHueSaturationTransformation(int hue, int saturation, int lightness, bool colorize);
};
