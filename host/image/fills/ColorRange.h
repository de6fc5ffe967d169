#pragma once

#include "image/YDRGBA32i.h"

#include <algorithm>

/// The colours that are near another one, channel by channel; alpha takes no part.
struct ColorRange
{
    YDRGBA32i lowest; ///< its alpha is 0 and that of `extent` 255, so that every alpha is in the range
    YDRGBA32i extent; ///< how far a channel may lie above the lowest

    /// The colours whose red, green and blue are at most those of `tolerance` away from those of `color`.
    static ColorRange Around(const YDRGBA32i& color, const YDRGBA32i& tolerance)
    {
        ColorRange range{{0, 0, 0, 0}, {0, 0, 0, 255}};
        const auto bound = [](quint8 channel, quint8 far, quint8& low, quint8& width) {
            low = static_cast<quint8>(std::max(channel - far, 0));
            width = static_cast<quint8>(std::min(channel + far, 255) - low);
        };
        bound(color.b, tolerance.b, range.lowest.b, range.extent.b);
        bound(color.g, tolerance.g, range.lowest.g, range.extent.g);
        bound(color.r, tolerance.r, range.lowest.r, range.extent.r);
        return range;
    }

    bool Holds(const YDRGBA32i& color) const
    {
        // A channel below the lowest wraps round to one that is far above it.
        return static_cast<quint8>(color.b - lowest.b) <= extent.b &&
               static_cast<quint8>(color.g - lowest.g) <= extent.g &&
               static_cast<quint8>(color.r - lowest.r) <= extent.r;
    }
};
