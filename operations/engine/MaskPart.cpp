#include "MaskPart.h"

#include "image/YDSelectionArea.h"

MaskPart MaskPart::Of(const YDAdjustmentJob& job)
{
    const YDSelectionArea area(job.image, job.selection, job.selectionOffset, job.selectionBoundingRect);
    if (area.Width() == 0 || area.Height() == 0)
        return {};
    return {area.MaskRow(job.selection, 0), area.Width(), area.Height(), area.Covered().topLeft()};
}
