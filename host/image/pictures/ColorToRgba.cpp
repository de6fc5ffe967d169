#include "image/ColorToRgba.h"

#include <QColor>
#include <QRgba64>

#include <algorithm>
#include <limits>

namespace {

quint16 Level(double component)
{
    if (!(component > 0.0)) // neither is what is no number
        return 0;
    return quint16(qRound(std::min(component, 1.0) * std::numeric_limits<quint16>::max()));
}

} // namespace

QRgb ColorToRgba(const QColor& color)
{
    const int model = color.spec();
    if (model < QColor::Invalid || model > QColor::ExtendedRgb)
        return qRgba(0, 0, 0, color.alpha());
    if (model != QColor::ExtendedRgb)
        return color.rgba();
    // By way of 16 bits, and rounded again, as QColor does it.
    return QRgba64::fromRgba64(Level(color.redF()), Level(color.greenF()), Level(color.blueF()),
                               Level(color.alphaF()))
        .toArgb32();
}
