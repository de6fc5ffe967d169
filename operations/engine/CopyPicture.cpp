#include "CopyPicture.h"

RGBA32iImage CopyPicture(const RGBA32iImage& source, const std::atomic<bool>* abort)
{
    auto copy = RGBA32iImage::Uninitialized(source.Width(), source.Height());
    if (copy.IsEmpty() ||
        !PixelBuffer::CopyRows(source.Pixels(), source.BytesPerLine(), copy.Pixels(), copy.BytesPerLine(),
                               source.Width() * qsizetype(sizeof(YDRGBA32i)), source.Height(), abort))
        return {};
    return copy;
}
