#pragma once

#include "image/ChannelTablesTransformation.h"

/// Mixes each level with its negative: `v' = v + (255 - 2 * v) * amount / 100`.
class YDIterative@Name@Transformation : public ChannelTablesTransformation
{
public:
    /// `amount` in 0..100; a value outside counts as the nearest bound. 0 is the identity.
    explicit YDIterative@Name@Transformation(int amount);
};
