#pragma once

#include "YDAdjustmentJob.h"
#include "adjustmentgui_operations_export.h"

/// Lays `adjusted`, a picture of the same size, over the job's picture with `opacity`, 0 (the picture) .. 256
/// (`adjusted`), and through the job's selection, whose bounding rectangle is not empty. The job's picture
/// keeps its alpha (YDBlend::YDSourceOver).
///
/// Stops at a row once the job is aborted. May be called from a task of the global thread pool.
ADJUSTMENTGUI_OPERATIONS_EXPORT void MixThroughSelection(const YDAdjustmentJob& job,
                                                         const RGBA32iImage& adjusted, int opacity);
