#include "image/YDIterativePosterizeTransformation.h"

#include <algorithm>

namespace {

constexpr int MinLevels = 2;
constexpr int MaxLevels = 256;

} // namespace

YDIterativePosterizeTransformation::YDIterativePosterizeTransformation(int levels)
{
    const int n = std::clamp(levels, MinLevels, MaxLevels);
    Table table;
    for (int v = 0; v < 256; ++v) {
        const int band = v * n / 256;
        table[static_cast<std::size_t>(v)] = ToLevel(band * 255.0 / (n - 1));
    }
    SetTable(table);
}
