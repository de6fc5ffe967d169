#pragma once

#include "YDAdjustmentProcessingTemplate.h"
#include "adjustmentgui_operations_export.h"

namespace operations {

/// Has the progress of `processing` told to whoever watches the job, from now on.
ADJUSTMENTGUI_OPERATIONS_EXPORT void TellProgress(const YDAdjustmentProcessing& processing,
                                                  const YDAdjustmentJob& job);

/// Runs `transformation` over a job, with its progress told to whoever watches the job; the job's picture.
template <template <class> class Processing = YDAdjustmentProcessingTemplate, class T>
RGBA32iImage RunTransformation(const YDAdjustmentJob& job, const T& transformation)
{
    Processing<T> processing(job.abort, transformation);
    TellProgress(processing, job);
    return processing.Run(job);
}

} // namespace operations
