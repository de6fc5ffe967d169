#include "AutomaticInputRange.h"

#include <algorithm>

namespace {

constexpr double LowShare = 0.002;
constexpr double HighShare = 0.998;
constexpr int HighestLevel = 255;
constexpr int SmallestWidth = 16;

LevelRange WideEnough(const LevelRange& range)
{
    if (range.high - range.low >= SmallestWidth)
        return range;
    const int low = std::max((range.low + range.high) / 2 - SmallestWidth / 2, 0);
    return low + SmallestWidth > HighestLevel ? LevelRange{HighestLevel - SmallestWidth, HighestLevel}
                                              : LevelRange{low, low + SmallestWidth};
}

} // namespace

LevelRange AutomaticInputRange(const LevelRange& occupied, const std::function<qint64(int)>& countOf,
                               double pixels)
{
    LevelRange range = occupied;
    double sum = 0.0;
    for (int level = occupied.low; level <= occupied.high; ++level) {
        sum += double(countOf(level));
        const double share = sum * (1.0 / pixels);
        if (!(share >= LowShare)) { // not a number included
            range.low = level;
        } else if (share >= HighShare) {
            range.high = level;
            break;
        }
    }
    return WideEnough(range);
}
