#pragma once

#include "image/ChannelTablesTransformation.h"

/// `n` equally wide bands of input levels onto `n` output levels, evenly spaced from 0 to 255:
/// `v' = floor(v * n / 256) * 255 / (n - 1)`.
class YDIterativePosterizeTransformation : public ChannelTablesTransformation
{
public:
    /// `levels` in 2..256; a value outside counts as the nearest bound. 256 is the identity.
    explicit YDIterativePosterizeTransformation(int levels);
};
