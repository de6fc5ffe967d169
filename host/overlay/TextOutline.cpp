#include "overlay/TextOutline.h"

#include "overlay/OverlayFont.h"

#include <QFontMetricsF>
#include <QStringList>

#include <algorithm>

namespace {

constexpr int MaxCharacters = 4096;
constexpr int MaxLinePixels = 250'000; ///< in characters as wide as they are high

/// Without anything that is no part of a line; a tabulator is a space.
QStringList LinesOf(const QString& text)
{
    QString whole = text.left(MaxCharacters);
    if (!whole.isEmpty() && whole.at(whole.size() - 1).isHighSurrogate())
        whole.chop(1); // half a character
    whole.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    QStringList lines{QString()};
    for (const QChar character : qAsConst(whole)) {
        const bool isSeparator = character.category() == QChar::Separator_Line ||
                                 character.category() == QChar::Separator_Paragraph;
        if (isSeparator || character == QLatin1Char('\n') || character == QLatin1Char('\r'))
            lines.append(QString());
        else if (character == QLatin1Char('\t'))
            lines.last().append(QLatin1Char(' '));
        else if (character.category() != QChar::Other_Control)
            lines.last().append(character);
    }
    return lines;
}

} // namespace

TextOutline::TextOutline(const QString& text, const QFont& font)
{
    letters.setFillRule(Qt::WindingFill);
    lines.setFillRule(Qt::WindingFill);
    const int pixels = OverlayFont::PixelSize(font);
    if (pixels == 0)
        return;
    const QFont typeface = OverlayFont::Typeface(font, pixels);
    const QFontMetricsF metrics(typeface);
    const QStringList rows = LinesOf(text);
    double baseline = metrics.ascent() - ((rows.size() - 1) * metrics.lineSpacing() + metrics.height()) / 2;
    for (const QString& row : rows) {
        const QString shown = row.left(std::max(MaxLinePixels / pixels, 1));
        const double width = metrics.horizontalAdvance(shown);
        letters.addText(QPointF(-width / 2, baseline), typeface, shown);
        const auto addLine = [&](bool isWanted, double y) {
            if (isWanted && width > 0)
                lines.addRect(-width / 2, baseline + y - metrics.lineWidth() / 2, width, metrics.lineWidth());
        };
        addLine(font.underline(), metrics.underlinePos());
        addLine(font.overline(), -metrics.overlinePos());
        addLine(font.strikeOut(), -metrics.strikeOutPos());
        baseline += metrics.lineSpacing();
    }
}
