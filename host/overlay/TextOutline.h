#pragma once

#include <QPainterPath>

class QFont;
class QString;

/// The outlines of a text, with the middle of its box at the origin.
///
/// The box is as wide as the longest line and as high as all lines in the font's own distance. Lines are
/// centred, each runs in the direction of its own script, and any line separator begins a new one.
struct TextOutline
{
    QPainterPath letters;
    QPainterPath lines; ///< below, above and through the letters, as the font has it

    /// At most the first 4096 characters of the text count, and of a line in letters so large that it would
    /// reach across a picture several times, its beginning.
    TextOutline(const QString& text, const QFont& font);

    bool IsEmpty() const { return letters.isEmpty() && lines.isEmpty(); }
};
