#include "image/YDFloodFillHelper.h"

#include "image/FloodFill.h"

#include <QPoint>
#include <QRect>

bool YDFloodFillHelper::FloodFill(RGBA32iImage& image, const QPoint& start, const YDRGBA32i& tolerance,
                                  const YDRGBA32i& color, QRect* changed)
{
    if (changed)
        *changed = QRect();
    if (!QRect(0, 0, image.Width(), image.Height()).contains(start))
        return false;
    if (color.a == 0)
        return true;
    const ColorRange range = ColorRange::Around(image.Row(start.y())[start.x()], tolerance);
    ::FloodFill fill(image, start, range, FillRule{color});
    if (!fill.IsReady())
        return false;
    const QRect painted = fill.Run();
    if (changed)
        *changed = painted;
    return true;
}
