#include "operations/BrightnessContrast.h"

#include "RuleTask.h"
#include "image/YDIterativeBrightnessContrastTransformation.h"

operations::Task operations::MakeTask(const BrightnessContrast& settings)
{
    return RuleTask([settings] {
        return YDIterativeBrightnessContrastTransformation(settings.brightness, settings.contrast);
    });
}
