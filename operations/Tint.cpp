#include "operations/Tint.h"

#include "RunTransformation.h"
#include "YDAverageTintRGB32.h"
#include "YDIterativeTintTransformation.h"
#include "image/ColorToRgba.h"
#include "image/YDTintRGB32.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

using operations::Tint;

using AverageTint = YDAverageTintRGB32<333, 334, 333>;
using NtscTint = YDAverageTintRGB32<300, 590, 110>;
using LumaTint = YDAverageTintRGB32<212, 715, 73>;

/// Per cent as the amount of the tints by brightness.
int ScaledAmount(int percent)
{
    constexpr int MaxPercent = 100;
    return std::clamp(percent, 0, MaxPercent) * (AverageTint::FullAmount / MaxPercent);
}

template <class Functor>
operations::Outcome RunWith(const YDAdjustmentJob& job, const Tint& settings, int amount)
{
    const Functor functor(ColorToRgba(settings.blackTone), ColorToRgba(settings.whiteTone), amount);
    return operations::RunTransformation(job, YDIterativeTintTransformation<Functor>(functor));
}

/// The tint channel by channel takes the amount in per cent.
operations::Outcome Run(const YDAdjustmentJob& job, const Tint& settings)
{
    const int amount = settings.amount;
    switch (settings.type) {
    case Tint::Average:
        return RunWith<AverageTint>(job, settings, ScaledAmount(amount));
    case Tint::Ntsc:
        return RunWith<NtscTint>(job, settings, ScaledAmount(amount));
    case Tint::Luma:
        return RunWith<LumaTint>(job, settings, ScaledAmount(amount));
    case Tint::Rgb:
        return RunWith<YDTintRGB32>(job, settings, amount);
    default:
        return {RGBA32iImage(), QCoreApplication::translate("Tint", "There is no tint of this type.")};
    }
}

} // namespace

operations::Task operations::MakeTask(const Tint& settings)
{
    return Task([settings](const YDAdjustmentJob& job) { return Run(job, settings); },
                Task::Copying::InFirstPass);
}
