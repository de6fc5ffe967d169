#pragma once

#include "YDAdjustmentJob.h"
#include "adjustmentgui_export.h"

/// Lays `adjusted` over the job's picture with `opacity`, 0 (the picture) .. 256 (`adjusted`), and through
/// the job's selection, whose bounding rectangle is not empty. Both pictures are of the same size and have
/// the same alpha, which stays: colours are mixed as those of opaque pixels.
///
/// Stops at a row once the job is aborted. May be called from a task of the global thread pool.
ADJUSTMENTGUI_EXPORT void MixThroughSelection(const YDAdjustmentJob& job, const RGBA32iImage& adjusted,
                                              int opacity);
