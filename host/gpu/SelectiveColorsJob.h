#pragma once

#include "image/KVImage.h"
#include "image/SelectiveColorsRule.h"
#include "image/YDRGBA32i.h"

#include <QRect>
#include <QtGlobal>

#include <atomic>
#include <memory>

/// Pixels that somebody owns and nobody writes to.
struct SharedPixels
{
    std::shared_ptr<const unsigned char> handle;
    int width = 0;
    int height = 0;
    qint64 rowLength = 0; ///< pixels from row to row

    static SharedPixels Of(const RGBA32iImage& image)
    {
        return {image.SharedPixels(), image.Width(), image.Height(), image.RowLength()};
    }

    const YDRGBA32i* Row(qint64 y) const
    {
        return reinterpret_cast<const YDRGBA32i*>(handle.get()) + y * rowLength;
    }
    qint64 BytesPerLine() const { return rowLength * qint64(sizeof(YDRGBA32i)); }

    /// Whether both are the same pixels of the same owner.
    bool IsSameAs(const SharedPixels& other) const
    {
        return handle == other.handle && !handle.owner_before(other.handle) &&
               !other.handle.owner_before(handle) && width == other.width && height == other.height &&
               rowLength == other.rowLength;
    }
};

/// One picture to be adjusted, and how.
struct SelectiveColorsJob
{
    SharedPixels source; ///< never empty
    SharedPixels mask;   ///< coverage in the alpha; without a handle: no selection
    qint64 maskX = 0;    ///< where the mask lies in the picture
    qint64 maskY = 0;
    SelectiveColorsRule rule{{}, SelectiveParamsList::Relative};
    bool isContentNew = false; ///< what was known of the source and the mask holds no longer
    bool isBorrowed = false;   ///< the pixels may go once the job is done, whatever their handles say

    bool HasMask() const { return bool(mask.handle); }

    /// The part of the picture that is adjusted: all of it without a mask, else what the mask reaches; an
    /// empty rectangle at (0, 0) where it misses the picture.
    QRect Reached() const;
};
