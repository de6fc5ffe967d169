#pragma once

#include <cmath>

/// The transfer function of sRGB, IEC 61966-2-1: from encoded values to light and back, both 0..1. Outside of
/// that both go on as the same formulas have it.
namespace SRgb {

inline double ToLinear(double encoded)
{
    return encoded <= 0.04045 ? encoded / 12.92 : std::pow((encoded + 0.055) / 1.055, 2.4);
}

inline double FromLinear(double light)
{
    return light <= 0.0031308 ? light * 12.92 : 1.055 * std::pow(light, 1.0 / 2.4) - 0.055;
}

} // namespace SRgb
