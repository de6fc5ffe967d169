#include "MixThroughSelection.h"

#include "YDTileRunner.h"
#include "image/YDBlend.h"
#include "image/YDSelectionArea.h"

#include <algorithm>
#include <array>

namespace {

/// Pixels that are mixed while they stay in the nearest cache.
constexpr int PiecePixels = 1024;
using Piece = std::array<YDRGBA32i, PiecePixels>;

void MixPiece(const YDBlend::YDSourceOver<0>& over, const YDRGBA32i* adjusted, YDRGBA32i* picture,
              const YDRGBA32i* mask, int count)
{
    Piece mixed;
    std::copy_n(picture, count, mixed.begin());
    over.ProcessRow(adjusted, mixed.data(), count);
    YDBlend::YDSourceBySelection::ProcessRow(mixed.data(), picture, mask, count);
}

} // namespace

void MixThroughSelection(const YDAdjustmentJob& job, const RGBA32iImage& adjusted, int opacity)
{
    const YDBlend::YDSourceOver<0> over{opacity};
    const YDSelectionArea selected(job.image, job.selection, job.selectionOffset, job.selectionBoundingRect);
    YDRowQueue rows(0, selected.Height(), job.abort);
    YDTileRunner::RunMemoryBoundTasks([&] {
        for (int row = 0; rows.Take(row);)
            for (int x = 0; x < selected.Width(); x += PiecePixels)
                MixPiece(over, selected.RowOf(adjusted, row) + x, selected.RowOf(job.image, row) + x,
                         selected.MaskRow(job.selection, row) + x,
                         std::min(PiecePixels, selected.Width() - x));
    });
}
