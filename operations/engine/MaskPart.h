#pragma once

#include "YDAdjustmentJob.h"
#include "adjustmentgui_operations_export.h"

/// The part of a selection's mask that counts, and where it lies in the picture.
struct ADJUSTMENTGUI_OPERATIONS_EXPORT MaskPart
{
    const YDRGBA32i* pixels = nullptr; ///< null: none
    int width = 0;
    int height = 0;
    QPoint place;

    /// Of a job with a selection; none where that misses the picture or its mask.
    static MaskPart Of(const YDAdjustmentJob& job);
};
