#include "operations/Threshold.h"

#include "RuleTask.h"
#include "YDIterativeAdjustmentTransformation.h"
#include "image/YDThresholdRGB32.h"

operations::Task operations::MakeTask(const Threshold& settings)
{
    return RuleTask([settings] {
        YDThresholdRGB32 threshold;
        threshold.SetLevel(settings.level);
        return YDIterativeAdjustmentTransformation<YDThresholdRGB32>(threshold);
    });
}
