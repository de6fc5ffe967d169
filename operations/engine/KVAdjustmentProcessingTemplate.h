#pragma once

#include "YDAdjustmentProcessingTemplate.h"
#include "YDIterativeAdjustmentTransformation.h"

/// Runs a transformation that is not iterative, a pixel functor, over a job: the same engine as
/// YDAdjustmentProcessingTemplate.
template <class T>
class KVAdjustmentProcessingTemplate
    : public YDAdjustmentProcessingTemplate<YDIterativeAdjustmentTransformation<T>>
{
public:
    /// `abort` may be null and must outlive the object.
    KVAdjustmentProcessingTemplate(const std::atomic<bool>* abort, const T& transformation)
        : YDAdjustmentProcessingTemplate<YDIterativeAdjustmentTransformation<T>>(
              abort, YDIterativeAdjustmentTransformation<T>(transformation))
    {}
};
