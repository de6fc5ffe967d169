#pragma once

#include "image/YDRGBA32i.h"

class QColor;

/// The pixel that lays `color` over others at `opacity` per cent: the colour's own alpha gives way to
/// opacity x 255 / 100, truncated. An opacity outside 0..100 counts as the nearest bound, and a stored colour
/// may be any.
[[nodiscard]] YDRGBA32i ColorAtOpacity(const QColor& color, int opacity);
