#include "core/PixelsOnly.h"

QImage PixelsOnly(const QImage& image)
{
    if (image.isNull())
        return {};
    auto* kept = new QImage(image);
    return QImage(
        kept->constBits(), kept->width(), kept->height(), kept->bytesPerLine(), kept->format(),
        [](void* pixels) { delete static_cast<QImage*>(pixels); }, kept);
}
