#pragma once

#include "YDIterativeAdjustmentTransformation.h"

/// A tint functor as an iterative transformation. Its rows go through the functor's own row form:
/// YDAverageTintRGB32 and the host's YDTintRGB32 have one.
template <class Functor>
class YDIterativeTintTransformation : public YDIterativeAdjustmentTransformation<Functor>
{
public:
    explicit YDIterativeTintTransformation(const Functor& functor)
        : YDIterativeAdjustmentTransformation<Functor>(functor)
    {}
};
