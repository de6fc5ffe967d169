#include <hwy/highway.h>

#include "image/VectorKernels.h"
#include "image/YDBlend.h"
#include "simd/Prefetch.h"

#include <algorithm>

HWY_BEFORE_NAMESPACE();
namespace {
namespace HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

size_t PixelsToAlignment(const YDRGBA32i*) { return 0; }
size_t BlendVectors(const YDRGBA32i*, YDRGBA32i*, const YDRGBA32i*, size_t) { return 0; }

#else

namespace hn = hwy::HWY_NAMESPACE;

using PixelTag = hn::ScalableTag<uint32_t>;
using Pixels = hn::Vec<PixelTag>;
using WordTag = hn::Repartition<uint16_t, PixelTag>;
using Words = hn::Vec<WordTag>;

/// (source * coverage + destination * (255 - coverage)) / 255, rounded to nearest, times 256 but for its low
/// byte, which is of no use. All below 65536; see YDBlend::YDSourceBySelection for the division.
HWY_INLINE Words MixInHighByte(Words source, Words destination, Words coverage, Words uncovered)
{
    const WordTag d;
    const Words sum = hn::Add(hn::Add(hn::Mul(source, coverage), hn::Mul(destination, uncovered)),
                              hn::Set(d, uint16_t(128)));
    return hn::Add(sum, hn::ShiftRight<8>(sum));
}

HWY_INLINE Pixels Blend(Pixels source, Pixels destination, Pixels mask)
{
    const PixelTag d;
    const WordTag d16;
    const Words lowByte = hn::Set(d16, uint16_t(0xff));
    const Pixels alpha = hn::ShiftRight<24>(mask);
    const Words coverage = hn::BitCast(d16, hn::Or(alpha, hn::ShiftLeft<16>(alpha)));
    const Words uncovered = hn::Sub(lowByte, coverage);
    const Words s = hn::BitCast(d16, source);
    const Words t = hn::BitCast(d16, destination);
    const Words even = MixInHighByte(hn::And(s, lowByte), hn::And(t, lowByte), coverage, uncovered);
    const Words odd = MixInHighByte(hn::ShiftRight<8>(s), hn::ShiftRight<8>(t), coverage, uncovered);
    return hn::BitCast(d, hn::Or(hn::ShiftRight<8>(even), hn::AndNot(lowByte, odd)));
}

/// Where the mask lets nothing through, source and destination are not read, and where it lets everything
/// through, the destination is not; so what lies ahead in the mask tells what to ask memory for.
class RowPrefetch
{
public:
    RowPrefetch(const YDRGBA32i* source, const YDRGBA32i* destination, const YDRGBA32i* mask, size_t count)
        : m_source(source), m_destination(destination), m_mask(mask), m_count(count)
    {}

    HWY_INLINE void Ahead(size_t x, size_t pixels) const
    {
        constexpr size_t Distance = PrefetchDistance / sizeof(YDRGBA32i);
        // The mask is looked at here before it is used, so it must arrive earlier still.
        PrefetchAhead(m_mask + x, pixels * sizeof(YDRGBA32i), 2 * PrefetchDistance);
        const uint8_t coverage = x + Distance < m_count ? m_mask[x + Distance].a : m_mask[x].a;
        if (coverage != 0)
            PrefetchAhead(m_source + x, pixels * sizeof(YDRGBA32i));
        if (coverage != 0 && coverage != 255)
            PrefetchAhead(m_destination + x, pixels * sizeof(YDRGBA32i));
    }

private:
    const YDRGBA32i* const m_source;
    const YDRGBA32i* const m_destination;
    const YDRGBA32i* const m_mask;
    const size_t m_count;
};

/// Pixels before the first whose address is that of a vector.
size_t PixelsToAlignment(const YDRGBA32i* row)
{
    const size_t vectorBytes = hn::Lanes(PixelTag()) * sizeof(YDRGBA32i);
    const size_t past = reinterpret_cast<uintptr_t>(row) % vectorBytes;
    return past == 0 ? 0 : (vectorBytes - past) / sizeof(YDRGBA32i);
}

size_t BlendVectors(const YDRGBA32i* source, YDRGBA32i* destination, const YDRGBA32i* mask, size_t count)
{
    const PixelTag d;
    const Pixels full = hn::Set(d, 0xff000000u);
    const Pixels none = hn::Zero(d);
    const size_t step = hn::Lanes(d);
    const RowPrefetch prefetch(source, destination, mask, count);
    size_t x = 0;
    for (; x + step <= count; x += step) {
        prefetch.Ahead(x, step);
        const Pixels coverage = hn::And(hn::LoadU(d, reinterpret_cast<const uint32_t*>(mask + x)), full);
        if (hn::AllTrue(d, hn::Eq(coverage, none)))
            continue;
        auto* const out = reinterpret_cast<uint32_t*>(destination + x);
        const Pixels in = hn::LoadU(d, reinterpret_cast<const uint32_t*>(source + x));
        // A replaced destination is not read, so it need not pass through the cache either.
        if (hn::AllTrue(d, hn::Eq(coverage, full)))
            hn::Stream(in, d, out);
        else
            hn::Store(Blend(in, hn::Load(d, out), coverage), d, out);
    }
    hwy::FlushStream();
    return x;
}

#endif

void BlendPixels(const YDRGBA32i* source, YDRGBA32i* destination, const YDRGBA32i* mask, size_t count)
{
    for (size_t x = 0; x < count; ++x)
        YDBlend::YDSourceBySelection()(source[x], destination[x], mask[x]);
}

void BlendBySelectionRow(const YDRGBA32i* source, YDRGBA32i* destination, const YDRGBA32i* mask, size_t count)
{
    const size_t head = std::min(PixelsToAlignment(destination), count);
    BlendPixels(source, destination, mask, head);
    const size_t x = head + BlendVectors(source + head, destination + head, mask + head, count - head);
    BlendPixels(source + x, destination + x, mask + x, count - x);
}

} // namespace HWY_NAMESPACE
} // namespace
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace {
HWY_EXPORT(BlendBySelectionRow);
} // namespace

extern "C" Q_DECL_EXPORT decltype(VectorKernels::BlendBySelectionRow)::Function BlendBySelectionRow;

void BlendBySelectionRow(const YDRGBA32i* source, YDRGBA32i* destination, const YDRGBA32i* mask, int count)
{
    if (count > 0)
        HWY_DYNAMIC_DISPATCH(BlendBySelectionRow)(source, destination, mask, static_cast<size_t>(count));
}
#endif
