#include "operations/Gamma.h"

#include "RuleTask.h"
#include "image/YDIterativeGammaCorrectionTransformation.h"

operations::Task operations::MakeTask(const Gamma& settings)
{
    return RuleTask([settings] { return YDIterativeGammaCorrectionTransformation(settings.gamma); });
}
