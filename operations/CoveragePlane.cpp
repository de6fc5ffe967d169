#include "operations/CoveragePlane.h"

#include "image/PixelBuffer.h"
#include "threads/ParallelRows.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <memory>
#include <new>

namespace {

constexpr int BoxCount = 3;
constexpr int CoverageRowsPerBand = 16;
constexpr int ColumnsPerStrip = 64;
/// Drawn tile by tile, because the raster engine works within 32767 pixels only.
constexpr int TileWidth = 2048;
constexpr int TileHeight = 128;
constexpr int AlphaTo16Bits = 257;

/// Radii of the boxes that together blur like a Gaussian of the given standard deviation.
std::array<int, BoxCount> BoxRadii(double sigma)
{
    const double variance = 12.0 * sigma * sigma;
    int width = int(std::floor(std::sqrt(variance / BoxCount + 1.0)));
    width -= width % 2 == 0 ? 1 : 0;
    const double narrow =
        (variance - BoxCount * double(width) * width - 4.0 * BoxCount * width - 3.0 * BoxCount) /
        (-4.0 * width - 4.0);
    const int narrowCount = std::clamp(int(std::lround(narrow)), 0, BoxCount);
    std::array<int, BoxCount> radii{};
    for (int i = 0; i < BoxCount; ++i)
        radii[std::size_t(i)] = (i < narrowCount ? width : width + 2) / 2;
    return radii;
}

/// The mean of the 2 * radius + 1 values around each of `count` lines of `lanes` values; lines beyond the
/// ends are those at the ends.
void BoxBlur(const quint16* from, quint16* to, int count, int lanes, int radius)
{
    const auto line = [from, count, lanes](int index) {
        return from + qsizetype(std::clamp(index, 0, count - 1)) * lanes;
    };
    const quint32 width = quint32(2 * radius + 1);
    std::array<quint32, ColumnsPerStrip> sums{};
    for (int i = -radius; i <= radius; ++i)
        for (int lane = 0; lane < lanes; ++lane)
            sums[std::size_t(lane)] += line(i)[lane];
    for (int i = 0; i < count; ++i) {
        quint16* const target = to + qsizetype(i) * lanes;
        const quint16* const entering = line(i + radius + 1);
        const quint16* const leaving = line(i - radius);
        for (int lane = 0; lane < lanes; ++lane) {
            quint32& sum = sums[std::size_t(lane)];
            target[lane] = quint16((sum + width / 2) / width);
            sum += entering[lane];
            sum -= leaving[lane];
        }
    }
}

/// Lines that are blurred in memory of their own.
class Lines
{
public:
    Lines(int count, int lanes)
        : m_count(count), m_lanes(lanes), m_values(Allocate(count, lanes)), m_scratch(Allocate(count, lanes))
    {}

    /// Whether there was memory for them.
    bool IsValid() const { return m_values && m_scratch; }
    quint16* Values() const { return m_values.get(); }

    void Blur(const std::array<int, BoxCount>& radii)
    {
        for (const int radius : radii) {
            if (radius == 0)
                continue;
            BoxBlur(m_values.get(), m_scratch.get(), m_count, m_lanes, radius);
            m_values.swap(m_scratch);
        }
    }

private:
    using Array = std::unique_ptr<quint16[]>;
    static Array Allocate(int count, int lanes)
    {
        return Array(new (std::nothrow) quint16[std::size_t(count) * std::size_t(lanes)]);
    }

    int m_count;
    int m_lanes;
    Array m_values;
    Array m_scratch;
};

/// A path that shares no data with `path`: painting writes to what copies share.
QPainterPath OwnCopy(const QPainterPath& path)
{
    QPainterPath copy;
    copy.addPath(path);
    copy.setFillRule(path.fillRule());
    return copy;
}

} // namespace

CoveragePlane::CoveragePlane(const QRect& area) : m_area(area)
{
    const qsizetype bytes = qsizetype(area.width()) * area.height() * qsizetype(sizeof(quint16));
    m_values = std::static_pointer_cast<quint16>(PixelBuffer::Allocate(bytes, PixelBuffer::Content::Zeroed));
}

