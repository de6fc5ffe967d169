#include "operations/Temperature.h"

#include "RunTransformation.h"
#include "YDIterativeAdjustmentTransformation.h"
#include "image/YDTemperatureCorrection.h"

operations::Task operations::MakeTask(const Temperature& settings)
{
    return Task(
        [settings](const YDAdjustmentJob& job) {
            YDTemperatureCorrection correction;
            correction.SetData(settings.temperature, settings.strength, settings.tint);
            return RunTransformation(
                job, YDIterativeAdjustmentTransformation<YDTemperatureCorrection>(correction));
        },
        Task::Copying::InFirstPass);
}
