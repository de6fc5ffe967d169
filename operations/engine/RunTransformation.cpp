#include "RunTransformation.h"

#include "operations/TaskProgress.h"

void operations::TellProgress(const YDAdjustmentProcessing& processing, const YDAdjustmentJob& job)
{
    if (!job.progress)
        return;
    QObject::connect(&processing, &YDAdjustmentProcessing::RangeChanged, job.progress,
                     &TaskProgress::RangeChanged, Qt::DirectConnection);
    QObject::connect(&processing, &YDAdjustmentProcessing::ProgressChanged, job.progress,
                     &TaskProgress::ValueChanged, Qt::DirectConnection);
}
