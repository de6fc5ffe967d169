#pragma once

#include "core/KVImageFileManager.h"
#include "image/KVImage.h"

#include <QPoint>
#include <QRect>

/// The part of a picture that adjustments are limited to.
class SelectionMask
{
public:
    /// Reads a picture whose grey values are the coverage; what is transparent covers nothing. `position` is
    /// where its upper left corner lies in the pictures. An error text, empty for none.
    [[nodiscard]] QString Read(const QString& path, const QPoint& position,
                               const KVImageFileManager::ReadOptions& options);

    /// False for no mask at all, which limits nothing.
    bool IsSet() const { return m_isSet; }

    /// Whether the mask covers nothing at all.
    bool IsEmpty() const { return m_pixels.IsEmpty(); }

    /// What an adjustment is given: coverage in all four channels, cropped to what is covered.
    const RGBA32iImage& Pixels() const { return m_pixels; }
    QPoint Offset() const { return m_offset; }
    QRect BoundingRect() const { return {0, 0, m_pixels.Width(), m_pixels.Height()}; }

private:
    bool m_isSet = false;
    RGBA32iImage m_pixels;
    QPoint m_offset;
};
