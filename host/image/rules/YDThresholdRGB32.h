#pragma once

#include "image/Luma709.h"

/// Black and white: a pixel whose Luma709 is the level or more becomes white, any other black; alpha stays.
///
/// Any level: from 0 downwards everything is white, above 255 everything black.
class YDThresholdRGB32
{
public:
    void SetLevel(int level) { m_level = level; }

    void operator()(YDRGBA32i& pixel) const
    {
        const quint8 grey = Luma709::Of(pixel) >= m_level ? 255 : 0;
        pixel = YDRGBA32i(grey, grey, grey, pixel.a);
    }

    /// The same for a block of eight pixels, 32 bytes at any address.
    void operator()(unsigned char* pixels, bool aligned) const;

    /// The same for `count` pixels, with the vector instructions at hand.
    void ProcessRow(YDRGBA32i* row, int count) const;

private:
    int m_level = 128;
};
