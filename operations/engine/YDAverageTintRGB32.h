#pragma once

#include "image/VectorKernels.h"
#include "image/YDRGBA32i.h"
#include "utilities/AVX2LIB.h"

#include <algorithm>

/// Maps the brightness of a pixel onto the ramp from a black tone to a white tone, and mixes that with the
/// pixel; alpha stays.
///
/// The brightness is the sum of the channels by the weights, per mille, which sum to 1000. Every division
/// rounds down. No sum exceeds 255 * FullAmount, which an int holds.
template <int RedWeight, int GreenWeight, int BlueWeight>
class YDAverageTintRGB32
{
    static_assert(RedWeight >= 0 && GreenWeight >= 0 && BlueWeight >= 0 &&
                      RedWeight + GreenWeight + BlueWeight == 1000,
                  "the brightness of white is the whole");

public:
    /// The amount at which nothing of the pixel is left, and the brightness of white.
    static constexpr int FullAmount = 255000;

    /// `amount` in 0..FullAmount; a value outside counts as the nearest bound. Of the tones, alpha is not
    /// used.
    YDAverageTintRGB32(QRgb blackTone, QRgb whiteTone, int amount)
        : m_blackTone(blackTone), m_whiteTone(whiteTone), m_amount(std::clamp(amount, 0, FullAmount))
    {}

    void operator()(YDRGBA32i& pixel) const
    {
        const int level = RedWeight * pixel.r + GreenWeight * pixel.g + BlueWeight * pixel.b;
        pixel.b = Mix(pixel.b, m_blackTone.b, m_whiteTone.b, level);
        pixel.g = Mix(pixel.g, m_blackTone.g, m_whiteTone.g, level);
        pixel.r = Mix(pixel.r, m_blackTone.r, m_whiteTone.r, level);
    }

    /// `count` pixels in place, with the host's vector routine where there is one.
    void ProcessRow(YDRGBA32i* row, int count) const
    {
        static const auto routine = AVX2LIB::Find(VectorKernels::AverageTintAVX2);
        static constexpr int Weights[] = {RedWeight, GreenWeight, BlueWeight};
        if (routine)
            routine(row, count, Weights, m_blackTone, m_whiteTone, m_amount);
        else
            std::for_each(row, row + std::max(count, 0), *this);
    }

private:
    quint8 Mix(int channel, int black, int white, int level) const
    {
        const int tone = (white * level + black * (FullAmount - level)) / FullAmount;
        return static_cast<quint8>((tone * m_amount + channel * (FullAmount - m_amount)) / FullAmount);
    }

    YDRGBA32i m_blackTone;
    YDRGBA32i m_whiteTone;
    int m_amount;
};
