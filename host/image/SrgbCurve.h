#pragma once

#include <cmath>

/// Linear light of an encoded value, both 0..1 (IEC 61966-2-1, sRGB).
inline double DecodeSrgb(double value)
{
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

/// The inverse of DecodeSrgb().
inline double EncodeSrgb(double light)
{
    return light <= 0.0031308 ? light * 12.92 : 1.055 * std::pow(light, 1.0 / 2.4) - 0.055;
}
