#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

/// Where on a picture an overlay may stand.
namespace OverlayArea {

/// What margins leave of a picture; empty if they leave nothing.
///
/// `margins` holds four numbers of pixels, its left, top, right and bottom, and is no rectangle. Any numbers
/// are allowed; those below 0 count as 0.
QRect Inside(const QRect& margins, const QSize& picture);

/// Where the upper left corner of something of `size`, which fits into `area`, stands as `alignment` has it.
///
/// Of two horizontal flags Qt::AlignLeft comes before Qt::AlignHCenter and that before Qt::AlignRight, of two
/// vertical ones Qt::AlignTop before Qt::AlignVCenter and that before Qt::AlignBottom; without any it is left
/// and top. An odd pixel is on the right of what is centred, and below.
QPoint Aligned(int alignment, const QSize& size, const QRect& area);

/// The middle of part `index` of `count` equal parts of the `length` pixels from `start`, rounded to the
/// nearest edge of a pixel, halves up.
int MiddleOfPart(int index, int count, int start, int length);

} // namespace OverlayArea
