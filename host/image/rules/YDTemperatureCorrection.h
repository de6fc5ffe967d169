#pragma once

#include "image/PixelRuleFunctor.h"
#include "image/TemperatureRule.h"

/// Shifts the colour temperature of a picture, as a filter of the light's colour before the lens does: below
/// 6500 K the picture becomes warmer, above it cooler. A pixel functor; made by default it changes nothing.
///
/// Each channel is multiplied by the colour of a black body at that temperature relative to one at 6500 K,
/// green also by the tint; then every pixel is given back its luma, with as much of its new chroma as
/// leaves every channel below white; at last it is mixed with what it was.
class YDTemperatureCorrection : public PixelRuleFunctor<TemperatureRule>
{
public:
    /// `temperature` in kelvin, 1000..40000; `strength` in per cent; `tint` from -100, green, to 100,
    /// magenta. Values outside count as the nearest bound.
    void SetData(int temperature, int strength, int tint);

    /// Colour of the light of a black body, opaque, its brightest channel 255; `kelvin` outside 1000..40000
    /// counts as the nearest bound.
    static YDRGBA32i GetTemperatureColor(int kelvin);
};
