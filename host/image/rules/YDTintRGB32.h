#pragma once

#include "image/ChannelTablesTransformation.h"

/// Maps each channel onto the ramp from that of a black tone to that of a white tone, and mixes it with the
/// channel; alpha stays. A pixel functor, and with its row form also all of the vector path.
class YDTintRGB32 : public ChannelTablesTransformation
{
public:
    /// `amount` in 0..100 per cent; a value outside counts as the nearest bound. Of the tones, alpha is not
    /// used.
    YDTintRGB32(QRgb blackTone, QRgb whiteTone, int amount);

    void operator()(YDRGBA32i& pixel) const { Map(pixel); }
};
