#pragma once

#include <QPointF>
#include <QRectF>
#include <QSize>

/// A drag that draws a selection: from its start to the mouse, in picture coordinates.
struct SelectionDrag
{
    QPointF start;
    QPointF end;
    bool isSquare = false; ///< sides of the same length

    /// The whole pixels that the drag touches, inside a picture of this size; a drag along a pixel's edge
    /// touches the pixel right of it or below. Empty where the drag misses the picture.
    QRectF Area(const QSize& picture) const;
};
