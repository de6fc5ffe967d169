#include "operations/Temperature.h"

#include "RuleTask.h"
#include "YDIterativeAdjustmentTransformation.h"
#include "image/YDTemperatureCorrection.h"

operations::Task operations::MakeTask(const Temperature& settings)
{
    return RuleTask([settings] {
        YDTemperatureCorrection correction;
        correction.SetData(settings.temperature, settings.strength, settings.tint);
        return YDIterativeAdjustmentTransformation<YDTemperatureCorrection>(correction);
    });
}
