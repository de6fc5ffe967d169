#pragma once

#include "image/KVImage.h"

#include <cstddef>
#include <vector>

/// A picture in at most 65536 cells, for those who look at it as a whole: cheap to walk over, and without the
/// noise that single pixels have.
class PictureSample
{
public:
    /// The longer side has this many cells at most.
    static constexpr int MostCells = 256;

    /// The mean colour of a cell, 0..255.
    struct Cell
    {
        float b = 0;
        float g = 0;
        float r = 0;

        float Luma() const { return 0.2126f * r + 0.7152f * g + 0.0722f * b; }
        /// Whether a channel is so bright that what it was in the scene is lost.
        bool IsClipped() const { return b >= ClippedLevel || g >= ClippedLevel || r >= ClippedLevel; }
        /// Whether that is so of all of them.
        bool IsWhite() const { return b >= ClippedLevel && g >= ClippedLevel && r >= ClippedLevel; }
    };

    /// The cells of `picture`, on all cores: each the mean of up to sixteen pixels spread over its square,
    /// a picture's own pixels where it is small. Alpha takes no part.
    explicit PictureSample(const RGBA32iImage& picture);

    int Width() const { return m_width; }
    int Height() const { return m_height; }
    const Cell& At(int x, int y) const
    {
        return m_cells[static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) +
                       static_cast<std::size_t>(x)];
    }
    const std::vector<Cell>& Cells() const { return m_cells; }

private:
    static constexpr float ClippedLevel = 252;

    int m_width = 0;
    int m_height = 0;
    std::vector<Cell> m_cells;
};
