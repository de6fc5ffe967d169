#pragma once

#include "image/VectorKernels.h"
#include "image/YDRGBA32i.h"

/// The constant and the pixel form of KVFillTransformation: one colour laid over every pixel.
///
/// Porter and Duff's "source over destination", for colours that are not multiplied by their alpha (T.
/// Porter, T. Duff, "Compositing Digital Images", SIGGRAPH 1984). No number exceeds 24 bits. All four
/// channels are rounded to nearest, halves up.
struct FillRule
{
    static constexpr auto Kernel = VectorKernels::FillRow;
    static constexpr unsigned Opaque = 255;

    YDRGBA32i fill; ///< by its alpha

    void operator()(YDRGBA32i& pixel) const
    {
        const unsigned over = fill.a * Opaque;
        const unsigned under = pixel.a * (Opaque - fill.a);
        const unsigned both = over + under;
        if (both == 0)
            return;
        const auto mix = [=](unsigned above, unsigned below) {
            return static_cast<quint8>((above * over + below * under + both / 2) / both);
        };
        pixel.b = mix(fill.b, pixel.b);
        pixel.g = mix(fill.g, pixel.g);
        pixel.r = mix(fill.r, pixel.r);
        pixel.a = static_cast<quint8>((both + Opaque / 2) / Opaque);
    }
};
