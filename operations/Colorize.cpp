#include "operations/Colorize.h"

#include "RuleTask.h"
#include "image/ColorToRgba.h"
#include "image/YDIterativeColorizeTransformation.h"

operations::Task operations::MakeTask(const Colorize& settings)
{
    return RuleTask([settings] {
        return YDIterativeColorizeTransformation(ColorToRgba(settings.color), settings.amount);
    });
}
