#pragma once

#include <QFont>

/// Fonts of overlays, as they are stored: everything in them may hold any value.
namespace OverlayFont {

/// Larger fonts count as this one.
constexpr int MaxPixels = 10000;

/// The font's size in pixels of the picture, 1..MaxPixels: its pixels if it has any, otherwise its points, of
/// which 72 make an inch, and 96 pixels. 0 for a size of 0, below it, or one that is no number.
///
/// No screen and no resolution of a file takes part, so that a text is as large in every program and on every
/// machine.
int PixelSize(const QFont& font);

/// The same typeface at a size of `pixels`, with outlines that no hinting bends and without lines below or
/// through the text; what else is out of bounds counts as the nearest bound.
QFont Typeface(const QFont& font, int pixels);

} // namespace OverlayFont
