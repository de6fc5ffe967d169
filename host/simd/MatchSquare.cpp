#include <hwy/highway.h>

#include "image/BitSquare.h"
#include "image/ColorRange.h"
#include "image/VectorKernels.h"
#include "simd/PixelLoop.h"

HWY_BEFORE_NAMESPACE();
namespace {
namespace HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

class RowMatcher
{
public:
    explicit RowMatcher(const ColorRange& range) : m_range(range) {}

    quint64 operator()(const YDRGBA32i* row) const
    {
        quint64 bits = 0;
        for (int x = 0; x < BitSquare::Side; ++x)
            bits |= quint64(m_range.Holds(row[x])) << x;
        return bits;
    }

private:
    const ColorRange& m_range;
};

#else

class RowMatcher
{
public:
    explicit HWY_INLINE RowMatcher(const ColorRange& range)
        : m_lowest(AllChannels(range.lowest)), m_extent(AllChannels(range.extent))
    {}

    HWY_INLINE quint64 operator()(const YDRGBA32i* row) const
    {
        const PixelTag d;
        const size_t lanes = hn::Lanes(d);
        const auto* const lane = reinterpret_cast<const uint32_t*>(row);
        quint64 bits = 0; // an address for the masks, whose bytes are in the order of the bits
        for (size_t x = 0; x < size_t(BitSquare::Side); x += lanes) {
            const Bytes above = hn::Sub(hn::BitCast(ByteTag(), hn::LoadU(d, lane + x)), m_lowest);
            const Bytes tooFar = hn::SaturatedSub(above, m_extent);
            const auto isNear = hn::Eq(hn::BitCast(d, tooFar), hn::Zero(d));
            hn::StoreMaskBits(d, isNear, reinterpret_cast<uint8_t*>(&bits) + x / BitsPerByte);
        }
        return bits;
    }

private:
    using ByteTag = hn::Repartition<uint8_t, PixelTag>;
    using Bytes = hn::Vec<ByteTag>;

    static constexpr size_t BitsPerByte = 8;

    static HWY_INLINE Bytes AllChannels(const YDRGBA32i& color)
    {
        return hn::BitCast(ByteTag(), hn::Set(PixelTag(), QRgb(color)));
    }

    Bytes m_lowest;
    Bytes m_extent;
};

#endif

void MatchSquare(const YDRGBA32i* pixels, size_t stride, size_t height, const ColorRange& range,
                 quint64* bits, const YDRGBA32i* next)
{
    const RowMatcher match(range);
    for (size_t y = 0; y < height; ++y) {
        if (next) // its lower rows may lie past the picture's end: no address to be reckoned by a pointer
            PrefetchAhead(next, BitSquare::Side * sizeof(YDRGBA32i), y * stride * sizeof(YDRGBA32i));
        bits[y] = match(pixels + y * stride);
    }
}

} // namespace HWY_NAMESPACE
} // namespace
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace {
HWY_EXPORT(MatchSquare);
} // namespace

extern "C" Q_DECL_EXPORT decltype(VectorKernels::MatchSquare)::Function MatchSquare;

void MatchSquare(const YDRGBA32i* pixels, int stride, int height, const ColorRange* range, quint64* bits,
                 const YDRGBA32i* next)
{
    if (height > 0)
        HWY_DYNAMIC_DISPATCH(MatchSquare)
    (pixels, static_cast<size_t>(stride), static_cast<size_t>(height), *range, bits, next);
}
#endif