bool CoveragePlane::Draw(const QPainterPath& shape)
{
    std::atomic<bool> isMemoryShort{false};
    return ForEachRowBand(0, m_area.height(), TileHeight, &isMemoryShort, [&](int first, int last) {
        const QPainterPath path = OwnCopy(shape);
        for (int left = 0; left < m_area.width(); left += TileWidth) {
            const int width = std::min(TileWidth, m_area.width() - left);
            QImage tile(width, last - first, QImage::Format_ARGB32_Premultiplied);
            if (tile.isNull()) {
                isMemoryShort = true;
                return;
            }
            tile.fill(Qt::transparent);
            QPainter painter(&tile);
            painter.setRenderHint(QPainter::Antialiasing);
            painter.translate(-m_area.left() - left, -m_area.top() - first);
            painter.fillPath(path, Qt::white);
            painter.end();
            for (int y = first; y < last; ++y) {
                const auto* const pixels = reinterpret_cast<const QRgb*>(tile.constScanLine(y - first));
                std::transform(pixels, pixels + width, Row(y) + left,
                               [](QRgb pixel) { return quint16(qAlpha(pixel) * AlphaTo16Bits); });
            }
        }
    });
}

bool CoveragePlane::Blur(double sigma)
{
    std::atomic<bool> isMemoryShort{false};
    const std::array<int, BoxCount> radii = BoxRadii(sigma);
    const int width = m_area.width();
    const int height = m_area.height();
    const bool isBlurredAcross =
        ForEachRowBand(0, height, CoverageRowsPerBand, &isMemoryShort, [&](int first, int last) {
            Lines lines(width, 1);
            isMemoryShort = isMemoryShort || !lines.IsValid();
            for (int y = first; y < last && !isMemoryShort; ++y) {
                std::copy_n(Row(y), width, lines.Values());
                lines.Blur(radii);
                std::copy_n(lines.Values(), width, Row(y));
            }
        });
    if (!isBlurredAcross)
        return false;
    const int strips = (width + ColumnsPerStrip - 1) / ColumnsPerStrip;
    return ForEachRowBand(0, strips, 1, &isMemoryShort, [&](int first, int) {
        const int left = first * ColumnsPerStrip;
        const int lanes = std::min(ColumnsPerStrip, width - left);
        Lines lines(height, lanes);
        if (!lines.IsValid()) {
            isMemoryShort = true;
            return;
        }
        for (int y = 0; y < height; ++y)
            std::copy_n(Row(y) + left, lanes, lines.Values() + qsizetype(y) * lanes);
        lines.Blur(radii);
        for (int y = 0; y < height; ++y)
            std::copy_n(lines.Values() + qsizetype(y) * lanes, lanes, Row(y) + left);
    });
}

QRect CoveragePlane::CoveredArea() const
{
    // What rounds to 0 of 255 counts as not covered.
    const auto isCovered = [](quint16 value) { return value > AlphaTo16Bits / 2; };
    int left = m_area.width();
    int right = -1;
    int top = m_area.height();
    int bottom = -1;
    for (int y = 0; y < m_area.height(); ++y) {
        const quint16* const row = Row(y);
        const quint16* const end = row + m_area.width();
        const quint16* const first = std::find_if(row, end, isCovered);
        if (first == end)
            continue;
        const quint16* last = end - 1;
        while (!isCovered(*last))
            --last;
        left = std::min(left, int(first - row));
        right = std::max(right, int(last - row));
        top = std::min(top, y);
        bottom = y;
    }
    if (bottom < 0)
        return {};
    return QRect(QPoint(left, top), QPoint(right, bottom)).translated(m_area.topLeft());
}

int CoveragePlane::BlurReach(double sigma)
{
    int reach = 0;
    for (const int radius : BoxRadii(sigma))
        reach += radius;
    return reach;
}
