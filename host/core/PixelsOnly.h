#pragma once

#include <QImage>

/// The same pixels, shared, without texts, colour space and resolution; QImage cannot forget a text.
QImage PixelsOnly(const QImage& image);
