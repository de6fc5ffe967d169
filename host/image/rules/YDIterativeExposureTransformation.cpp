#include "image/YDIterativeExposureTransformation.h"

#include "image/SRgb.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double MaxExposure = 20.0;
constexpr double MaxOffset = 0.5;

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
        const double light = std::clamp(SRgb::ToLinear(v / 255.0) * gain + shift, 0.0, 1.0);
        table[static_cast<std::size_t>(v)] = ToLevel(SRgb::FromLinear(light) * 255.0);
    }
    SetTable(table);
}
