#pragma once

#include "image/YDRGBA32i.h"

/// Counts pixels by the levels of their channels, one pixel a call, into three tables of 256 counts that the
/// caller keeps and has set to zero. ChannelHistograms counts whole pictures, and faster.
class KVRGBHistogram
{
public:
    KVRGBHistogram(quint32* red, quint32* green, quint32* blue) : m_red(red), m_green(green), m_blue(blue) {}

    void operator()(const YDRGBA32i& pixel) const
    {
        ++m_red[pixel.r];
        ++m_green[pixel.g];
        ++m_blue[pixel.b];
    }

private:
    quint32* m_red;
    quint32* m_green;
    quint32* m_blue;
};
