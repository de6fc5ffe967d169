#include "gpu/SelectiveColorsOnCpu.h"

#include "gpu/SelectiveColorsJob.h"
#include "image/PixelRuleTransformation.h"
#include "image/YDBlend.h"
#include "threads/ParallelRows.h"

#include <algorithm>
#include <array>

namespace {

/// Pixels that are copied, adjusted and blended while they stay in the nearest cache.
constexpr int PiecePixels = 1024;

void AdjustThroughMask(const SelectiveColorsJob& job, const YDRGBA32i* mask, YDRGBA32i* pixels, int count)
{
    std::array<YDRGBA32i, PiecePixels> adjusted;
    for (int x = 0; x < count; x += PiecePixels) {
        const int piece = std::min(PiecePixels, count - x);
        std::copy_n(pixels + x, piece, adjusted.begin());
        ApplyRuleToRow(job.rule, adjusted.data(), piece);
        YDBlend::YDSourceBySelection::ProcessRow(adjusted.data(), pixels + x, mask + x, piece);
    }
}

} // namespace

bool AdjustSelectiveColorsOnCpu(const SelectiveColorsJob& job, const RGBA32iImage& result,
                                const std::atomic<bool>& abort)
{
    constexpr int RowsPerBand = 8;
    const QRect reached = job.Reached();
    return ForEachRowBand(0, result.Height(), RowsPerBand, &abort, [&](int first, int last) {
        for (int y = first; y < last; ++y) {
            YDRGBA32i* const row = result.Row(y);
            std::copy_n(job.source.Row(y), result.Width(), row);
            if (y < reached.top() || y > reached.bottom())
                continue;
            if (job.HasMask())
                AdjustThroughMask(job, job.mask.Row(y - job.maskY) + (reached.left() - job.maskX),
                                  row + reached.left(), reached.width());
            else
                ApplyRuleToRow(job.rule, row, result.Width());
        }
    });
}
