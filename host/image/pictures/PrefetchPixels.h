#pragma once

#include "image/YDRGBA32i.h"

#include <algorithm>

/// Asks for `count` pixels that lie `ahead` of `pixels`, as far as the memory before `end` goes, for a loop
/// that comes to them soon.
///
/// Always inlined: of a call, the compiler would see that it has no result, and drop it.
[[gnu::always_inline]] inline void PrefetchPixels(const YDRGBA32i* pixels, qsizetype ahead, qsizetype count,
                                                  const YDRGBA32i* end)
{
    constexpr qsizetype PixelsOfCacheLine = 64 / sizeof(YDRGBA32i);
    const qsizetype last = std::min(ahead + count, qsizetype(end - pixels));
    for (qsizetype x = ahead; x < last; x += PixelsOfCacheLine)
        __builtin_prefetch(pixels + x);
}
