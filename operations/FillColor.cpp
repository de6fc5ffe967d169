#include "operations/FillColor.h"

#include "ColorAtOpacity.h"
#include "RuleTask.h"
#include "YDIterativeAdjustmentTransformation.h"
#include "image/KVFillTransformation.h"

operations::Task operations::MakeTask(const FillColor& settings)
{
    return RuleTask([settings] {
        KVFillTransformation fill;
        fill.SetData(ColorAtOpacity(settings.color, settings.opacity));
        return YDIterativeAdjustmentTransformation<KVFillTransformation>(fill);
    });
}
