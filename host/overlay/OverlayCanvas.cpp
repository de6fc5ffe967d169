#include "overlay/OverlayCanvas.h"

#include "image/OverlayRule.h"

OverlayCanvas::OverlayCanvas(const RGBA32iImage& picture, const RGBA32iImage& selection, const QPoint& offset,
                             const QRect& bounds, const std::atomic<bool>* abort, const RGBA32iImage& source)
    : m_picture(picture), m_pass(picture, source, selection, offset, bounds), m_abort(abort)
{}

void OverlayCanvas::Lay(const Source& source, const QRect& area, const OverlayRule& rule) const
{
    const auto lay = [&source, &rule](YDRGBA32i* pixels, int x, int y, int count) {
        RulePass::Piece buffer;
        if (const YDRGBA32i* const over = source(x, y, count, buffer.data()))
            rule.ProcessRow(over, pixels, count);
    };
    RulePass pass = m_pass;
    pass.LimitTo(area);
    pass.Run(lay, m_abort, [] {});
}

QString OverlayCanvas::Leave(const QString& why) const
{
    Lay({}, QRect(), OverlayRule());
    return why;
}
