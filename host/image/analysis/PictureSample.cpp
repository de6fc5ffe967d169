#include "image/PictureSample.h"

#include "threads/ParallelRows.h"

#include <QRect>

#include <algorithm>

namespace {

constexpr int PixelsPerCellSide = 4; ///< that are looked at
constexpr int RowsPerBand = 8;

int CeilDiv(int dividend, int divisor) { return dividend / divisor + (dividend % divisor != 0 ? 1 : 0); }

/// Pixels from the first that is looked at in a cell to the next, in both directions.
int StepOf(int cellSide) { return CeilDiv(cellSide, PixelsPerCellSide); }

PictureSample::Cell MeanOf(const RGBA32iImage& picture, const QRect& square, int step)
{
    int b = 0;
    int g = 0;
    int r = 0;
    int count = 0;
    for (int y = square.top(); y <= square.bottom(); y += step) {
        const YDRGBA32i* const row = picture.Row(y);
        for (int x = square.left(); x <= square.right(); x += step) {
            b += row[x].b;
            g += row[x].g;
            r += row[x].r;
            ++count;
        }
    }
    const float share = 1.0f / float(count);
    return {float(b) * share, float(g) * share, float(r) * share};
}

} // namespace

PictureSample::PictureSample(const RGBA32iImage& picture)
{
    if (picture.IsEmpty())
        return;
    const int side = CeilDiv(std::max(picture.Width(), picture.Height()), MostCells);
    const int step = StepOf(side);
    m_width = CeilDiv(picture.Width(), side);
    m_height = CeilDiv(picture.Height(), side);
    m_cells.resize(std::size_t(m_width) * std::size_t(m_height));
    const QRect whole(0, 0, picture.Width(), picture.Height());
    ForEachRowBand(0, m_height, RowsPerBand, nullptr, [&](int first, int last) {
        for (int y = first; y < last; ++y)
            for (int x = 0; x < m_width; ++x)
                m_cells[std::size_t(y) * std::size_t(m_width) + std::size_t(x)] =
                    MeanOf(picture, QRect(x * side, y * side, side, side) & whole, step);
    });
}
