#pragma once

#include "image/ChannelTablesTransformation.h"

/// Exposure in stops and an offset, both in linear light: the sRGB level is decoded, `x' = x * 2^e + o`
/// clamped to 0..1, and encoded again.
class YDIterativeExposureTransformation : public ChannelTablesTransformation
{
public:
    /// `exposure` in -20..20, `offset` in -0.5..0.5; values outside count as the nearest bound, one that is
    /// not a number as 0.
    YDIterativeExposureTransformation(double exposure, double offset);
};
