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

void CopyOpaque(const YDRGBA32i* from, Piece& to, int count)
{
    std::transform(from, from + count, to.begin(),
                   [](const YDRGBA32i& pixel) { return YDRGBA32i(pixel.b, pixel.g, pixel.r, 255); });
}

void MixPiece(const YDBlend::YDSourceOver<0>& over, const YDRGBA32i* adjusted, YDRGBA32i* picture,
              const YDRGBA32i* mask, int count)
{
    Piece source;
    Piece mixed;
    CopyOpaque(adjusted, source, count);
    CopyOpaque(picture, mixed, count);
    over.ProcessRow(source.data(), mixed.data(), count);
    for (int x = 0; x < count; ++x)
        mixed[static_cast<std::size_t>(x)].a = picture[x].a;
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
