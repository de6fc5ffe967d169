#include "overlay/OverlayArea.h"

#include <Qt>

#include <algorithm>

namespace {

/// Where something begins that takes `size` of the `length` pixels from `start`.
int Begin(bool isFirst, bool isCentred, bool isLast, int start, int length, int size)
{
    if (isFirst || (!isCentred && !isLast))
        return start;
    return isCentred ? start + (length - size) / 2 : start + length - size;
}

} // namespace

QRect OverlayArea::Inside(const QRect& margins, const QSize& picture)
{
    const auto margin = [](int pixels) { return std::max<qint64>(pixels, 0); };
    const qint64 left = margin(margins.left());
    const qint64 top = margin(margins.top());
    const qint64 width = picture.width() - left - margin(margins.right());
    const qint64 height = picture.height() - top - margin(margins.bottom());
    if (width < 1 || height < 1)
        return {};
    return {int(left), int(top), int(width), int(height)};
}

QPoint OverlayArea::Aligned(int alignment, const QSize& size, const QRect& area)
{
    const auto has = [alignment](Qt::AlignmentFlag flag) { return (alignment & flag) != 0; };
    return {Begin(has(Qt::AlignLeft), has(Qt::AlignHCenter), has(Qt::AlignRight), area.left(), area.width(),
                  size.width()),
            Begin(has(Qt::AlignTop), has(Qt::AlignVCenter), has(Qt::AlignBottom), area.top(), area.height(),
                  size.height())};
}

int OverlayArea::MiddleOfPart(int index, int count, int start, int length)
{
    return start + int(((2 * qint64(index) + 1) * length + count) / (2 * qint64(count)));
}
