#include "image/ChannelHistograms.h"

#include "image/Luma709.h"
#include "image/PrefetchPixels.h"
#include "image/VectorKernels.h"
#include "threads/ParallelRows.h"
#include "utilities/AVX2LIB.h"

#include <QImage>

#include <algorithm>
#include <cstddef>
#include <cstdint>
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
    QPoint origin; ///< of the first of them in the picture
};

/// The counts of one band. Neighbouring pixels are counted in tables of their own: they often have the same
/// level, and a count that was just stored can only be loaded again some cycles later.
class BandCounts
{
public:
    /// Counts what `rule`, if any, makes of row `y` of `rows`. `end` is where the memory of the rows ends.
    void AddRow(const PixelRows& rows, int y, const YDRGBA32i* end, const RulePass::Rule& rule)
    {
        const YDRGBA32i* const row = rows.pixels + y * rows.stride;
        int count = 0;
        for (int x = 0; x < rows.width; x += count) {
            count = std::min(PiecePixels, rows.width - x);
            PrefetchPixels(row + x, PixelsAhead, PiecePixels, end);
            if (!rule) {
                AddPiece(row + x, count);
                continue;
            }
            std::array<YDRGBA32i, PiecePixels> made;
            std::copy_n(row + x, count, made.begin());
            rule(made.data(), rows.origin.x() + x, rows.origin.y() + y, count);
            AddPiece(made.data(), count);
        }
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
    static constexpr int PiecePixels = 256; ///< a kilobyte, whose lumas are computed together
    static constexpr qsizetype PixelsAhead = 768;

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

    void AddPiece(const YDRGBA32i* pixels, int count)
    {
        std::array<quint8, PiecePixels> lumas;
        quint8* const luma = lumas.data();
        LumaOf(pixels, count, luma);
        int x = 0;
        for (; x + Ways <= count; x += Ways)
            for (int way = 0; way < Ways; ++way)
                Add(m_tables[way], pixels[x + way], luma[x + way]);
        for (; x < count; ++x)
            Add(m_tables[0], pixels[x], luma[x]);
    }

    static void Add(Tables& tables, const YDRGBA32i& pixel, quint8 luma)
    {
        ++tables.red[pixel.r];
        ++tables.green[pixel.g];
        ++tables.blue[pixel.b];
        ++tables.luma[luma];
    }

    static void LumaOf(const YDRGBA32i* pixels, int count, quint8* luma)
    {
        static const auto kernel = AVX2LIB::Find(VectorKernels::LumaRow);
        if (kernel) {
            kernel(pixels, count, luma);
            return;
        }
        for (int x = 0; x < count; ++x)
            luma[x] = static_cast<quint8>(Luma709::Of(pixels[x]));
    }

    std::array<Tables, Ways> m_tables{};
};

std::optional<ChannelHistograms> Count(const PixelRows& rows, const std::atomic<bool>* abort,
                                       const std::function<void(int y)>& onRow = {},
                                       const RulePass::Rule& rule = {})
{
    ChannelHistograms sums;
    std::mutex sumsLock;
    const auto isAborted = [abort] { return abort && abort->load(std::memory_order_relaxed); };
    const int rowsPerBand = std::max(1, PixelsPerBand / std::max(1, rows.width));
    const bool isWhole = ForEachRowBand(0, rows.height, rowsPerBand, abort, [&](int first, int last) {
        BandCounts counts;
        const YDRGBA32i* const end = rows.pixels + (last - 1) * rows.stride + rows.width;
        for (int y = first; y < last && !isAborted(); ++y) {
            counts.AddRow(rows, y, end, rule);
            if (onRow)
                onRow(rows.origin.y() + y);
        }
        const std::lock_guard<std::mutex> lock(sumsLock);
        counts.AddTo(sums);
    });
    if (!isWhole || isAborted())
        return std::nullopt;
    sums.pixels = qint64(rows.width) * rows.height;
    return sums;
}

bool HoldsPixelsAsTheyAre(QImage::Format format)
{
    return format == QImage::Format_RGB32 || format == QImage::Format_ARGB32;
}

/// Whether rows of 32 bits a pixel begin where a pixel can; an image over foreign memory need not have that.
bool HasAlignedRows(const QImage& image)
{
    constexpr std::size_t PixelSize = sizeof(YDRGBA32i);
    return image.bytesPerLine() % int(PixelSize) == 0 &&
           reinterpret_cast<std::uintptr_t>(image.constBits()) % PixelSize == 0;
}

/// The image with its pixels as a picture has them; null where the memory for that is not to be had.
QImage WithPlainPixels(const QImage& image)
{
    const QImage aligned = HasAlignedRows(image) ? image : image.copy();
    return HoldsPixelsAsTheyAre(aligned.format()) ? aligned : aligned.convertToFormat(QImage::Format_ARGB32);
}

} // namespace

std::optional<ChannelHistograms> ChannelHistograms::Of(const RGBA32iImage& picture, const QRect& area,
                                                       const std::atomic<bool>* abort,
                                                       const std::function<void(int y)>& onRow,
                                                       const RulePass::Rule& rule)
{
    const QRect part = area & QRect(0, 0, picture.Width(), picture.Height());
    if (part.isEmpty())
        return ChannelHistograms();
    return Count({picture.Row(part.top()) + part.left(), picture.RowLength(), part.width(), part.height(),
                  part.topLeft()},
                 abort, onRow, rule);
}

std::optional<ChannelHistograms> ChannelHistograms::Of(const QImage& image, const std::atomic<bool>* abort)
{
    if (image.isNull())
        return ChannelHistograms();
    const QImage pixels = WithPlainPixels(image);
    if (pixels.isNull())
        return std::nullopt;
    constexpr auto PixelSize = qsizetype(sizeof(YDRGBA32i));
    return Count({reinterpret_cast<const YDRGBA32i*>(pixels.constBits()), pixels.bytesPerLine() / PixelSize,
                  pixels.width(), pixels.height(), QPoint()},
                 abort);
}
