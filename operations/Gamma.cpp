#include "operations/Gamma.h"

#include "RunTransformation.h"
#include "image/YDIterativeGammaCorrectionTransformation.h"

operations::Task operations::MakeTask(const Gamma& settings)
{
    return Task(
        [settings](const YDAdjustmentJob& job) {
            return RunTransformation(job, YDIterativeGammaCorrectionTransformation(settings.gamma));
        },
        Task::Copying::InFirstPass);
}
