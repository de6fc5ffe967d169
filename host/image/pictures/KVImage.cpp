#include "image/KVImage.h"

RGBA32iImage ImageFromQImage(const QImage& image)
{
    // ARGB32 is copied as it is; every other format is converted once for the whole picture, so that
    // colour tables and premultiplied alpha are Qt's business.
    const QImage argb =
        image.format() == QImage::Format_ARGB32 ? image : image.convertToFormat(QImage::Format_ARGB32);
    RGBA32iImage result = RGBA32iImage::Uninitialized(argb.width(), argb.height());
    if (!result.IsEmpty())
        PixelBuffer::CopyRows(argb.constBits(), argb.bytesPerLine(), result.Pixels(), result.BytesPerLine(),
                              result.Width() * qsizetype(sizeof(YDRGBA32i)), result.Height());
    return result;
}

QImage ImageToQImage(const RGBA32iImage& image)
{
    if (image.IsEmpty())
        return {};
    auto* const keepAlive = new RGBA32iImage(image);
    // The read-only constructor: a QImage that is written to makes a copy first.
    return QImage(
        reinterpret_cast<const uchar*>(image.Pixels()), image.Width(), image.Height(),
        static_cast<int>(image.BytesPerLine()), QImage::Format_ARGB32,
        [](void* value) { delete static_cast<RGBA32iImage*>(value); }, keepAlive);
}
