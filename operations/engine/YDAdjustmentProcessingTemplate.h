#pragma once

#include "YDTileRunner.h"

/// Runs a copy of the iterative transformation `T` over a job: a BaseTransformation that is copyable and
/// has `void ProcessPixel(qsizetype index) const`.
template <class T>
class YDAdjustmentProcessingTemplate : public YDTileRunner
{
public:
    /// `abort` may be null and must outlive the object. The work is shared out as for so many `cores`.
    YDAdjustmentProcessingTemplate(const std::atomic<bool>* abort, const T& transformation,
                                   int cores = YDTileRunner::CoresOfMachine())
        : YDTileRunner(abort, cores), m_transformation(transformation)
    {}

protected:
    BaseTransformation& Transformation() override { return m_transformation; }

    void TransformRows(YDRowQueue& rows, const RGBA32iImage& image, int left, int right) override
    {
        T transformation = m_transformation;
        transformation.SetProcessingBuffer(image.Pixels());
        for (int row = 0; rows.Take(row);) {
            const qsizetype start = qsizetype(row) * image.RowLength();
            for (qsizetype index = start + left; index <= start + right; ++index)
                transformation.ProcessPixel(index);
            IncrementProgress();
        }
    }

private:
    T m_transformation;
};
