#pragma once

#include "YDAdjustmentJob.h"
#include "image/RulePass.h"

/// The pass over a job's picture that makes it from the job's source and keeps to its selection.
inline RulePass PassOver(const YDAdjustmentJob& job)
{
    return {job.image, job.source, job.selection, job.selectionOffset, job.selectionBoundingRect};
}
