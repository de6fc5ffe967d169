#include "operations/Curves.h"

#include "RuleTask.h"
#include "image/YDIterativeCurvesTransformation.h"

operations::Task operations::MakeTask(const Curves& settings)
{
    constexpr int FullStrength = 100; // per cent
    return RuleTask(
        [settings] { return YDIterativeCurvesTransformation(settings.curves.data(), FullStrength); });
}
