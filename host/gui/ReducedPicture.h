#pragma once

#include "image/KVImage.h"

#include <atomic>

/// A smaller copy of a picture for the screen: every pixel the average of a square block of pixels.
///
/// Blocks at the right and lower border, which the picture fills in part only, average what is there. The
/// channels are premultiplied with alpha, so that the colour of transparent pixels does not bleed; the
/// averages are rounded to nearest, halves up.
struct ReducedPicture
{
    RGBA32iImage pixels; ///< premultiplied; empty where there is no copy
    int factor = 1;      ///< side of a block, a power of two
    bool isOpaque = false;

    /// The largest factor that Reduce() takes: sums of larger blocks would not fit into 32 bits.
    static constexpr int LargestFactor = 128;

    /// The factor for a picture that is shown at `zoom` device pixels per picture pixel: the smallest that
    /// leaves half a device pixel or more to a pixel of the copy. 1 at half size and above.
    static int FactorForZoom(double zoom);

    /// The copy of `picture`, made on all cores; without pixels where `abort` was set meanwhile or no
    /// memory is to be had. May be called from a task of the global thread pool.
    static ReducedPicture Reduce(const RGBA32iImage& picture, int factor, const std::atomic<bool>* abort);
};
