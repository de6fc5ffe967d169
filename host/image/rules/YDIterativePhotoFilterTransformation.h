#pragma once

#include "image/PhotoFilterRule.h"
#include "image/PixelRuleTransformation.h"

/// Looks at the picture through a coloured filter and restores its luma.
///
/// A channel of the filter's colour lets through its share of the colour's greatest channel, mixed with all
/// of the light by `density` per cent; so a grey filter, black too, changes nothing. What a filter takes from
/// a pixel's luma is given back by going straight towards white, which never leaves 0..255. Alpha stays.
class YDIterativePhotoFilterTransformation : public PixelRuleTransformation<PhotoFilterRule>
{
public:
    /// `density` in 0..100; a value outside counts as the nearest bound. The alpha of `color` is not used.
    YDIterativePhotoFilterTransformation(const YDRGBA32i& color, int density);
};
