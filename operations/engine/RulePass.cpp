#include "RulePass.h"

#include "image/BaseTransformation.h"
#include "image/ParallelRows.h"
#include "image/YDBlend.h"
#include "image/YDSelectionArea.h"

#include <algorithm>
#include <array>

namespace {

/// Neighbouring rows on one thread, so that what is prefetched past the end of a row is not in vain.
constexpr int RowsPerBand = 4;
/// Pixels that are worked on at a time.
constexpr int PiecePixels = 512;

/// How far ahead of a piece memory is asked for. Half a kilobyte to four made little difference; without it
/// a copy and a rule of tables together took half as long again.
constexpr int PixelsAhead = 1024;
constexpr quintptr CacheLine = 64;

/// Asks for the pixels of the piece that begins PixelsAhead of `pixels`, which may lie past the end of the
/// picture: an address is no access.
void Prefetch(const YDRGBA32i* pixels)
{
    const quintptr first = reinterpret_cast<quintptr>(pixels) + PixelsAhead * sizeof(YDRGBA32i);
    for (quintptr line = 0; line < PiecePixels * sizeof(YDRGBA32i); line += CacheLine) {
        // A number and not a sum of a pointer, which may not point past the picture.
        // NOLINTNEXTLINE(performance-no-int-to-ptr)
        __builtin_prefetch(reinterpret_cast<const void*>(first + line));
    }
}

using Work = std::function<void(int row)>;

/// Calls `work` for the rows [top, bottom), on all cores, until `abort` is set.
void ForEachRow(int top, int bottom, const std::atomic<bool>& abort, const Work& work)
{
    ForEachRowBand(top, bottom, RowsPerBand, &abort, [&](int first, int last) {
        for (int row = first; row < last && !abort.load(std::memory_order_relaxed); ++row)
            work(row);
    });
}

/// Calls `work` for pieces of `count` pixels, with where each begins and how long it is.
template <class PieceWork>
void ForEachPiece(int count, const PieceWork& work)
{
    for (int x = 0; x < count; x += PiecePixels)
        work(x, std::min(PiecePixels, count - x));
}

enum class Coverage
{
    None,
    Partial,
    Full
};

Coverage CoverageOf(const YDRGBA32i* mask, int count)
{
    quint32 any = 0;
    quint32 all = ~0u;
    for (int x = 0; x < count; ++x) {
        const QRgb pixel = mask[x];
        any |= pixel;
        all &= pixel;
    }
    if (qAlpha(any) == 0)
        return Coverage::None;
    return qAlpha(all) == 255 ? Coverage::Full : Coverage::Partial;
}

void ApplyToPiece(YDRGBA32i* pixels, const YDRGBA32i* mask, int count, const BaseTransformation& rule)
{
    switch (CoverageOf(mask, count)) {
    case Coverage::None:
        return;
    case Coverage::Full:
        rule.ProcessRow(pixels, count);
        return;
    case Coverage::Partial:
        break;
    }
    alignas(64) std::array<YDRGBA32i, PiecePixels> adjusted;
    std::copy_n(pixels, count, adjusted.begin());
    rule.ProcessRow(adjusted.data(), count);
    YDBlend::YDSourceBySelection::ProcessRow(adjusted.data(), pixels, mask, count);
}

} // namespace

void RulePass::CopyAndApply(const YDAdjustmentJob& job, const BaseTransformation& rule,
                            const std::atomic<bool>& abort, const std::function<void()>& onRow)
{
    ForEachRow(0, job.image.Height(), abort, [&](int row) {
        const YDRGBA32i* const from = job.source.Row(row);
        YDRGBA32i* const to = job.image.Row(row);
        ForEachPiece(job.image.Width(), [&](int x, int count) {
            Prefetch(from + x);
            std::copy_n(from + x, count, to + x);
            rule.ProcessRow(to + x, count);
        });
        onRow();
    });
}

void RulePass::ApplyThroughSelection(const YDAdjustmentJob& job, const YDSelectionArea& selected,
                                     const BaseTransformation& rule, const std::atomic<bool>& abort,
                                     const std::function<void()>& onRow)
{
    const QRect& area = selected.Covered();
    const bool isCopy = !job.source.IsEmpty();
    const int top = isCopy ? 0 : area.top();
    const int bottom = isCopy ? job.image.Height() : area.top() + area.height();
    ForEachRow(top, bottom, abort, [&](int row) {
        const bool isCovered = row >= area.top() && row - area.top() < area.height();
        const bool isBlended = isCovered && row - area.top() < selected.Height();
        const int left = isBlended ? area.left() : job.image.Width();
        if (isCopy) { // what is adjusted is copied piece by piece below
            const int right = isBlended ? left + selected.Width() : left;
            std::copy_n(job.source.Row(row), left, job.image.Row(row));
            std::copy_n(job.source.Row(row) + right, job.image.Width() - right, job.image.Row(row) + right);
        }
        if (isBlended) {
            YDRGBA32i* const pixels = job.image.Row(row) + left;
            const YDRGBA32i* const mask = selected.MaskRow(job.selection, row - area.top());
            ForEachPiece(selected.Width(), [&](int x, int count) {
                const YDRGBA32i* const from = isCopy ? job.source.Row(row) + left + x : pixels + x;
                Prefetch(from);
                Prefetch(mask + x);
                if (isCopy)
                    std::copy_n(from, count, pixels + x);
                ApplyToPiece(pixels + x, mask + x, count, rule);
            });
            onRow();
        }
        if (isCovered)
            onRow();
    });
}
