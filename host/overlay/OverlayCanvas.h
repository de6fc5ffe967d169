#pragma once

#include "image/KVImage.h"
#include "image/RulePass.h"

#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>

#include <atomic>
#include <functional>

struct OverlayRule;

/// A picture that is drawn on, in place, and the selection that limits this.
class OverlayCanvas
{
public:
    /// The coverage `selection` lies at `offset` in the picture, and `bounds` is the part of it that counts;
    /// empty bounds mean that the whole picture is selected. Drawing stops in the middle once `abort` is set,
    /// which may be null and must outlive the canvas. Where `source`, of the same size, is not empty, the
    /// picture may hold anything yet, and Lay() or Leave() makes it from that.
    OverlayCanvas(const RGBA32iImage& picture, const RGBA32iImage& selection, const QPoint& offset,
                  const QRect& bounds, const std::atomic<bool>* abort = nullptr,
                  const RGBA32iImage& source = {});

    bool IsAborted() const { return m_abort && m_abort->load(std::memory_order_relaxed); }

    QSize Size() const { return {m_picture.Width(), m_picture.Height()}; }

    /// The part of the picture that can change.
    const QRect& Reach() const { return m_pass.Reach(); }

    /// The longest piece of a row that is asked for at once.
    static constexpr int PiecePixels = RulePass::PiecePixels;

    /// The overlay's pixels above the `count` pixels of row `y` from column `x` on, put into `buffer` or kept
    /// elsewhere; null where there are none. Called from several threads at once.
    using Source = std::function<const YDRGBA32i*(int x, int y, int count, YDRGBA32i buffer[PiecePixels])>;

    /// Lays an overlay onto the part of `area` that can change, on all cores, and blends the result through
    /// the selection as YDBlend::YDSourceBySelection does. Once: where the picture is made from a source,
    /// that is copied along.
    void Lay(const Source& source, const QRect& area, const OverlayRule& rule) const;

    /// Lays nothing. Returns `why`, for people.
    QString Leave(const QString& why = {}) const;

private:
    RGBA32iImage m_picture;
    RulePass m_pass;
    const std::atomic<bool>* m_abort;
};
