#include "BenchAdjustments.h"

#include "image/YDIterativeBrightnessContrastTransformation.h"
#include "image/YDIterativeExposureTransformation.h"
#include "image/YDIterativeGammaCorrectionTransformation.h"
#include "image/YDIterativePosterizeTransformation.h"
#include "image/YDThresholdRGB32.h"

const std::vector<BenchAdjustment>& BenchAdjustments()
{
    static const std::vector<BenchAdjustment> adjustments{
        {"brightness-contrast",
         RuleOf(YDIterativeBrightnessContrastTransformation(20, 30)),
         "m_pBrightnessSlider",
         "value",
         {20, -20}},
        {"exposure",
         RuleOf(YDIterativeExposureTransformation(1.0, 0.05)),
         "m_pExposureSpin",
         "value",
         {1.0, -1.0}},
        {"gamma", RuleOf(YDIterativeGammaCorrectionTransformation(2.2)), "m_pGammaSpin", "value", {2.2, 0.5}},
        {"posterize", RuleOf(YDIterativePosterizeTransformation(8)), "m_pPosterizeSpin", "value", {8, 16}},
        {"threshold", RuleOf(YDThresholdRGB32()), "m_pThresholdLevel", "value", {100, 160}},
    };
    return adjustments;
}
