#include "operations/WhiteBalance.h"

#include "PassOver.h"
#include "RunTransformation.h"
#include "StretchFrom.h"
#include "image/ChannelHistograms.h"
#include "image/KVIterativeWBTransformation.h"
#include "image/YDBlend.h"
#include "image/YDIterativeLevelsTransformation.h"
#include "image/YDIterativePhotoFilterTransformation.h"
#include "image/YDTemperatureCorrection.h"

#include <algorithm>
#include <limits>

namespace {

using operations::RunTransformation;
using operations::WhiteBalance;

constexpr int FullStrength = 100;

int StrengthOf(const WhiteBalance& settings)
{
    const int* const strength = operations::StrengthFieldOf(settings);
    return strength ? *strength : 0;
}

/// 9000 K for -100, 6500 K for 0, 2000 K for 100: the warm half of the scale reaches further. In 64 bits, for
/// a stored temperature may be any number.
int KelvinOf(int temperature)
{
    constexpr qint64 Neutral = 6500;
    constexpr qint64 ColdStep = 25;
    constexpr qint64 WarmStep = 45;
    const qint64 kelvin = Neutral - (temperature <= 0 ? ColdStep : WarmStep) * temperature;
    return int(std::clamp<qint64>(kelvin, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

/// The lowest and the highest level that occur; 0 for both where none does.
LevelRange OccupiedRange(const ChannelHistograms::Table& counts)
{
    const auto isCounted = [](qint64 count) { return count != 0; };
    const auto first = std::find_if(counts.begin(), counts.end(), isCounted);
    if (first == counts.end())
        return {0, 0};
    const auto last = std::find_if(counts.rbegin(), counts.rend(), isCounted);
    return {int(first - counts.begin()), int(counts.rend() - last) - 1};
}

/// The range that a channel is stretched from.
LevelRange InputRange(const ChannelHistograms::Table& counts, qint64 pixels)
{
    const auto countOf = [&counts](int level) { return counts[std::size_t(level)]; };
    return AutomaticInputRange(OccupiedRange(counts), countOf, double(pixels));
}

/// Stretches each channel to what was counted of it.
YDIterativeLevelsTransformation AutomaticLevels(const ChannelHistograms& counts)
{
    return StretchFrom<YDIterativeLevelsTransformation>(InputRange(counts.red, counts.pixels),
                                                        InputRange(counts.green, counts.pixels),
                                                        InputRange(counts.blue, counts.pixels));
}

/// The counts of a picture after each channel was mapped as `ramp` says.
ChannelHistograms Mapped(const ChannelHistograms& counts, const ChannelTablesTransformation::Ramp& ramp)
{
    ChannelHistograms mapped;
    mapped.pixels = counts.pixels;
    for (std::size_t level = 0; level < ramp.size(); ++level) {
        mapped.red[ramp[level].r] += counts.red[level];
        mapped.green[ramp[level].g] += counts.green[level];
        mapped.blue[ramp[level].b] += counts.blue[level];
    }
    return mapped;
}

/// Of what `rule`, if any, makes of the picture; empty when it was aborted. Its progress is that of a pass
/// over it.
ChannelHistograms CountsOf(const YDAdjustmentJob& job, const RulePass& pass, const RulePass::Rule& rule = {})
{
    YDAdjustmentProcessing counting;
    operations::TellProgress(counting, job);
    counting.SetRange(pass.Steps());
    const auto onRow = [&](int y) {
        for (unsigned left = pass.StepsOf(y); left > 0; --left)
            counting.IncrementProgress();
    };
    const QRect whole(0, 0, job.image.Width(), job.image.Height());
    return ChannelHistograms::Of(job.Pixels(), whole, job.abort, onRow, rule).value_or(ChannelHistograms());
}

/// Of YDBlend::YDSourceOver, for the strength of the advanced correction.
YDBlend::YDSourceOver<0> MixOf(const WhiteBalance& settings)
{
    using Mix = YDBlend::YDSourceOver<0>;
    return Mix{std::clamp(settings.autoStrength, 0, FullStrength) * Mix::Full / FullStrength};
}

/// Every step maps each channel by itself, so they are done to one pixel of each level, and to the picture at
/// once. The progress is that of two passes all the same: the pixels are counted, and then mapped.
void EnhanceWhole(const YDAdjustmentJob& job, const KVIterativeWBTransformation& balance,
                  const YDBlend::YDSourceOver<0>& mix)
{
    const ChannelHistograms counts = CountsOf(job, PassOver(job));
    auto enhanced = ChannelTablesTransformation::IdentityRamp();
    const auto levels = int(enhanced.size());
    balance.ProcessRow(enhanced.data(), levels);
    AutomaticLevels(Mapped(counts, enhanced)).ProcessRow(enhanced.data(), levels);
    auto mixed = ChannelTablesTransformation::IdentityRamp();
    mix.ProcessRow(enhanced.data(), mixed.data(), levels);
    RunTransformation(job, ChannelTablesTransformation(mixed));
}

/// Between the steps pixels are blended through the mask, so each takes the pixels as the one before it left
/// them. What is counted of the first step is done again in the second pass: that costs less than to keep a
/// picture of it.
void EnhanceSelected(const YDAdjustmentJob& job, const KVIterativeWBTransformation& balance,
                     const YDBlend::YDSourceOver<0>& mix)
{
    if (!YDTileRunner::HasWorkers()) {
        if (!job.source.IsEmpty())
            job.image.CopyFrom(job.source, job.abort);
        return;
    }
    const RulePass pass = PassOver(job);
    const RulePass::Rule balanceRule = RulePass::RuleOf(balance);
    const ChannelHistograms counts = CountsOf(job, pass, [&](YDRGBA32i* pixels, int x, int y, int count) {
        pass.Adjust(pixels, x, y, count, balanceRule);
    });
    const YDIterativeLevelsTransformation levels = AutomaticLevels(counts);
    const RulePass::Rule levelsRule = RulePass::RuleOf(levels);
    const auto enhance = [&](YDRGBA32i* pixels, int x, int y, int count) {
        RulePass::Piece enhanced;
        std::copy_n(pixels, count, enhanced.begin());
        pass.Adjust(enhanced.data(), x, y, count, balanceRule);
        pass.Adjust(enhanced.data(), x, y, count, levelsRule);
        mix.ProcessRow(enhanced.data(), pixels, count);
    };
    YDAdjustmentProcessing enhancing;
    operations::TellProgress(enhancing, job);
    enhancing.SetRange(pass.Steps());
    pass.Run(enhance, job.abort, [&enhancing] { enhancing.IncrementProgress(); });
}

/// The balance at full strength and the automatic levels, laid over the untouched picture as far as the
/// strength says. When it is aborted, each pass still begins, and ends at once.
void Enhance(const YDAdjustmentJob& job, const WhiteBalance& settings)
{
    const KVIterativeWBTransformation balance(job.Pixels(), KVWBTransformation::Auto, FullStrength);
    const auto enhance = job.selectionBoundingRect.isEmpty() ? EnhanceWhole : EnhanceSelected;
    enhance(job, balance, MixOf(settings));
}

/// The advanced correction works in automatic mode only.
bool IsEnhanced(const WhiteBalance& settings)
{
    return settings.mode == KVWBTransformation::Auto && settings.enhanced;
}

operations::Outcome Run(const YDAdjustmentJob& job, const WhiteBalance& settings)
{
    if (IsEnhanced(settings)) {
        Enhance(job, settings);
    } else {
        RunTransformation(job, KVIterativeWBTransformation(job.Pixels(),
                                                           KVWBTransformation::BalanceFunction(settings.mode),
                                                           StrengthOf(settings)));
    }
    if (!settings.useTemperature)
        return job.image;
    YDAdjustmentJob balanced = job;
    balanced.source = RGBA32iImage(); // the image has its pixels now
    return RunTransformation(balanced,
                             YDIterativePhotoFilterTransformation(
                                 YDTemperatureCorrection::GetTemperatureColor(KelvinOf(settings.temperature)),
                                 settings.temperatureStrength));
}

/// For settings that may be written to, and for such that may not.
template <class Record>
auto FieldOfStrength(Record& settings) -> decltype(&settings.autoStrength)
{
    switch (settings.mode) {
    case KVWBTransformation::Auto:
        return &settings.autoStrength;
    case KVWBTransformation::Overexposure:
        return &settings.overexposureStrength;
    case KVWBTransformation::Underexposure:
        return &settings.underexposureStrength;
    default:
        return nullptr;
    }
}

} // namespace

int* operations::StrengthFieldOf(WhiteBalance& settings) { return FieldOfStrength(settings); }

const int* operations::StrengthFieldOf(const WhiteBalance& settings) { return FieldOfStrength(settings); }

operations::Task operations::MakeTask(const WhiteBalance& settings)
{
    return Task([settings](const YDAdjustmentJob& job) { return Run(job, settings); },
                IsEnhanced(settings) ? Task::Copying::InTask : Task::Copying::InFirstPass);
}
