#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

/// The value that `share` of `values` do not exceed, 0.5 for the median; 0 if there are none.
inline double Quantile(std::vector<double> values, double share)
{
    if (values.empty())
        return 0.0;
    const auto place = values.begin() + std::ptrdiff_t(double(values.size() - 1) * share + 0.5);
    std::nth_element(values.begin(), place, values.end());
    return *place;
}

inline double Median(const std::vector<double>& values) { return Quantile(values, 0.5); }
