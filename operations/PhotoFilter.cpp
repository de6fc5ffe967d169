#include "operations/PhotoFilter.h"

#include "RuleTask.h"
#include "image/ColorToRgba.h"
#include "image/YDIterativePhotoFilterTransformation.h"

operations::Task operations::MakeTask(const PhotoFilter& settings)
{
    return RuleTask([settings] {
        return YDIterativePhotoFilterTransformation(ColorToRgba(settings.color), settings.density);
    });
}
