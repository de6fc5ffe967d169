#pragma once

#include "editor/OpenedPicture.h"
#include "image/KVImage.h"

#include <QRandomGenerator>

#include <algorithm>

/// Pictures for tests.
namespace TestPictures {

inline RGBA32iImage Noise(int width, int height)
{
    QRandomGenerator random(1);
    const RGBA32iImage image(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            image.Row(y)[x] = YDRGBA32i(random.generate() | 0xff000000u);
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
        if (!std::equal(a.Row(y), a.Row(y) + a.Width(), b.Row(y)))
            return false;
    return true;
}

inline OpenedPicture Opened(const RGBA32iImage& picture,
                            const QString& path = QStringLiteral("/nowhere/a.png"))
{
    OpenedPicture opened;
    opened.path = path;
    opened.format = "png";
    opened.picture = picture;
    return opened;
}

} // namespace TestPictures
