#include "operations/ColorBalance.h"

#include "RunTransformation.h"
#include "image/YDIterativeColorBalanceTransformation.h"

operations::Task operations::MakeTask(const ColorBalance& settings)
{
    return Task(
        [settings](const YDAdjustmentJob& job) {
            return RunTransformation(job, YDIterativeColorBalanceTransformation(settings.cyanRed.data(),
                                                                                settings.magentaGreen.data(),
                                                                                settings.yellowBlue.data()));
        },
        Task::Copying::InFirstPass);
}
