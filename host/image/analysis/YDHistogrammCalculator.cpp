#include "image/YDHistogrammCalculator.h"

#include "image/Luma709.h"

#include <algorithm>
#include <numeric>

namespace {

constexpr int Levels = ChannelHistograms::Levels;
constexpr qint64 OutliersPerMille = 5; ///< at each end
constexpr int LeastWidth = 16;

} // namespace

void YDHistogrammCalculator::SetOutput(int* table1, int* table2, int* table3, int* table4)
{
    m_red = table1;
    m_green = table2;
    m_blue = table3;
    m_luma = table4;
}

void YDHistogrammCalculator::operator()(const YDRGBA32i& pixel) const
{
    ++m_red[pixel.r];
    ++m_green[pixel.g];
    ++m_blue[pixel.b];
    ++m_luma[Luma709::Of(pixel)];
}

std::vector<int> YDHistogrammCalculator::Threshold(const int* table)
{
    ChannelHistograms::Table counts{};
    std::copy_n(table, Levels, counts.begin());
    return Threshold(counts);
}

std::vector<int> YDHistogrammCalculator::Threshold(const ChannelHistograms::Table& table)
{
    const qint64 pixels = std::accumulate(table.begin(), table.end(), qint64(0));
    if (pixels <= 0)
        return {0, Levels - 1};
    /// How many levels, from one end on, hold no more than the outliers.
    const auto outlying = [pixels](auto level, auto end) {
        qint64 sum = 0;
        const auto first = std::find_if(level, end, [&](qint64 count) {
            sum += count;
            return sum * 1000 > pixels * OutliersPerMille;
        });
        return int(first - level);
    };
    int low = outlying(table.begin(), table.end());
    int high = Levels - 1 - outlying(table.rbegin(), table.rend());
    if (high - low < LeastWidth) {
        low = std::clamp((low + high - LeastWidth) / 2, 0, Levels - 1 - LeastWidth);
        high = low + LeastWidth;
    }
    return {low, high};
}
