#pragma once

#include "image/YDRGBA32i.h"

/// Porter and Duff's "source over destination" for colours that are not multiplied by their alpha, in whole
/// numbers and rounded to nearest, halves up.
inline YDRGBA32i LaidOver(const YDRGBA32i& source, const YDRGBA32i& destination)
{
    const unsigned above = source.a * 255u;
    const unsigned below = destination.a * (255u - source.a);
    const unsigned both = above + below;
    if (both == 0)
        return destination;
    const auto mix = [=](unsigned over, unsigned under) {
        return quint8((over * above + under * below + both / 2) / both);
    };
    return {mix(source.b, destination.b), mix(source.g, destination.g), mix(source.r, destination.r),
            quint8((both + 127) / 255)};
}
