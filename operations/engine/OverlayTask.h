#pragma once

#include "operations/Task.h"
#include "overlay/OverlayCanvas.h"

namespace operations {

/// The task of an adjustment that draws. `draw(canvas)` draws on the picture, or leaves it and says why; what
/// is empty there is no problem.
template <class Draw>
Task OverlayTask(const Draw& draw)
{
    return Task(
        [draw](const YDAdjustmentJob& job) {
            const OverlayCanvas canvas(job.image, job.selection, job.selectionOffset,
                                       job.selectionBoundingRect, job.abort, job.source);
            return Outcome(job.image, draw(canvas));
        },
        Task::Copying::InFirstPass);
}

} // namespace operations
