#pragma once

#include "image/YDRGBA32i.h"

#include <QtGlobal>

/// A pixel rule that the tile runner and the vector routine drive.
///
/// A concrete transformation is copyable, prepares its constants when it is made, and has besides
/// `void ProcessPixel(qsizetype index) const`, not virtual so that the row loop inlines it: the pixel at
/// `index` of the processing buffer, in place. That buffer may hold a part of the picture only, so a rule
/// must not conclude from the index where in the picture a pixel lies. ProcessRow() gives the same bytes,
/// many pixels at a time.
class BaseTransformation
{
public:
    virtual ~BaseTransformation();

    /// The pixels that ProcessPixel() indexes. They must outlive the processing.
    void SetProcessingBuffer(YDRGBA32i* pixels) { m_pixels = pixels; }

    /// `count` pixels in place, with the vector instructions at hand. Needs no processing buffer; safe on
    /// several threads at once, for rows that do not overlap.
    virtual void ProcessRow(YDRGBA32i* row, int count) const = 0;

    /// Whether the vector routine may be used for this rule.
    virtual bool AllowsVectorProcessing() const;

protected:
    BaseTransformation() = default;
    BaseTransformation(const BaseTransformation&) = default;
    BaseTransformation& operator=(const BaseTransformation&) = default;

    YDRGBA32i* m_pixels = nullptr;
};
