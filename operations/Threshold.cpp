#include "operations/Threshold.h"

#include "RunTransformation.h"
#include "YDIterativeAdjustmentTransformation.h"
#include "image/YDThresholdRGB32.h"

operations::Task operations::MakeTask(const Threshold& settings)
{
    return Task(
        [settings](const YDAdjustmentJob& job) {
            YDThresholdRGB32 threshold;
            threshold.SetLevel(settings.level);
            return RunTransformation(job, YDIterativeAdjustmentTransformation<YDThresholdRGB32>(threshold));
        },
        Task::Copying::InFirstPass);
}
