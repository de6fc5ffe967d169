#include "image/YDSelectionArea.h"

#include <algorithm>

namespace {

/// A rectangle in 64 bits: a stored selection may lie anywhere, and moving it must not overflow.
struct WideRect
{
    qint64 left;
    qint64 top;
    qint64 right; ///< one past the last column
    qint64 bottom;

    explicit WideRect(const QRect& rect)
        : left(rect.left()), top(rect.top()), right(qint64(rect.right()) + 1),
          bottom(qint64(rect.bottom()) + 1)
    {}

    WideRect MovedBy(qint64 dx, qint64 dy) const
    {
        WideRect moved = *this;
        moved.left += dx;
        moved.right += dx;
        moved.top += dy;
        moved.bottom += dy;
        return moved;
    }

    /// The part inside (0, 0, width, height); an empty rectangle at (0, 0) if there is none.
    QRect ClippedTo(const RGBA32iImage& image) const
    {
        const qint64 x0 = std::max<qint64>(left, 0);
        const qint64 y0 = std::max<qint64>(top, 0);
        const qint64 x1 = std::min<qint64>(right, image.Width());
        const qint64 y1 = std::min<qint64>(bottom, image.Height());
        if (x0 >= x1 || y0 >= y1)
            return {};
        return {int(x0), int(y0), int(x1 - x0), int(y1 - y0)};
    }
};

} // namespace

YDSelectionArea::YDSelectionArea(const RGBA32iImage& picture, const RGBA32iImage& mask, const QPoint& offset,
                                 const QRect& bounds)
{
    const WideRect area(bounds);
    const qint64 dx = offset.x();
    const qint64 dy = offset.y();
    m_covered = area.MovedBy(dx, dy).ClippedTo(picture);
    // Where the selection begins left of or above the picture, the mask is read from further inside.
    const QRect read = area.MovedBy(std::max<qint64>(-dx, 0), std::max<qint64>(-dy, 0)).ClippedTo(mask);
    m_mask = read.topLeft();
    m_width = std::min(m_covered.width(), read.width());
    m_height = std::min(m_covered.height(), read.height());
}
