#pragma once

#include <QImage>
#include <QRect>

struct TextOutline;

/// How far a turned text covers the pixels around its middle.
struct TextCoverage
{
    QImage image;  ///< Format_Alpha8; null where nothing is to be seen, or where memory is short
    QPoint origin; ///< of its upper left corner, seen from the middle of the text
    bool isOutOfMemory = false;

    /// Of a text turned clockwise by `angle` degrees, which may be any number, what lies in `window`, which
    /// is seen from the middle of the text too.
    TextCoverage(const TextOutline& text, int angle, const QRect& window);
};
