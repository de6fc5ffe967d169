#include "operations/HueSaturation.h"

#include "KVAdjustmentProcessingTemplate.h"
#include "RuleTask.h"
#include "image/YDHueSaturationTransformation.h"

operations::Task operations::MakeTask(const HueSaturation& settings)
{
    return RuleTask<KVAdjustmentProcessingTemplate>([settings] {
        return YDHueSaturationTransformation(settings.hue, settings.saturation, settings.lightness,
                                             settings.colorize);
    });
}
