#include "operations/Posterize.h"

#include "RuleTask.h"
#include "image/YDIterativePosterizeTransformation.h"

operations::Task operations::MakeTask(const Posterize& settings)
{
    return RuleTask([settings] { return YDIterativePosterizeTransformation(settings.levels); });
}
