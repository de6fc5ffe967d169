#include "overlay/OverlayCanvas.h"

#include "image/OverlayRule.h"
#include "image/YDBlend.h"
#include "image/YDSelectionArea.h"
#include "threads/ParallelRows.h"

#include <algorithm>
#include <array>

namespace {

constexpr int RowsPerBand = 16;

} // namespace

OverlayCanvas::OverlayCanvas(const RGBA32iImage& picture, const RGBA32iImage& selection, const QPoint& offset,
                             const QRect& bounds, const std::atomic<bool>* abort)
    : m_picture(picture), m_reach(0, 0, picture.Width(), picture.Height()), m_abort(abort)
{
    if (bounds.isEmpty())
        return;
    m_selected.emplace(picture, selection, offset, bounds);
    m_mask = selection;
    m_reach = QRect(m_selected->Covered().topLeft(), QSize(m_selected->Width(), m_selected->Height()));
}

void OverlayCanvas::Lay(const Source& source, const QRect& area, const OverlayRule& rule) const
{
    const QRect touched = area & m_reach;
    const int end = touched.right() + 1;
    ForEachRowBand(touched.top(), touched.bottom() + 1, RowsPerBand, m_abort, [&](int first, int last) {
        std::array<YDRGBA32i, PiecePixels> buffer;
        for (int y = first; y < last; ++y) {
            for (int x = touched.left(); x < end; x += PiecePixels) {
                const int count = std::min(PiecePixels, end - x);
                if (const YDRGBA32i* const over = source(x, y, count, buffer.data()))
                    LayPiece(over, x, y, count, rule);
            }
        }
    });
}

void OverlayCanvas::LayPiece(const YDRGBA32i* over, int x, int y, int count, const OverlayRule& rule) const
{
    YDRGBA32i* const under = m_picture.Row(y) + x;
    if (!m_selected) {
        rule.ProcessRow(over, under, count);
        return;
    }
    std::array<YDRGBA32i, PiecePixels> laid;
    std::copy_n(under, count, laid.begin());
    rule.ProcessRow(over, laid.data(), count);
    const YDRGBA32i* const mask = m_selected->MaskRow(m_mask, y - m_reach.top()) + (x - m_reach.left());
    YDBlend::YDSourceBySelection::ProcessRow(laid.data(), under, mask, count);
}
