#pragma once

#include "image/ChannelTablesTransformation.h"

/// A power law on the encoded levels: `v' = 255 * (v / 255)^(1 / g)`, so that values above 1 brighten.
class YDIterativeGammaCorrectionTransformation : public ChannelTablesTransformation
{
public:
    /// `gamma` in 0.01..5; a value outside counts as the nearest bound, one that is not a number as 1.
    explicit YDIterativeGammaCorrectionTransformation(double gamma);
};
