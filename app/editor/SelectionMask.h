#pragma once

#include "image/KVImage.h"

#include <QMetaType>
#include <QPainterPath>
#include <QPoint>
#include <QRect>
#include <QSize>

/// How strongly each pixel of a picture is selected, in the form that adjustments take it; a shared value.
///
/// The coverage image holds 0 (not selected) to 255 (selected) in all four channels. It is cropped to the
/// pixels that are selected at all, so that adjustments skip the rest of the picture.
class SelectionMask
{
public:
    static constexpr int MaxFeather = 500; ///< pixels

    /// Nothing limits the adjustment: the whole picture is selected.
    SelectionMask() = default;

    /// The mask of `shape`, in coordinates of a picture of the given size, with antialiased edges.
    ///
    /// `feather` is the distance in pixels, on either side, over which the edge fades out; it is bounded by
    /// MaxFeather. Where the shape reaches the picture's border it stays as it is, as if the picture went
    /// on. A shape that selects not even a part of a pixel gives a mask of one pixel that is not selected.
    /// Works on all cores, and may be called from a task of the global thread pool.
    static SelectionMask Make(const QPainterPath& shape, int feather, const QSize& picture);

    bool SelectsAll() const { return m_coverage.IsEmpty(); }
    RGBA32iImage Coverage() const { return m_coverage; }
    /// Where the coverage image stands in the picture.
    QPoint Offset() const { return m_offset; }
    /// The coverage image's own rectangle; empty when the whole picture is selected.
    QRect BoundingRect() const { return {0, 0, m_coverage.Width(), m_coverage.Height()}; }

private:
    RGBA32iImage m_coverage;
    QPoint m_offset;
};

Q_DECLARE_METATYPE(SelectionMask)
