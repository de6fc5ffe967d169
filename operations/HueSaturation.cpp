#include "operations/HueSaturation.h"

#include "KVAdjustmentProcessingTemplate.h"
#include "RunTransformation.h"
#include "image/YDHueSaturationTransformation.h"

operations::Task operations::MakeTask(const HueSaturation& settings)
{
    return Task(
        [settings](const YDAdjustmentJob& job) {
            return RunTransformation<KVAdjustmentProcessingTemplate>(
                job, YDHueSaturationTransformation(settings.hue, settings.saturation, settings.lightness,
                                                   settings.colorize));
        },
        Task::Copying::InFirstPass);
}
