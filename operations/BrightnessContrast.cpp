#include "operations/BrightnessContrast.h"

#include "RunTransformation.h"
#include "image/YDIterativeBrightnessContrastTransformation.h"

operations::Task operations::MakeTask(const BrightnessContrast& settings)
{
    return Task(
        [settings](const YDAdjustmentJob& job) {
            return RunTransformation(
                job, YDIterativeBrightnessContrastTransformation(settings.brightness, settings.contrast));
        },
        Task::Copying::InFirstPass);
}
