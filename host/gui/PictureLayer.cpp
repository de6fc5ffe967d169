#include "gui/PictureLayer.h"

#include <QPainter>

#include <cmath>

namespace {

/// Down to this zoom a picture without a reduced copy is drawn from its own pixels.
constexpr double SmallestDirectZoom = 0.25;
/// Longest side of an image that goes to QPainter, whose texture coordinates end at 32767.
constexpr int LongestDrawnSide = 16384;
/// Pixels that a stand-in for a missing copy may have: what a few milliseconds allow.
constexpr qint64 MostStandInPixels = 1 << 19;
constexpr int CheckerSize = 8; ///< view units

QSize SizeOf(const RGBA32iImage& picture) { return {picture.Width(), picture.Height()}; }

/// The cells of a picture that `area` touches, one more all round for smooth scaling.
QRect CellsIn(const QRectF& area, const PictureLayer::Placement& placement, int cell, const QSize& cells)
{
    const double size = placement.scale * cell;
    const QRectF inCells((area.topLeft() - placement.origin) / size, area.size() / size);
    return inCells.toAlignedRect().adjusted(-1, -1, 1, 1) & QRect(QPoint(0, 0), cells);
}

/// A view of the pixels in `area`, which live as long as `pixels` does.
QImage ViewOf(const RGBA32iImage& pixels, const QRect& area, QImage::Format format)
{
    return QImage(reinterpret_cast<const uchar*>(pixels.Row(area.top()) + area.left()), area.width(),
                  area.height(), static_cast<int>(pixels.BytesPerLine()), format);
}

bool IsOpaque(const RGBA32iImage& pixels, const QRect& area)
{
    for (int y = area.top(); y <= area.bottom(); ++y) {
        QRgb common = ~QRgb(0);
        const YDRGBA32i* const row = pixels.Row(y);
        for (int x = area.left(); x <= area.right(); ++x)
            common &= QRgb(row[x]);
        if (qAlpha(common) != 255)
            return false;
    }
    return true;
}

/// Every `cell`-th pixel of every `cell`-th row.
QImage Decimated(const RGBA32iImage& pixels, const QRect& cells, int cell)
{
    QImage image(cells.size(), QImage::Format_ARGB32);
    for (int y = 0; y < cells.height(); ++y) {
        const YDRGBA32i* const row = pixels.Row((cells.top() + y) * cell);
        auto* const line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < cells.width(); ++x)
            line[x] = row[qsizetype(cells.left() + x) * cell];
    }
    return image;
}

void DrawCheckerboard(QPainter& painter, const QPointF& origin, const QRectF& area, bool isDark)
{
    const QColor tones[] = {isDark ? QColor(104, 104, 104) : QColor(255, 255, 255),
                            isDark ? QColor(80, 80, 80) : QColor(214, 214, 214)};
    QImage tile(2 * CheckerSize, 2 * CheckerSize, QImage::Format_RGB32);
    for (int y = 0; y < tile.height(); ++y)
        for (int x = 0; x < tile.width(); ++x)
            tile.setPixelColor(x, y, tones[(x / CheckerSize + y / CheckerSize) % 2]);
    // The texture starts within one tile, because far origins lose precision.
    const QPointF start(std::fmod(origin.x(), tile.width()), std::fmod(origin.y(), tile.height()));
    painter.setBrushOrigin(start);
    painter.fillRect(area, QBrush(tile));
}

} // namespace

PictureLayer::PictureLayer(QObject* parent) : QObject(parent)
{
    connect(&m_reduction, &LatestJobBase::ResultReadyAt, this,
            [this](int index) { OnReduced(m_reduction.ResultAt(index)); });
}

PictureLayer::~PictureLayer() = default;

void PictureLayer::SetPicture(const RGBA32iImage& picture, double zoom)
{
    if (picture.IsEmpty() || SizeOf(picture) != SizeOf(m_picture)) {
        AbortReduction();
        m_copy = {};
        m_wasSeen = false;
    }
    m_picture = picture;
    ++m_pictureNumber;
    SetZoom(zoom);
    if (Wanted().factor == 1)
        m_copy = {}; // it is not on the screen, and would be the wrong picture when it came there
    emit Changed();
}

void PictureLayer::SetZoom(double zoom)
{
    m_zoom = zoom;
    RequestCopy();
}

void PictureLayer::TakeOver(const PictureLayer& other)
{
    AbortReduction();
    m_picture = other.m_picture;
    ++m_pictureNumber;
    m_zoom = other.m_zoom;
    m_copy = other.m_copy;
    m_wasSeen = other.m_wasSeen;
    m_copyRequest = {m_pictureNumber, other.m_copyRequest.factor};
    if (other.m_copyRequest.picture != other.m_pictureNumber)
        m_copyRequest.picture = 0; // still the copy of the picture before
    m_lastRequest = m_copyRequest;
    RequestCopy();
    emit Changed();
}

