#include "overlay/TextCoverage.h"

#include "overlay/TextOutline.h"
#include "threads/ParallelRows.h"

#include <QPainter>
#include <QTransform>

#include <algorithm>

namespace {

/// A painter cannot reach beyond 32767; and several pieces keep all cores busy.
constexpr int PieceSide = 1024;

constexpr int FullTurn = 360;

void PaintPiece(QImage& piece, const QPainterPath& path, const QPoint& corner)
{
    if (path.isEmpty())
        return;
    QPainterPath own; // what a painter notes down in a path is not for several threads
    own.addPath(path);
    own.setFillRule(path.fillRule());
    own.translate(-corner);
    QPainter painter(&piece);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(own, Qt::black);
}

} // namespace

TextCoverage::TextCoverage(const TextOutline& text, int angle, const QRect& window)
{
    const QTransform turn = QTransform().rotate(angle % FullTurn);
    const QPainterPath letters = turn.map(text.letters);
    const QPainterPath lines = turn.map(text.lines);
    const QRect covered =
        ((letters.boundingRect() | lines.boundingRect()).adjusted(-1, -1, 1, 1) & QRectF(window))
            .toAlignedRect() &
        window;
    if (covered.isEmpty())
        return;
    origin = covered.topLeft();
    image = QImage(covered.size(), QImage::Format_Alpha8);
    isOutOfMemory = image.isNull();
    if (isOutOfMemory)
        return;
    image.fill(0);
    const int across = (image.width() + PieceSide - 1) / PieceSide;
    const int down = (image.height() + PieceSide - 1) / PieceSide;
    uchar* const bytes = image.bits();
    ForEachRowBand(0, across * down, 1, nullptr, [&](int first, int) {
        const QPoint corner(first % across * PieceSide, first / across * PieceSide);
        QImage piece(bytes + qsizetype(corner.y()) * image.bytesPerLine() + corner.x(),
                     std::min(PieceSide, image.width() - corner.x()),
                     std::min(PieceSide, image.height() - corner.y()), image.bytesPerLine(),
                     QImage::Format_Alpha8);
        PaintPiece(piece, letters, origin + corner);
        PaintPiece(piece, lines, origin + corner);
    });
}
