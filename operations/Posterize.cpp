#include "operations/Posterize.h"

#include "RunTransformation.h"
#include "image/YDIterativePosterizeTransformation.h"

operations::Task operations::MakeTask(const Posterize& settings)
{
    return Task(
        [settings](const YDAdjustmentJob& job) {
            return RunTransformation(job, YDIterativePosterizeTransformation(settings.levels));
        },
        Task::Copying::InFirstPass);
}
