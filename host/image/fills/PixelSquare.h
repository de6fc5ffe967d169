#pragma once

#include "image/BitSquare.h"
#include "image/ColorRange.h"
#include "image/FillRule.h"
#include "image/KVImage.h"

/// The pixels of a picture that a BitSquare has bits for.
class PixelSquare
{
public:
    /// The pixels from `corner` on, whose coordinates are multiples of BitSquare::Side inside of the picture,
    /// which must outlive this; fewer than a whole square at its right and lower edges.
    PixelSquare(const RGBA32iImage& image, const QPoint& corner);

    const QRect& Area() const { return m_area; }

    /// Bits for the pixels whose colour `range` holds. The memory of another square, the one that is worked
    /// on next, is asked for meanwhile if `next` is not null.
    BitSquare Match(const ColorRange& range, const PixelSquare* next) const;

    /// Applies `rule` to the pixels whose bits are set. Nobody else may touch any pixel of the square
    /// meanwhile.
    void Fill(const FillRule& rule, const BitSquare& bits) const;

private:
    void MatchPlainly(const ColorRange& range, BitSquare& matches) const;
    void FillPlainly(const FillRule& rule, const BitSquare& bits) const;

    QRect m_area;
    YDRGBA32i* m_pixels;
    int m_stride;
};
