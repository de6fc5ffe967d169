#pragma once

#include "image/KVImage.h"
#include "image/SRgb.h"

#include <array>
#include <cmath>

/// How different pictures look: the colour difference of CIE 1976, for sRGB under D65.
namespace ColorDifference {

inline std::array<double, 3> LabOf(const YDRGBA32i& pixel)
{
    const double r = SRgb::ToLinear(pixel.r / 255.0);
    const double g = SRgb::ToLinear(pixel.g / 255.0);
    const double b = SRgb::ToLinear(pixel.b / 255.0);
    const auto f = [](double t) {
        return t > 216.0 / 24389.0 ? std::cbrt(t) : (24389.0 / 27.0 * t + 16.0) / 116.0;
    };
    const double x = f((0.4124564 * r + 0.3575761 * g + 0.1804375 * b) / 0.95047);
    const double y = f(0.2126729 * r + 0.7151522 * g + 0.0721750 * b);
    const double z = f((0.0193339 * r + 0.1191920 * g + 0.9503041 * b) / 1.08883);
    return {116.0 * y - 16.0, 500.0 * (x - y), 200.0 * (y - z)};
}

/// The mean over all pixels of two pictures of the same size.
inline double Mean(const RGBA32iImage& a, const RGBA32iImage& b)
{
    double sum = 0.0;
    for (int y = 0; y < a.Height(); ++y)
        for (int x = 0; x < a.Width(); ++x) {
            const auto first = LabOf(a.Row(y)[x]);
            const auto second = LabOf(b.Row(y)[x]);
            sum += std::hypot(first[0] - second[0], first[1] - second[1], first[2] - second[2]);
        }
    return sum / (double(a.Width()) * a.Height());
}

} // namespace ColorDifference
