#include "image/YDIterativeExposureTransformation.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double MaxExposure = 20.0;
constexpr double MaxOffset = 0.5;

/// Linear light of an sRGB value, both 0..1 (IEC 61966-2-1).
double Decode(double value)
{
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

/// The inverse of Decode().
double Encode(double light)
{
    return light <= 0.0031308 ? light * 12.92 : 1.055 * std::pow(light, 1.0 / 2.4) - 0.055;
}

double Bounded(double value, double bound)
{
    return std::isnan(value) ? 0.0 : std::clamp(value, -bound, bound);
}

} // namespace

YDIterativeExposureTransformation::YDIterativeExposureTransformation(double exposure, double offset)
{
    const double gain = std::exp2(Bounded(exposure, MaxExposure));
    const double shift = Bounded(offset, MaxOffset);
    Table table;
    for (int v = 0; v < 256; ++v) {
        const double light = std::clamp(Decode(v / 255.0) * gain + shift, 0.0, 1.0);
        table[static_cast<std::size_t>(v)] = ToLevel(Encode(light) * 255.0);
    }
    SetTable(table);
}
