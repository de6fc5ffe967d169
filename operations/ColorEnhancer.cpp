#include "operations/ColorEnhancer.h"

#include "RunTransformation.h"
#include "StretchFrom.h"
#include "YDIterativeAdjustmentTransformation.h"
#include "YDThresholdCache.h"
#include "image/YDColorEnhancerTransformation.h"

#include <algorithm>
#include <limits>

namespace {

using operations::ColorEnhancer;

LevelRange Blended(const LevelRange& own, const LevelRange& common, int affected)
{
    return {operations::InputBound(own.low, common.low, affected),
            operations::InputBound(own.high, common.high, affected)};
}

YDLevelsTransformation LevelsFor(const YDThresholdCache::Thresholds& thresholds, int affected)
{
    const auto& [red, green, blue, common] = thresholds;
    return StretchFrom<YDLevelsTransformation>(
        Blended(red, common, affected), Blended(green, common, affected), Blended(blue, common, affected));
}

RGBA32iImage Run(const YDAdjustmentJob& job, const ColorEnhancer& settings, YDThresholdCache& cache)
{
    const auto thresholds = cache.Of(job.Pixels(), job.abort);
    if (!thresholds)
        return job.image;
    YDColorEnhancerTransformation enhancer;
    enhancer.SetLevels(LevelsFor(*thresholds, settings.affected));
    enhancer.SetAmountData(settings.amount);
    return operations::RunTransformation(
        job, YDIterativeAdjustmentTransformation<YDColorEnhancerTransformation>(enhancer));
}

} // namespace

int operations::InputBound(int own, int common, int affected)
{
    // In 64 bits: a stored percentage may be any number.
    const qint64 bound = (qint64(own - common) * affected + qint64(common) * 100) / 100;
    return int(std::clamp<qint64>(bound, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

operations::Task operations::MakeTask(const ColorEnhancer& settings,
                                      const std::shared_ptr<YDThresholdCache>& thresholds)
{
    return Task([settings,
                 thresholds](const YDAdjustmentJob& job) { return Outcome(Run(job, settings, *thresholds)); },
                Task::Copying::InFirstPass);
}

operations::Task operations::MakeTask(const ColorEnhancer& settings)
{
    return Task(
        [settings](const YDAdjustmentJob& job) {
            YDThresholdCache thresholds;
            return Outcome(Run(job, settings, thresholds));
        },
        Task::Copying::InFirstPass);
}
