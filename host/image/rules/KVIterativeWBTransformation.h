#pragma once

#include "image/ChannelTablesTransformation.h"
#include "image/KVImage.h"
#include "image/KVWBTransformation.h"

/// White balance: looks at a picture when it is made, and then maps each channel by a table of its own.
class KVIterativeWBTransformation : public ChannelTablesTransformation
{
public:
    /// Analyses `image`, on all cores; its pixels are not changed and not kept. `strength` mixes the result
    /// with the original in per cent, 0..100; values outside count as the nearest bound. A function that
    /// there is not, and a picture that tells nothing, change nothing.
    KVIterativeWBTransformation(const RGBA32iImage& image, KVWBTransformation::BalanceFunction function,
                                int strength);
};
