#pragma once

#include "image/KVImage.h"
#include "image/YDSelectionArea.h"

#include <QPoint>
#include <QRect>

#include <array>
#include <atomic>
#include <functional>
#include <optional>

class BaseTransformation;

/// A rule over a whole picture or through a selection, in one pass over the pixels: copying from the source
/// of a preview, the rule and the blend are done to pieces of a row while these are in the nearest cache.
///
/// The bytes are those of one step after the other. Everything may be called on any thread, from a task of
/// the global thread pool too.
class RulePass
{
public:
    /// Pixels that are worked on at a time.
    static constexpr int PiecePixels = 512;
    struct alignas(64) Piece : std::array<YDRGBA32i, PiecePixels>
    {};

    /// Adjusts `count` pixels, PiecePixels at most, in place. They stand for those of row `y` from column `x`
    /// on, wherever in memory they lie. Called from several threads at once.
    using Rule = std::function<void(YDRGBA32i* pixels, int x, int y, int count)>;

    /// The rule of `transformation`, which must outlive it.
    static Rule RuleOf(const BaseTransformation& transformation);

    /// A pass that changes `image`. Where `source`, of the same size, is not empty, the image may hold
    /// anything yet and is made from that. The coverage `mask` lies at `offset` in the picture, and `bounds`
    /// is the part of it that counts; empty bounds mean that the whole picture is selected.
    RulePass(const RGBA32iImage& image, const RGBA32iImage& source, const RGBA32iImage& mask,
             const QPoint& offset, const QRect& bounds);

    /// Whether all pixels of the picture can change, and do so where they are.
    bool IsWholeInPlace() const { return !m_selected && !IsCopy(); }

    /// The part of the picture that can change.
    const QRect& Reach() const { return m_reach; }

    /// From now on nothing beside `area` can change.
    void LimitTo(const QRect& area) { m_reach &= area; }

    /// Steps of progress: one for each row of a whole picture, or for each that the selection covers and once
    /// more for each that is blended; of all rows, and of row `y`.
    unsigned Steps() const;
    unsigned StepsOf(int y) const;

    /// Applies `rule` to what can change, on all cores, the calling thread among them, until `abort`, which
    /// may be null, is set: that is tested before each row. `onStep` is called on any thread for each of the
    /// Steps().
    void Run(const Rule& rule, const std::atomic<bool>* abort, const std::function<void()>& onStep) const;

    /// Makes of `count` pixels what Run() would make of them in the picture, of which they stand for row `y`
    /// from column `x` on: what lies beside Reach() stays.
    void Adjust(YDRGBA32i* pixels, int x, int y, int count, const Rule& rule) const;

private:
    bool IsCopy() const { return !m_source.IsEmpty(); }
    void AdjustRow(int y, const Rule& rule) const;
    void Blend(YDRGBA32i* pixels, int x, int y, int count, const Rule& rule) const;

    RGBA32iImage m_image;
    RGBA32iImage m_source;
    RGBA32iImage m_mask;
    std::optional<YDSelectionArea> m_selected; ///< none: the whole picture is
    QRect m_reach;
};
