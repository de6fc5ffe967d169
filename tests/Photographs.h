#pragma once

#include "image/KVImage.h"

#include <QImage>
#include <QString>

/// Real photographs, of the package that `dev` installs.
namespace Photographs {

/// The photograph of that file name, scaled down to `width` pixels; empty if it is not installed.
inline RGBA32iImage Load(const QString& name, int width)
{
    const QImage image(QStringLiteral("/usr/share/backgrounds/") + name);
    return ImageFromQImage(image.scaledToWidth(width, Qt::SmoothTransformation));
}

} // namespace Photographs