bool PictureLayer::IsAwaitingFirstCopy() const { return !m_wasSeen && m_isCopyBeingMade; }

void PictureLayer::Draw(QPainter& painter, const Placement& placement, const QRect& area, bool isDark) const
{
    if (area.isEmpty())
        return;
    const QRectF bounds(placement.origin, QSizeF(SizeOf(m_picture)) * placement.scale);
    const QRectF visible = bounds & QRectF(area);
    if (visible.isEmpty())
        return;
    const Cells cells = CellsFor(visible, placement);
    if (cells.image.isNull())
        return;
    const double size = placement.scale * cells.cell;
    const QRectF target(placement.origin + QPointF(cells.first) * size, QSizeF(cells.image.size()) * size);
    painter.save();
    painter.setClipRect(visible);
    if (cells.image.format() != QImage::Format_RGB32)
        DrawCheckerboard(painter, placement.origin, visible, isDark);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, cells.cell > 1 || m_zoom < 1);
    painter.drawImage(target, cells.image);
    painter.restore();
}

PictureLayer::Cells PictureLayer::CellsFor(const QRectF& visible, const Placement& placement) const
{
    const bool isDirect = Wanted().factor == 1 || (m_copy.pixels.IsEmpty() && m_zoom >= SmallestDirectZoom);
    const QRect part = CellsIn(visible, placement, 1, SizeOf(m_picture));
    if (isDirect && std::max(part.width(), part.height()) <= LongestDrawnSide) {
        const bool isAtLeastHalf = Wanted().factor == 1;
        const bool isOpaque = isAtLeastHalf && (IsKnownOpaque() || IsOpaque(m_picture, part));
        const QImage view = ViewOf(m_picture, part, isOpaque ? QImage::Format_RGB32 : QImage::Format_ARGB32);
        if (isOpaque || !isAtLeastHalf || m_zoom >= 1)
            return {view, part.topLeft(), 1};
        // Smooth scaling of plain ARGB32 costs QPainter more than this and the scaling together.
        return {view.convertToFormat(QImage::Format_ARGB32_Premultiplied), part.topLeft(), 1};
    }
    if (!m_copy.pixels.IsEmpty()) {
        const QRect copyPart = CellsIn(visible, placement, m_copy.factor, SizeOf(m_copy.pixels));
        const QImage::Format format =
            m_copy.isOpaque ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied;
        return {ViewOf(m_copy.pixels, copyPart, format), copyPart.topLeft(), m_copy.factor};
    }
    return StandInFor(visible, placement);
}

PictureLayer::Cells PictureLayer::StandInFor(const QRectF& visible, const Placement& placement) const
{
    QRect part;
    int cell = Wanted().factor;
    for (;; cell *= 2) {
        const QSize cells((m_picture.Width() - 1) / cell + 1, (m_picture.Height() - 1) / cell + 1);
        part = CellsIn(visible, placement, cell, cells);
        if (qint64(part.width()) * part.height() <= MostStandInPixels)
            break;
    }
    return {Decimated(m_picture, part, cell), part.topLeft(), cell};
}

bool PictureLayer::IsKnownOpaque() const
{
    return m_copy.isOpaque && m_copyRequest.picture == m_pictureNumber;
}

void PictureLayer::RequestCopy()
{
    const Request wanted = Wanted();
    if (m_picture.IsEmpty() || wanted.factor == 1) {
        m_wasSeen = !m_picture.IsEmpty();
        return;
    }
    if (m_isCopyBeingMade && m_lastRequest.factor != wanted.factor)
        AbortReduction(); // the finished reduction of another factor would be thrown away at once
    if (m_isCopyBeingMade || m_lastRequest == wanted)
        return;
    m_lastRequest = wanted;
    m_isCopyBeingMade = true;
    m_reduction.Request();
}

/// Of the picture that there is by now: an aborted reduction may have been let end first.
LatestJob<ReducedPicture>::Work PictureLayer::MakeReduction()
{
    m_lastRequest.picture = m_pictureNumber;
    return [picture = m_picture, factor = m_lastRequest.factor](const std::atomic<bool>& abort) {
        return ReducedPicture::Reduce(picture, factor, &abort);
    };
}

void PictureLayer::AbortReduction()
{
    if (!m_isCopyBeingMade)
        return;
    m_isCopyBeingMade = false;
    m_lastRequest = {};
    m_reduction.Abort();
}

void PictureLayer::OnReduced(const ReducedPicture& copy)
{
    m_isCopyBeingMade = false;
    const bool isOnScreen = Wanted().factor != 1;
    if (!copy.pixels.IsEmpty() && (isOnScreen || m_lastRequest.picture == m_pictureNumber)) {
        m_copy = copy;
        m_copyRequest = m_lastRequest;
        m_wasSeen = true;
    }
    RequestCopy();
    emit Changed();
}
