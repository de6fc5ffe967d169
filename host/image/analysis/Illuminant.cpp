#include "image/Illuminant.h"

#include "image/PictureSample.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <vector>

namespace {

using Cell = PictureSample::Cell;

constexpr double DarkestShare = 0.05;   ///< left out of the grey world
constexpr double BrightestShare = 0.02; ///< left out of the grey world

double Power(double base, int exponent)
{
    double power = 1.0;
    for (; exponent > 0; exponent >>= 1, base *= base)
        if (exponent & 1)
            power *= base;
    return power;
}

/// A mean of each channel that large values weigh more in, the higher its order; 1 is the common mean. The
/// number of values is left out, for it is the same in all channels.
class MinkowskiMean
{
public:
    explicit MinkowskiMean(int order) : m_order(order) {}

    /// Values 0..1, so that high orders stay in range.
    void Add(double r, double g, double b)
    {
        m_r += Power(r, m_order);
        m_g += Power(g, m_order);
        m_b += Power(b, m_order);
    }

    Illuminant Result() const { return {Root(m_r), Root(m_g), Root(m_b)}; }

private:
    double Root(double sum) const { return std::pow(sum, 1.0 / m_order); }

    const int m_order;
    double m_r = 0;
    double m_g = 0;
    double m_b = 0;
};

Illuminant GreyWorld(const PictureSample& sample)
{
    std::vector<Cell> cells;
    cells.reserve(sample.Cells().size());
    std::copy_if(sample.Cells().begin(), sample.Cells().end(), std::back_inserter(cells),
                 [](const Cell& cell) { return !cell.IsClipped(); });
    std::stable_sort(cells.begin(), cells.end(),
                     [](const Cell& a, const Cell& b) { return a.Luma() < b.Luma(); });
    const auto count = double(cells.size());
    MinkowskiMean mean(1);
    std::for_each(cells.begin() + std::ptrdiff_t(count * DarkestShare),
                  cells.end() - std::ptrdiff_t(count * BrightestShare),
                  [&mean](const Cell& cell) { mean.Add(cell.r, cell.g, cell.b); });
    return mean.Result();
}

Illuminant ShadesOfGrey(const PictureSample& sample, int order)
{
    MinkowskiMean mean(order);
    for (const Cell& cell : sample.Cells())
        if (!cell.IsClipped())
            mean.Add(cell.r / 255.0, cell.g / 255.0, cell.b / 255.0);
    return mean.Result();
}

Illuminant GreyEdge(const PictureSample& sample, int order)
{
    MinkowskiMean mean(order);
    const auto steepness = [](float here, float right, float below) {
        return std::hypot(right - here, below - here) / (255.0 * 2.0);
    };
    for (int y = 0; y + 1 < sample.Height(); ++y)
        for (int x = 0; x + 1 < sample.Width(); ++x) {
            const Cell& here = sample.At(x, y);
            const Cell& right = sample.At(x + 1, y);
            const Cell& below = sample.At(x, y + 1);
            if (!here.IsClipped() && !right.IsClipped() && !below.IsClipped())
                mean.Add(steepness(here.r, right.r, below.r), steepness(here.g, right.g, below.g),
                         steepness(here.b, right.b, below.b));
        }
    return mean.Result();
}

double MedianOf(std::vector<double> values)
{
    const auto middle = values.begin() + std::ptrdiff_t(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    if (values.size() % 2 != 0)
        return *middle;
    return (*middle + *std::max_element(values.begin(), middle)) / 2;
}

} // namespace

std::optional<Illuminant> Illuminant::Of(const PictureSample& sample)
{
    std::vector<double> red;
    std::vector<double> blue;
    for (const Illuminant& opinion : {GreyWorld(sample), ShadesOfGrey(sample, 6), ShadesOfGrey(sample, 10),
                                      GreyEdge(sample, 1), GreyEdge(sample, 5)})
        if (opinion.r > 0.0 && opinion.g > 0.0 && opinion.b > 0.0) {
            red.push_back(std::log(opinion.r / opinion.g));
            blue.push_back(std::log(opinion.b / opinion.g));
        }
    if (red.empty())
        return std::nullopt;
    return Illuminant{std::exp(MedianOf(red)), 1.0, std::exp(MedianOf(blue))};
}
