#include "RulePass.h"

#include "image/BaseTransformation.h"
#include "image/KVImage.h"
#include "image/YDBlend.h"
#include "image/YDSelectionArea.h"
#include "threads/ParallelRows.h"

#include <algorithm>
#include <array>

namespace {

/// Pixels that are worked on at a time.
constexpr int PiecePixels = 512;

/// How far ahead of a piece memory is asked for. Half a kilobyte to four made little difference; without it
/// a copy and a rule of tables together took half as long again.
constexpr qsizetype PixelsAhead = 1024;

/// Asks for the piece that begins PixelsAhead of `pixels`, as far as the picture goes there. At the end of a
/// row it is mostly the start of the next one.
void Prefetch(const YDRGBA32i* pixels, const RGBA32iImage& picture)
{
    constexpr qsizetype PixelsOfCacheLine = 64 / sizeof(YDRGBA32i);
    const YDRGBA32i* const end = picture.Pixels() + qsizetype(picture.Height()) * picture.RowLength();
    const qsizetype last = std::min(PixelsAhead + PiecePixels, qsizetype(end - pixels));
    for (qsizetype ahead = PixelsAhead; ahead < last; ahead += PixelsOfCacheLine)
        __builtin_prefetch(pixels + ahead);
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
            Prefetch(from + x, job.source);
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
                Prefetch(from, job.Pixels());
                Prefetch(mask + x, job.selection);
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
