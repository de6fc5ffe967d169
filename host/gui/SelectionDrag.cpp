#include "gui/SelectionDrag.h"

#include <algorithm>
#include <cmath>

namespace {

/// One side of the drag, along one axis.
struct Side
{
    double anchor; ///< the pixel edge that stays where the drag began
    bool isForward;
    double length; ///< in whole pixels; 0 where the side misses the picture
    double room;   ///< the longest that the picture allows

    double First(double used) const { return isForward ? anchor : anchor - used; }
};

Side SideOf(double start, double end, int picture)
{
    const bool isForward = end >= start;
    const double edge = isForward ? std::floor(start) : std::ceil(start);
    const double anchor = std::clamp<double>(edge, 0, picture);
    const double room = isForward ? picture - anchor : anchor;
    const double reach = isForward ? end - anchor : anchor - end;
    const double length = reach < 0 ? 0 : std::max(std::ceil(reach), 1.0);
    return {anchor, isForward, std::min(length, room), room};
}

} // namespace

QRectF SelectionDrag::Area(const QSize& picture) const
{
    Side x = SideOf(start.x(), end.x(), picture.width());
    Side y = SideOf(start.y(), end.y(), picture.height());
    if (x.length <= 0 || y.length <= 0)
        return {};
    if (isSquare)
        x.length = y.length = std::min({std::max(x.length, y.length), x.room, y.room});
    return {x.First(x.length), y.First(y.length), x.length, y.length};
}
