#include "overlay/DrawText.h"

#include "image/ColorToRgba.h"
#include "image/OverlayRule.h"
#include "image/Percent.h"
#include "overlay/OverlayArea.h"
#include "overlay/OverlayCanvas.h"
#include "overlay/TextCoverage.h"
#include "overlay/TextOutline.h"
#include "overlay/TextOverlay.h"

#include <QCoreApplication>
#include <QVarLengthArray>

#include <algorithm>
#include <array>

namespace {

using Places = QVarLengthArray<int, TextOverlay::MaxTiles>;
using Coverage = std::array<quint8, OverlayCanvas::PiecePixels>;

/// The middles of so many equal parts.
Places Middles(int tiles, int start, int length)
{
    const int count = std::clamp(tiles, 1, TextOverlay::MaxTiles);
    Places middles;
    for (int index = 0; index < count; ++index)
        middles.append(OverlayArea::MiddleOfPart(index, count, start, length));
    return middles;
}

/// What can be seen of a text in `area`, from the middle of it, wherever in the grid it stands.
QRect Window(const QRect& area, const Places& columns, const Places& rows)
{
    return {QPoint(area.left() - columns.last(), area.top() - rows.last()),
            QPoint(area.right() - columns.first(), area.bottom() - rows.first())};
}

/// The texts of a grid as pixels.
class TextGrid
{
public:
    TextGrid(const TextCoverage& text, const Places& columns, const Places& rows, QRgb color)
        : m_text(text), m_columns(columns), m_rows(rows), m_color(color)
    {}

    const YDRGBA32i* operator()(int x, int y, int count, YDRGBA32i* buffer) const
    {
        Coverage coverage;
        bool isCovered = false;
        for (const int middle : m_rows) {
            const int row = y - middle - m_text.origin.y();
            if (row < 0 || row >= m_text.image.height())
                continue;
            if (!isCovered)
                std::fill_n(coverage.begin(), count, quint8(0));
            isCovered = true;
            CoverRow(m_text.image.constScanLine(row), x, count, coverage);
        }
        if (!isCovered)
            return nullptr;
        std::transform(coverage.begin(), coverage.begin() + count, buffer, [this](quint8 covered) {
            YDRGBA32i pixel = m_color;
            pixel.a = covered;
            return pixel;
        });
        return buffer;
    }

private:
    /// Adds one row of the text at each of its places.
    void CoverRow(const quint8* line, int x, int count, Coverage& coverage) const
    {
        for (const int middle : m_columns) {
            const int left = middle + m_text.origin.x();
            const int first = std::max(x, left);
            const int last = std::min(x + count, left + m_text.image.width());
            for (int i = first; i < last; ++i) {
                quint8& covered = coverage[std::size_t(i - x)];
                covered = std::max(covered, line[i - left]);
            }
        }
    }

    const TextCoverage& m_text;
    const Places& m_columns;
    const Places& m_rows;
    const YDRGBA32i m_color;
};

} // namespace

QString DrawText(const TextOverlay& overlay, const OverlayCanvas& canvas)
{
    constexpr double Opaque = 255.0;
    const QRgb color = ColorToRgba(overlay.color);
    const double opacity =
        std::clamp(overlay.opacity, 0, FullPercent) / double(FullPercent) * (qAlpha(color) / Opaque);
    const QRect area = OverlayArea::Inside(overlay.margins, canvas.Size());
    const QRect reach = area & canvas.Reach();
    if (opacity <= 0.0 || reach.isEmpty())
        return canvas.Leave();
    const TextOutline outline(overlay.text, overlay.font);
    if (outline.IsEmpty())
        return canvas.Leave();
    const Places columns = Middles(overlay.hrzTiles, area.left(), area.width());
    const Places rows = Middles(overlay.vrtTiles, area.top(), area.height());
    // Not of what can change alone: where a painter's edges lie moves what it covers by a level or two.
    const TextCoverage text(outline, overlay.angle, Window(area, columns, rows));
    if (text.isOutOfMemory)
        return canvas.Leave(
            QCoreApplication::translate("DrawText", "there is not enough memory for the text"));
    if (text.image.isNull())
        return canvas.Leave();
    canvas.Lay(TextGrid(text, columns, rows, color), reach, OverlayRule(overlay.blendingMode, opacity));
    return {};
}
