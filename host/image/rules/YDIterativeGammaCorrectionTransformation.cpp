#include "image/YDIterativeGammaCorrectionTransformation.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double MinGamma = 0.01;
constexpr double MaxGamma = 5.0;

} // namespace

YDIterativeGammaCorrectionTransformation::YDIterativeGammaCorrectionTransformation(double gamma)
{
    const double exponent = std::isnan(gamma) ? 1.0 : 1.0 / std::clamp(gamma, MinGamma, MaxGamma);
    Table table;
    for (int v = 0; v < 256; ++v)
        table[static_cast<std::size_t>(v)] = ToLevel(std::pow(v / 255.0, exponent) * 255.0);
    SetTable(table);
}
