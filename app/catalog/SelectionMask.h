#pragma once

#include "image/KVImage.h"

#include <QMetaType>
#include <QPoint>
#include <QRect>

/// How strongly each pixel of a picture is selected, in the form that adjustments take it; a shared value.
///
/// The coverage image holds 0 (not selected) to 255 (selected) in all four channels. It is cropped to the
/// pixels that are selected at all, so that adjustments skip the rest of the picture.
class SelectionMask
{
public:
    /// Nothing limits the adjustment: the whole picture is selected.
    SelectionMask() = default;

    /// `coverage` with its upper left corner at `offset` in the picture. An empty image selects nothing; the
    /// mask is one pixel then that is not selected.
    SelectionMask(const RGBA32iImage& coverage, const QPoint& offset);

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
