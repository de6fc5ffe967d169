#include "image/RulePass.h"

#include "image/BaseTransformation.h"
#include "image/PrefetchPixels.h"
#include "image/YDBlend.h"
#include "threads/ParallelRows.h"

#include <algorithm>

namespace {

/// How far ahead of a piece its source is asked for. Half a kilobyte to four made little difference; without
/// it a copy and a rule of tables together took a fifth longer. Kernels ask for what they work on by
/// themselves, and to ask for that twice took a selection half as long again.
constexpr qsizetype PixelsAhead = 1024;

const YDRGBA32i* EndOf(const RGBA32iImage& picture)
{
    return picture.Pixels() + qsizetype(picture.Height()) * picture.RowLength();
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

bool HoldsRow(int top, int height, int y) { return y >= top && y - top < height; }

} // namespace

RulePass::Rule RulePass::RuleOf(const BaseTransformation& transformation)
{
    return [&transformation](YDRGBA32i* pixels, int, int, int count) {
        transformation.ProcessRow(pixels, count);
    };
}

RulePass::RulePass(const RGBA32iImage& image, const RGBA32iImage& source, const RGBA32iImage& mask,
                   const QPoint& offset, const QRect& bounds)
    : m_image(image), m_source(source), m_reach(0, 0, image.Width(), image.Height())
{
    if (bounds.isEmpty())
        return;
    m_mask = mask;
    m_selected.emplace(image, mask, offset, bounds);
    m_reach = QRect(m_selected->Covered().topLeft(), QSize(m_selected->Width(), m_selected->Height()));
}

unsigned RulePass::Steps() const
{
    if (!m_selected)
        return static_cast<unsigned>(m_image.Height());
    return static_cast<unsigned>(m_selected->Covered().height()) +
           static_cast<unsigned>(m_selected->Height());
}

unsigned RulePass::StepsOf(int y) const
{
    if (!m_selected)
        return 1;
    const QRect& covered = m_selected->Covered();
    return (HoldsRow(covered.top(), covered.height(), y) ? 1u : 0u) +
           (HoldsRow(covered.top(), m_selected->Height(), y) ? 1u : 0u);
}

void RulePass::Run(const Rule& rule, const std::atomic<bool>* abort,
                   const std::function<void()>& onStep) const
{
    const bool isEveryRow = IsCopy() || !m_selected;
    const int top = isEveryRow ? 0 : m_selected->Covered().top();
    const int height = isEveryRow ? m_image.Height() : m_selected->Covered().height();
    ForEachRow(top, top + height, abort, [&](int y) {
        AdjustRow(y, rule);
        for (unsigned left = StepsOf(y); left > 0; --left)
            onStep();
    });
}

void RulePass::AdjustRow(int y, const Rule& rule) const
{
    if (!IsCopy() && !HoldsRow(m_reach.top(), m_reach.height(), y))
        return;
    YDRGBA32i* const row = m_image.Row(y);
    const YDRGBA32i* const from = IsCopy() ? m_source.Row(y) : row;
    const int end = IsCopy() ? m_image.Width() : m_reach.left() + m_reach.width();
    for (int x = IsCopy() ? 0 : m_reach.left(); x < end; x += PiecePixels) {
        const int count = std::min(PiecePixels, end - x);
        if (IsCopy()) {
            PrefetchPixels(from + x, PixelsAhead, PiecePixels, EndOf(m_source));
            std::copy_n(from + x, count, row + x);
        }
        Adjust(row + x, x, y, count, rule);
    }
}

void RulePass::Adjust(YDRGBA32i* pixels, int x, int y, int count, const Rule& rule) const
{
    const int first = std::max(x, m_reach.left());
    const int end = std::min(x + count, m_reach.left() + m_reach.width());
    if (first >= end || !HoldsRow(m_reach.top(), m_reach.height(), y))
        return;
    if (m_selected)
        Blend(pixels + (first - x), first, y, end - first, rule);
    else
        rule(pixels + (first - x), first, y, end - first);
}

void RulePass::Blend(YDRGBA32i* pixels, int x, int y, int count, const Rule& rule) const
{
    const QPoint origin = m_selected->Covered().topLeft();
    const YDRGBA32i* const mask = m_selected->MaskRow(m_mask, y - origin.y()) + (x - origin.x());
    switch (CoverageOf(mask, count)) {
    case Coverage::None:
        return;
    case Coverage::Full:
        rule(pixels, x, y, count);
        return;
    case Coverage::Partial:
        break;
    }
    Piece adjusted;
    std::copy_n(pixels, count, adjusted.begin());
    rule(adjusted.data(), x, y, count);
    YDBlend::YDSourceBySelection::ProcessRow(adjusted.data(), pixels, mask, count);
}
