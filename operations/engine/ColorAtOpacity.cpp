#include "ColorAtOpacity.h"

#include "image/ColorToRgba.h"
#include "image/Percent.h"

YDRGBA32i ColorAtOpacity(const QColor& color, int opacity)
{
    constexpr int FullAlpha = 255;
    YDRGBA32i pixel(ColorToRgba(color));
    pixel.a = quint8(qBound(0, opacity, FullPercent) * FullAlpha / FullPercent);
    return pixel;
}
