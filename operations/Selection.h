#pragma once

#include "image/KVImage.h"

#include <QMetaType>
#include <QPoint>
#include <QRect>

namespace operations {

/// Which pixels of a picture are adjusted, and how strongly; a shared value.
struct Selection
{
    /// The whole picture.
    Selection() = default;
    Selection(const RGBA32iImage& coverage, const QPoint& position, const QRect& part)
        : mask(coverage), offset(position), bounds(part)
    {}

    /// The coverage, 0 (a pixel stays) to 255 (it is adjusted), in all four channels. Nobody writes to it
    /// while a task has the selection.
    RGBA32iImage mask;
    /// Where the mask's upper left corner lies in the picture; anywhere. Where a coordinate is negative, the
    /// mask is read from as much further inside, wherever the bounds begin: bounds at (0, 0) mean what they
    /// say.
    QPoint offset;
    /// The part of the mask that counts, in its coordinates; empty: nothing limits the adjustment.
    QRect bounds;
    /// There was no memory for the mask: a task says so and adjusts nothing.
    bool isMissing = false;

    bool SelectsAll() const { return bounds.isEmpty(); }

    /// What `coverage` selects with its upper left corner at `offset` in the picture. An empty image selects
    /// nothing; the mask is one pixel then that is not selected.
    static Selection Of(const RGBA32iImage& coverage, const QPoint& offset)
    {
        const RGBA32iImage mask = coverage.IsEmpty() ? RGBA32iImage(1, 1) : coverage;
        return {mask, offset, QRect(0, 0, mask.Width(), mask.Height())};
    }

    /// What stands for a mask that there was no memory for. It selects nothing.
    static Selection Missing()
    {
        Selection missing = Of(RGBA32iImage(), QPoint());
        missing.isMissing = true;
        return missing;
    }
};

} // namespace operations

Q_DECLARE_METATYPE(operations::Selection)
