#pragma once

#include "image/KVImage.h"

class QPoint;
class QRect;

/// Fills the area of one colour that a pixel belongs to.
class YDFloodFillHelper
{
public:
    /// Lays `color` over the connected area of `image` that holds `start`, in place, on all cores.
    ///
    /// The area is of pixels that are neighbours above, below, left or right and whose red, green and blue
    /// each lie at most as far from those of the start pixel, as it was before, as `tolerance` says for that
    /// channel; alpha takes no part in the match. The colour is laid over the pixels by its
    /// own alpha, as FillRule does it.
    ///
    /// `changed`, if not null, becomes the smallest rectangle around the area, whatever colours its pixels
    /// had before; it is empty where nothing is laid over: for a colour with alpha 0, and where the answer is
    /// false. That is so if `start` lies outside the picture, an empty one included, or there is no memory;
    /// the image is untouched then.
    ///
    /// Time and memory are in proportion to the area, not to the picture, but for a byte for each 4096 of its
    /// pixels. May be called from a task of the global thread pool.
    static bool FloodFill(RGBA32iImage& image, const QPoint& start, const YDRGBA32i& tolerance,
                          const YDRGBA32i& color, QRect* changed);
};
