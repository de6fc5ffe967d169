#include "operations/Curves.h"

#include "RunTransformation.h"
#include "image/YDIterativeCurvesTransformation.h"

operations::Task operations::MakeTask(const Curves& settings)
{
    return Task(
        [settings](const YDAdjustmentJob& job) {
            constexpr int FullStrength = 100; // per cent
            return RunTransformation(job,
                                     YDIterativeCurvesTransformation(settings.curves.data(), FullStrength));
        },
        Task::Copying::InFirstPass);
}
