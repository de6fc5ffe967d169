#include "operations/Exposure.h"

#include "RunTransformation.h"
#include "image/YDIterativeExposureTransformation.h"

operations::Task operations::MakeTask(const Exposure& settings)
{
    return Task(
        [settings](const YDAdjustmentJob& job) {
            return RunTransformation(job,
                                     YDIterativeExposureTransformation(settings.exposure, settings.offset));
        },
        Task::Copying::InFirstPass);
}
