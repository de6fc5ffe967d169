#include "BenchAdjustments.h"

#include "image/YDIterativeBrightnessContrastTransformation.h"

const std::vector<BenchAdjustment>& BenchAdjustments()
{
    static const std::vector<BenchAdjustment> adjustments{
        {"brightness-contrast",
         RuleOf(YDIterativeBrightnessContrastTransformation(20, 30)),
         "m_pBrightnessSlider",
         "value",
         {20, -20}},
    };
    return adjustments;
}
