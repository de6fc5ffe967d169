#pragma once

#include "image/KVImage.h"

#include <QRandomGenerator>

#include <algorithm>
#include <cstring>

/// Pictures for tests.
namespace TestPictures {

/// Opaque colours at random, the same every time.
inline RGBA32iImage Noise(int width, int height)
{
    QRandomGenerator random(1);
    const RGBA32iImage image(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            image.Row(y)[x] = YDRGBA32i(random.generate() | 0xff000000u);
    return image;
}

/// Every channel of every pixel at random, alpha too.
inline RGBA32iImage Random(int width, int height, quint32 seed)
{
    QRandomGenerator random(seed);
    const RGBA32iImage image(width, height);
    for (int y = 0; y < image.Height(); ++y)
        for (int x = 0; x < image.Width(); ++x)
            image.Row(y)[x] = YDRGBA32i(random.generate());
    return image;
}

inline RGBA32iImage Grey(int width, int height, int value)
{
    const RGBA32iImage image(width, height);
    const auto grey = quint8(value);
    for (int y = 0; y < height; ++y)
        std::fill_n(image.Row(y), width, YDRGBA32i(grey, grey, grey, 255));
    return image;
}

inline bool AreEqual(const RGBA32iImage& a, const RGBA32iImage& b)
{
    if (a.Width() != b.Width() || a.Height() != b.Height())
        return false;
    for (int y = 0; y < a.Height(); ++y)
        if (std::memcmp(a.Row(y), b.Row(y), std::size_t(a.Width()) * sizeof(YDRGBA32i)) != 0)
            return false;
    return true;
}

} // namespace TestPictures
