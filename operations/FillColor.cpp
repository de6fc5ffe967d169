#include "operations/FillColor.h"

#include "ColorAtOpacity.h"
#include "RunTransformation.h"
#include "YDIterativeAdjustmentTransformation.h"
#include "image/KVFillTransformation.h"

operations::Task operations::MakeTask(const FillColor& settings)
{
    return Task(
        [settings](const YDAdjustmentJob& job) {
            KVFillTransformation fill;
            fill.SetData(ColorAtOpacity(settings.color, settings.opacity));
            return RunTransformation(job, YDIterativeAdjustmentTransformation<KVFillTransformation>(fill));
        },
        Task::Copying::InFirstPass);
}
