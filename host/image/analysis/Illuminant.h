#pragma once

#include <optional>

class PictureSample;

/// The colour of the light that a picture was taken in, as far as its pixels tell: what a grey surface looks
/// like in it. Only the proportions count.
struct Illuminant
{
    double r = 1;
    double g = 1;
    double b = 1;

    /// An estimate from the encoded levels, in which a colour cast is a factor for each channel. Nothing
    /// where no estimate can be had: an empty picture, or one whose channels are all dark or clipped.
    ///
    /// Five estimators give their opinion, each of which errs on other pictures, and for red and for blue,
    /// both in proportion to green, the median of the opinions counts. They are members of the family in van
    /// de Weijer, Gevers, Gijsenij, "Edge-Based Color Constancy", IEEE Trans. Image Processing 16(9), 2007:
    /// the mean of the levels, without the darkest and the brightest ("grey world"), their Minkowski means of
    /// orders 6 and 10 ("shades of grey"), and those of the differences between neighbours, orders 1 and 5
    /// ("grey edge").
    static std::optional<Illuminant> Of(const PictureSample& sample);
};
