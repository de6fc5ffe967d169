#include "operations/PhotoFilter.h"

#include "RunTransformation.h"
#include "image/ColorToRgba.h"
#include "image/YDIterativePhotoFilterTransformation.h"

operations::Task operations::MakeTask(const PhotoFilter& settings)
{
    return Task(
        [settings](const YDAdjustmentJob& job) {
            return RunTransformation(
                job, YDIterativePhotoFilterTransformation(ColorToRgba(settings.color), settings.density));
        },
        Task::Copying::InFirstPass);
}
