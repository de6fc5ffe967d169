#pragma once

#include "image/KVImage.h"

#include <QPoint>
#include <QRect>

#include <atomic>

namespace operations {
class TaskProgress;
}

/// What every job of an adjustment begins with: the picture, what limits the adjustment, and how the job is
/// stopped and watched. A job owns what it works on and reads nothing of a widget.
struct YDAdjustmentJob
{
    RGBA32iImage image; ///< the pixels to adjust, changed in place
    /// What the image is to be made from, where the job begins with a copy: of the same size, while the image
    /// may hold anything yet. Empty where the image has its pixels.
    RGBA32iImage source;
    RGBA32iImage secondImage;    ///< for adjustments that need another picture; empty otherwise
    RGBA32iImage selection;      ///< mask, coverage in all four channels; empty without a selection
    QRect selectionBoundingRect; ///< empty: no selection, the whole picture is adjusted
    QPoint selectionOffset;      ///< where the mask's upper left corner lies in the picture

    const std::atomic<bool>* abort = nullptr;     ///< tells a job to stop at the next row; null: never
    operations::TaskProgress* progress = nullptr; ///< hears how far the job is; outlives it; null: nobody

    /// The pixels as they are before the first pass.
    const RGBA32iImage& Pixels() const { return source.IsEmpty() ? image : source; }
};
