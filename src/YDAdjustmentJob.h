#pragma once

#include "image/KVImage.h"

#include <QPoint>
#include <QRect>

#include <atomic>

class YDAdjustmentWidget;

/// What every job of an adjustment begins with; each adjustment's own record derives from it and adds
/// the parameters. A job owns what it works on and reads nothing of its widget.
struct YDAdjustmentJob
{
    RGBA32iImage image;          ///< the pixels to adjust, changed in place
    RGBA32iImage secondImage;    ///< for adjustments that need another picture; empty otherwise
    RGBA32iImage selection;      ///< mask, coverage in all four channels; empty without a selection
    QRect selectionBoundingRect; ///< empty: no selection, the whole picture is adjusted
    QPoint selectionOffset;      ///< where the bounding rectangle's origin lies in the picture

    const std::atomic<bool>* abort = nullptr; ///< tells a job to stop at the next row; null: never
    YDAdjustmentWidget* listener = nullptr;   ///< receives the progress, queued; outlives the job
};
