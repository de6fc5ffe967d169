#include "image/YDIterativeLevelsTransformation.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int HighestLevel = 255;

int BoundedLevel(int level) { return std::clamp(level, 0, HighestLevel); }

double BoundedGamma(double gamma)
{
    constexpr double Neutral = 1.0;
    return std::isnan(gamma) ? Neutral
                             : std::clamp(gamma, YDIterativeLevelsTransformation::SmallestGamma,
                                          YDIterativeLevelsTransformation::LargestGamma);
}

/// Where `level` lies in the input range, 0..1.
double ShareOf(int level, int low, int high)
{
    if (low >= high)
        return level < low ? 0.0 : 1.0;
    return std::clamp((level - low) / double(high - low), 0.0, 1.0);
}

} // namespace

YDIterativeLevelsTransformation::YDIterativeLevelsTransformation(const int (*input)[2],
                                                                 const int (*output)[2], const double* gamma,
                                                                 int strength)
{
    std::array<Table, 4> tables;
    for (std::size_t channel = 0; channel < tables.size(); ++channel) {
        const int inLow = BoundedLevel(input[channel][0]);
        const int inHigh = BoundedLevel(input[channel][1]);
        const int outLow = BoundedLevel(output[channel][0]);
        const int outHigh = BoundedLevel(output[channel][1]);
        const double exponent = 1.0 / BoundedGamma(gamma[channel]);
        for (int level = 0; level <= HighestLevel; ++level) {
            const double bent = std::pow(ShareOf(level, inLow, inHigh), exponent);
            tables[channel][static_cast<std::size_t>(level)] = ToLevel(outLow + (outHigh - outLow) * bent);
        }
    }
    SetTables(tables, strength);
}
