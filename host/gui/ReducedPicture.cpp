#include "gui/ReducedPicture.h"

#include "threads/ParallelRows.h"

#include <QRect>

namespace {

constexpr quint32 Opaque = 255;

/// Sums over a block: alpha, and the channels weighted with it.
struct BlockSum
{
    quint32 b = 0;
    quint32 g = 0;
    quint32 r = 0;
    quint32 a = 0;

    void Add(const YDRGBA32i& pixel)
    {
        const quint32 alpha = pixel.a;
        b += pixel.b * alpha;
        g += pixel.g * alpha;
        r += pixel.r * alpha;
        a += alpha;
    }

    YDRGBA32i Average(quint32 pixels) const
    {
        // All four are rounded alike, so that no channel exceeds alpha, as premultiplied pixels require.
        const quint32 weight = pixels * Opaque;
        return YDRGBA32i(static_cast<quint8>((b + weight / 2) / weight),
                         static_cast<quint8>((g + weight / 2) / weight),
                         static_cast<quint8>((r + weight / 2) / weight),
                         static_cast<quint8>((a * Opaque + weight / 2) / weight));
    }
};

/// Average of an area of the picture, whatever its size and alpha. Returns whether it is opaque.
bool AverageArea(const RGBA32iImage& picture, const QRect& area, YDRGBA32i& average)
{
    BlockSum sum;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        const YDRGBA32i* const row = picture.Row(y);
        for (int x = area.left(); x <= area.right(); ++x)
            sum.Add(row[x]);
    }
    const auto pixels = static_cast<quint32>(area.width() * area.height());
    average = sum.Average(pixels);
    return sum.a == pixels * Opaque;
}

/// The same for a whole block of Factor x Factor opaque pixels, two channels in one sum: 256 pixels of 255
/// still fit into 16 bits. Returns false, and leaves `average` alone, where a pixel is not opaque.
template <int Factor>
bool AverageOpaqueBlock(const YDRGBA32i* block, qsizetype rowLength, YDRGBA32i& average)
{
    static_assert(Factor <= 16, "a sum of one channel fits into 16 bits");
    constexpr quint32 EvenBytes = 0x00ff00ff;
    constexpr quint32 Pixels = Factor * Factor;
    constexpr quint32 HalfInBoth = Pixels / 2 * 0x00010001;
    quint32 even = 0;
    quint32 odd = 0;
    quint32 common = ~quint32(0);
    for (int y = 0; y < Factor; ++y, block += rowLength)
        for (int x = 0; x < Factor; ++x) {
            const QRgb pixel = block[x];
            even += pixel & EvenBytes;
            odd += pixel >> 8 & EvenBytes;
            common &= pixel;
        }
    if (qAlpha(common) != static_cast<int>(Opaque))
        return false;
    even += HalfInBoth;
    odd += HalfInBoth;
    average =
        YDRGBA32i(static_cast<quint8>((even & 0xffff) / Pixels), static_cast<quint8>((odd & 0xffff) / Pixels),
                  static_cast<quint8>((even >> 16) / Pixels), static_cast<quint8>(Opaque));
    return true;
}

/// Row `y` of the copy. Returns whether it is opaque.
template <int Factor>
bool ReduceRow(const RGBA32iImage& picture, const RGBA32iImage& copy, int y)
{
    const QRect bounds(0, 0, picture.Width(), picture.Height());
    const int top = y * Factor;
    const int wholeBlocks = top + Factor <= bounds.height() ? bounds.width() / Factor : 0;
    bool isOpaque = true;
    YDRGBA32i* const row = copy.Row(y);
    for (int x = 0; x < copy.Width(); ++x) {
        const int left = x * Factor;
        if constexpr (Factor <= 16)
            if (x < wholeBlocks &&
                AverageOpaqueBlock<Factor>(picture.Row(top) + left, picture.RowLength(), row[x]))
                continue;
        if (!AverageArea(picture, QRect(left, top, Factor, Factor) & bounds, row[x]))
            isOpaque = false;
    }
    return isOpaque;
}

using RowReducer = bool (*)(const RGBA32iImage& picture, const RGBA32iImage& copy, int y);

/// Null for a number that is no factor.
RowReducer ReducerFor(int factor)
{
    switch (factor) {
    case 1:
        return ReduceRow<1>;
    case 2:
        return ReduceRow<2>;
    case 4:
        return ReduceRow<4>;
    case 8:
        return ReduceRow<8>;
    case 16:
        return ReduceRow<16>;
    case 32:
        return ReduceRow<32>;
    case 64:
        return ReduceRow<64>;
    case ReducedPicture::LargestFactor:
        return ReduceRow<ReducedPicture::LargestFactor>;
    default:
        return nullptr;
    }
}

int BlocksIn(int length, int factor) { return (length - 1) / factor + 1; }

} // namespace

int ReducedPicture::FactorForZoom(double zoom)
{
    constexpr double SmallestScale = 0.5;
    int factor = 1;
    while (zoom * factor < SmallestScale && factor < LargestFactor)
        factor *= 2;
    return factor;
}

ReducedPicture ReducedPicture::Reduce(const RGBA32iImage& picture, int factor, const std::atomic<bool>* abort)
{
    const RowReducer reduceRow = ReducerFor(factor);
    Q_ASSERT(reduceRow);
    if (picture.IsEmpty() || !reduceRow)
        return {};
    const RGBA32iImage copy =
        RGBA32iImage::Uninitialized(BlocksIn(picture.Width(), factor), BlocksIn(picture.Height(), factor));
    if (copy.IsEmpty())
        return {};
    std::atomic<bool> isOpaque{true};
    const bool isWhole = ForEachRowBand(0, copy.Height(), 1, abort, [&](int top, int bottom) {
        for (int y = top; y < bottom; ++y)
            if (!reduceRow(picture, copy, y))
                isOpaque.store(false, std::memory_order_relaxed);
    });
    if (!isWhole)
        return {};
    return {copy, factor, isOpaque.load(std::memory_order_relaxed)};
}
