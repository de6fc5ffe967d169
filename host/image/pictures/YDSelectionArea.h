#pragma once

#include "image/KVImage.h"

#include <QPoint>
#include <QRect>

/// Where a selection lies: in its picture, and in its mask.
class YDSelectionArea
{
public:
    /// `bounds`, which is not empty, is a part of the mask, whose origin lies at `offset` in the picture. Any
    /// of them may reach beyond the picture and the mask.
    YDSelectionArea(const RGBA32iImage& picture, const RGBA32iImage& mask, const QPoint& offset,
                    const QRect& bounds);

    /// The part of the picture that the moved bounding rectangle covers; empty if it misses the picture.
    const QRect& Covered() const { return m_covered; }

    /// What is blended through the mask: from the top left of the covered part as far as the mask reaches.
    int Width() const { return m_width; }
    int Height() const { return m_height; }

    /// The first pixel of row `row`, 0 at the top of the covered part, in a picture of the same size, and in
    /// the mask.
    YDRGBA32i* RowOf(const RGBA32iImage& picture, int row) const
    {
        return picture.Row(m_covered.top() + row) + m_covered.left();
    }
    const YDRGBA32i* MaskRow(const RGBA32iImage& mask, int row) const
    {
        return mask.Row(m_mask.y() + row) + m_mask.x();
    }

private:
    QRect m_covered;
    QPoint m_mask;
    int m_width = 0;
    int m_height = 0;
};
