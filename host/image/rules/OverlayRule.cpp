#include "image/OverlayRule.h"

#include "image/VectorKernels.h"
#include "utilities/AVX2LIB.h"

namespace {

KVCompositionMode ModeOf(int number)
{
    const auto first = int(KVCompositionMode::Addition);
    const auto last = int(KVCompositionMode::Exclusion);
    return number >= first && number <= last ? KVCompositionMode(number) : KVCompositionMode::Normal;
}

} // namespace

OverlayRule::OverlayRule(int modeNumber, double opacity)
    : mode(ModeOf(modeNumber)), weight(opacity > 0.0 ? float(std::min(opacity, 1.0)) * PartOfLevel : 0.0f)
{}

void OverlayRule::operator()(const YDRGBA32i& over, YDRGBA32i& under) const
{
    WithMode(mode, [&](auto which) { Lay<which()>(over, under, weight); });
}

void OverlayRule::ProcessRow(const YDRGBA32i* over, YDRGBA32i* under, int count) const
{
    static const auto kernel = AVX2LIB::Find(VectorKernels::OverlayRow);
    if (kernel) {
        kernel(over, under, count, this);
        return;
    }
    WithMode(mode, [&](auto which) {
        for (int x = 0; x < count; ++x)
            Lay<which()>(over[x], under[x], weight);
    });
}
