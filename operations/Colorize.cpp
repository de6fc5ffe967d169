#include "operations/Colorize.h"

#include "RunTransformation.h"
#include "image/ColorToRgba.h"
#include "image/YDIterativeColorizeTransformation.h"

operations::Task operations::MakeTask(const Colorize& settings)
{
    return Task(
        [settings](const YDAdjustmentJob& job) {
            return RunTransformation(
                job, YDIterativeColorizeTransformation(ColorToRgba(settings.color), settings.amount));
        },
        Task::Copying::InFirstPass);
}
