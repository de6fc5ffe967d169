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

/// Lays one pixel over another, the way `Mode` mixes their colours.
template <int Mode>
struct YDSourceOver;

/// Normal mixing: the colour of the source over that of the destination, as far as `opacity` says. The
/// destination keeps its alpha, and the source's takes no part.
///
/// `(source * opacity + destination * (256 - opacity)) / 256`, rounded to nearest, halves up: opacity 256
/// gives the source's colour, 0 the destination's.
template <>
struct YDSourceOver<0>
{
    static constexpr int Full = 256;

    int opacity = Full; ///< 0..256

    /// Lays `source` over `destination`.
    void operator()(const YDRGBA32i& source, YDRGBA32i& destination) const
    {
        const auto over = quint32(opacity);
        const auto mix = [over](quint32 above, quint32 below) {
            return static_cast<quint8>((above * over + below * (Full - over) + Full / 2) / Full);
        };
        destination.b = mix(source.b, destination.b);
        destination.g = mix(source.g, destination.g);
        destination.r = mix(source.r, destination.r);
    }

    /// The same for `count` pixels of two rows, with the vector instructions at hand. The rows must not
    /// overlap.
    void ProcessRow(const YDRGBA32i* source, YDRGBA32i* destination, int count) const;
};

} // namespace YDBlend
