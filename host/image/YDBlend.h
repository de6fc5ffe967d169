#pragma once

#include "image/YDRGBA32i.h"

/// How two pixels become one.
namespace YDBlend {

/// Lets the adjusted pixel through as far as the selection covers it.
///
/// `dst + (src - dst) * coverage / 255`, rounded to nearest, for all four channels: coverage 0 keeps the
/// destination, 255 replaces it. A mask holds its coverage in all four channels; the alpha is what is read.
struct YDSourceBySelection
{
    /// Blends `source` into `destination` by the coverage of `mask`.
    void operator()(const YDRGBA32i& source, YDRGBA32i& destination, const YDRGBA32i& mask) const
    {
        destination.b = Mix(source.b, destination.b, mask.a);
        destination.g = Mix(source.g, destination.g, mask.a);
        destination.r = Mix(source.r, destination.r, mask.a);
        destination.a = Mix(source.a, destination.a, mask.a);
    }

    /// The same for `count` pixels of three rows, with the vector instructions at hand. The rows must not
    /// overlap.
    static void ProcessRow(const YDRGBA32i* source, YDRGBA32i* destination, const YDRGBA32i* mask, int count);

private:
    static quint8 Mix(unsigned source, unsigned destination, unsigned coverage)
    {
        // (x + 128 + ((x + 128) >> 8)) >> 8 is x / 255 rounded to nearest for every x up to 255 * 255; no
        // tie can occur, as 255 is odd.
        const unsigned sum = source * coverage + destination * (255 - coverage) + 128;
        return static_cast<quint8>((sum + (sum >> 8)) >> 8);
    }
};

} // namespace YDBlend
