#pragma once

#include "image/KVImage.h"

#include <QRect>

/// The pictures of one size that rows share.
struct BenchPictures
{
    int megapixels = 0;
    RGBA32iImage photograph; ///< never written to
    RGBA32iImage work;       ///< to be changed in place; Restore() makes it the photograph again
    RGBA32iImage reference;  ///< what the reference pass runs over
    RGBA32iImage mask;       ///< a feathered ellipse as wide and high as the picture

    /// A photograph of Debian's package lomiri-wallpapers-16.04, scaled, with a little noise so that no two
    /// pixels are alike for long; a drawn one where the package is missing. Made at the first call for a
    /// size; the pictures of the size before go then. GUI thread.
    static const BenchPictures& OfSize(int megapixels);

    QRect Bounds() const { return {0, 0, photograph.Width(), photograph.Height()}; }
    void Restore() const;
};
