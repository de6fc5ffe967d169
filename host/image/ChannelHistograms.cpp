#include "image/ChannelHistograms.h"

#include "image/Luma709.h"
#include "image/ParallelRows.h"

#include <QImage>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <mutex>

namespace {

/// Large enough that the tables of a band cost little, small enough that an abort is noticed at once.
constexpr int PixelsPerBand = 1 << 18;

/// Some rows of pixels somewhere in memory.
struct PixelRows
{
    const YDRGBA32i* pixels;
    qsizetype stride; ///< pixels from row to row
    int width;
    int height;
};

/// The counts of one band. Neighbouring pixels are counted in tables of their own: they often have the same
/// level, and a count that was just stored can only be loaded again some cycles later.
class BandCounts
{
public:
    void AddRow(const YDRGBA32i* row, int width)
    {
        int x = 0;
        for (; x + Ways <= width; x += Ways) {
#if defined(__GNUC__)
            __builtin_prefetch(reinterpret_cast<const char*>(row + x) + PrefetchDistance);
#endif
            for (int way = 0; way < Ways; ++way)
                Add(m_tables[way], row[x + way]);
        }
        for (; x < width; ++x)
            Add(m_tables[0], row[x]);
    }

    void AddTo(ChannelHistograms& sums) const
    {
        for (const Tables& tables : m_tables)
            for (std::size_t level = 0; level < ChannelHistograms::Levels; ++level) {
                sums.red[level] += tables.red[level];
                sums.green[level] += tables.green[level];
                sums.blue[level] += tables.blue[level];
                sums.luma[level] += tables.luma[level];
            }
    }

private:
    static constexpr int Ways = 2;
    static constexpr qsizetype PrefetchDistance = 3 * 1024;

    /// A band of one row has fewer than 2^31 pixels, one of several rows PixelsPerBand at most.
    using Table = std::array<quint32, ChannelHistograms::Levels>;
    struct Tables
    {
        /// Keeps the counts of a level from lying 4096 bytes apart, which a processor takes for the same
        /// place when it looks whether a count was just stored.
        static constexpr std::size_t Gap = 272;

        Table red{};
        Table green{};
        Table blue{};
        Table luma{};
        std::array<std::byte, Gap> gap{};
    };

    static void Add(Tables& tables, const YDRGBA32i& pixel)
    {
        ++tables.red[pixel.r];
        ++tables.green[pixel.g];
        ++tables.blue[pixel.b];
        ++tables.luma[std::size_t(Luma709::Of(pixel))];
    }

    std::array<Tables, Ways> m_tables{};
};

std::optional<ChannelHistograms> Count(const PixelRows& rows, const std::atomic<bool>* abort)
{
    ChannelHistograms sums;
    std::mutex sumsLock;
    const int rowsPerBand = std::max(1, PixelsPerBand / std::max(1, rows.width));
    const bool isWhole = ForEachRowBand(0, rows.height, rowsPerBand, abort, [&](int first, int last) {
        BandCounts counts;
        for (int y = first; y < last; ++y)
            counts.AddRow(rows.pixels + y * rows.stride, rows.width);
        const std::lock_guard<std::mutex> lock(sumsLock);
        counts.AddTo(sums);
    });
    if (!isWhole || (abort && abort->load(std::memory_order_relaxed)))
        return std::nullopt;
    sums.pixels = qint64(rows.width) * rows.height;
    return sums;
}

bool HoldsPixelsAsTheyAre(QImage::Format format)
{
    return format == QImage::Format_RGB32 || format == QImage::Format_ARGB32;
}

} // namespace

std::optional<ChannelHistograms> ChannelHistograms::Of(const RGBA32iImage& picture, const QRect& area,
                                                       const std::atomic<bool>* abort)
{
    const QRect part = area & QRect(0, 0, picture.Width(), picture.Height());
    if (part.isEmpty())
        return ChannelHistograms();
    return Count({picture.Row(part.top()) + part.left(), picture.RowLength(), part.width(), part.height()},
                 abort);
}

std::optional<ChannelHistograms> ChannelHistograms::Of(const QImage& image, const std::atomic<bool>* abort)
{
    if (image.isNull())
        return ChannelHistograms();
    const QImage pixels =
        HoldsPixelsAsTheyAre(image.format()) ? image : image.convertToFormat(QImage::Format_ARGB32);
    if (pixels.isNull())
        return std::nullopt;
    constexpr auto PixelSize = qsizetype(sizeof(YDRGBA32i));
    return Count({reinterpret_cast<const YDRGBA32i*>(pixels.constBits()), pixels.bytesPerLine() / PixelSize,
                  pixels.width(), pixels.height()},
                 abort);
}
