#include "operations/Exposure.h"

#include "RuleTask.h"
#include "image/YDIterativeExposureTransformation.h"

operations::Task operations::MakeTask(const Exposure& settings)
{
    return RuleTask(
        [settings] { return YDIterativeExposureTransformation(settings.exposure, settings.offset); });
}
