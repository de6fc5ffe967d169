// For kernels that mix the channels of a pixel. Included once for each instruction set, like <hwy/highway.h>,
// after it and before the kernel's own HWY_BEFORE_NAMESPACE.
#if defined(SIMD_PIXEL_LOOP_TOGGLE) == defined(HWY_TARGET_TOGGLE)
#ifdef SIMD_PIXEL_LOOP_TOGGLE
#undef SIMD_PIXEL_LOOP_TOGGLE
#else
#define SIMD_PIXEL_LOOP_TOGGLE
#endif

#include "image/YDRGBA32i.h"
#include "simd/Prefetch.h"

#include <hwy/highway.h>

#include <cstddef>
#include <cstdint>

HWY_BEFORE_NAMESPACE();
namespace {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

#if HWY_TARGET != HWY_SCALAR // one-lane vectors hold no whole pixel

using PixelTag = hn::ScalableTag<uint32_t>;
using Pixels = hn::Vec<PixelTag>; ///< a pixel a lane: alpha in the top byte, then red, green, blue
using IntTag = hn::RebindToSigned<PixelTag>;
using Ints = hn::Vec<IntTag>; ///< a number for each pixel
using FloatTag = hn::RebindToFloat<PixelTag>;
using Floats = hn::Vec<FloatTag>;
using WordTag = hn::Repartition<uint16_t, PixelTag>;
using Words = hn::Vec<WordTag>; ///< two numbers for each pixel, the first in the low half of its lane
using ShortTag = hn::RebindToSigned<WordTag>;
using Shorts = hn::Vec<ShortTag>;

/// The colour of each pixel, a number for each channel.
struct Channels
{
    Ints b;
    Ints g;
    Ints r;
};

HWY_INLINE Channels Split(Pixels pixels)
{
    const PixelTag d;
    const IntTag di;
    const Pixels lowByte = hn::Set(d, 0xffu);
    return {hn::BitCast(di, hn::And(pixels, lowByte)),
            hn::BitCast(di, hn::And(hn::ShiftRight<8>(pixels), lowByte)),
            hn::BitCast(di, hn::And(hn::ShiftRight<16>(pixels), lowByte))};
}

/// `colour` with the alpha of `pixels`.
HWY_INLINE Pixels WithAlphaOf(Pixels pixels, Pixels colour)
{
    const PixelTag d;
    const Pixels alpha = hn::Set(d, 0xff000000u);
    return hn::Or(hn::And(alpha, pixels), hn::AndNot(alpha, colour));
}

/// Levels in 0..255 in blue, green and red, without alpha.
HWY_INLINE Pixels Grey(Ints levels)
{
    const PixelTag d;
    const Pixels level = hn::BitCast(d, levels);
    return hn::Or(level, hn::Or(hn::ShiftLeft<8>(level), hn::ShiftLeft<16>(level)));
}

/// Pixels of these channels, each clamped to 0..255, with the alpha of `pixels`.
HWY_INLINE Pixels Merge(const Channels& channels, Pixels pixels)
{
    const PixelTag d;
    const ShortTag d16;
    // Saturates at each step; in each block of sixteen bytes b0 to b3, g0 to g3, r0 to r3, a0 to a3.
    const Shorts blueGreen = hn::ReorderDemote2To(d16, channels.b, channels.g);
    const Shorts redAlpha =
        hn::ReorderDemote2To(d16, channels.r, hn::BitCast(IntTag(), hn::ShiftRight<24>(pixels)));
#if HWY_TARGET == HWY_AVX2
    const Pixels planes{_mm256_packus_epi16(blueGreen.raw, redAlpha.raw)};
#else
    const Pixels planes{_mm512_packus_epi16(blueGreen.raw, redAlpha.raw)};
#endif
    HWY_ALIGN static constexpr uint32_t ChannelsTogether[] = {0x0c080400u, 0x0d090501u, 0x0e0a0602u,
                                                              0x0f0b0703u};
    return hn::TableLookupBytes(planes, hn::LoadDup128(d, ChannelsTogether));
}

/// Blue in the low half of each lane, red in the high half.
HWY_INLINE Words BlueRed(Pixels pixels)
{
    return hn::BitCast(WordTag(), hn::And(pixels, hn::Set(PixelTag(), 0x00ff00ffu)));
}

/// Green in the low half of each lane, alpha in the high half.
HWY_INLINE Words GreenAlpha(Pixels pixels) { return hn::ShiftRight<8>(hn::BitCast(WordTag(), pixels)); }

/// Pixels of channels in 0..255 as BlueRed() and GreenAlpha() part them.
HWY_INLINE Pixels MergeWords(Words blueRed, Words greenAlpha)
{
    return hn::BitCast(PixelTag(), hn::Or(blueRed, hn::ShiftLeft<8>(greenAlpha)));
}

/// The same two numbers for each pixel.
HWY_INLINE Shorts PairOfShorts(int low, int high)
{
    const uint32_t pair = uint32_t(uint16_t(low)) | uint32_t(uint16_t(high)) << 16;
    return hn::BitCast(ShortTag(), hn::Set(PixelTag(), pair));
}

/// The same two numbers for each pixel.
HWY_INLINE Words PairOfWords(unsigned low, unsigned high)
{
    return hn::BitCast(WordTag(), hn::Set(PixelTag(), low | high << 16));
}

/// For each pixel `sum` plus the product of the low halves plus that of the high halves. The halves of
/// `pairs` are below 32768.
HWY_INLINE Ints AddProducts(Words pairs, Shorts weights, Ints sum)
{
    const IntTag di;
    Ints unused = hn::Zero(di); // other instruction sets part the sum in two
    return hn::ReorderWidenMulAccumulate(di, hn::BitCast(ShortTag(), pairs), weights, sum, unused);
}

/// The same without a sum to start from.
HWY_INLINE Ints SumOfProducts(Words pairs, Shorts weights)
{
    return AddProducts(pairs, weights, hn::Zero(IntTag()));
}

/// The whole part of numbers that fit into 32 bits, which is what hn::ConvertTo() makes sure of first.
HWY_INLINE Ints WholePart(Floats numbers)
{
#if HWY_TARGET == HWY_AVX2
    return Ints{_mm256_cvttps_epi32(numbers.raw)};
#else
    return Ints{_mm512_cvttps_epi32(numbers.raw)};
#endif
}

#endif

/// Changes `count` pixels in place, most of them many at a time.
///
/// `rule(YDRGBA32i&)` changes one pixel and is the definition; `vectors(Pixels)` answers what a vector of
/// pixels becomes, the same bytes. A kernel without vectors has only a rule.
template <class Rule, class Vectors>
HWY_INLINE void MapPixels(YDRGBA32i* row, size_t count, const Rule& rule,
                          [[maybe_unused]] const Vectors& vectors)
{
    size_t x = 0;
#if HWY_TARGET != HWY_SCALAR
    const PixelTag d;
    const size_t lanes = hn::Lanes(d);
    constexpr size_t PixelsPerCacheLine = 64 / sizeof(YDRGBA32i);
    auto* const lane = reinterpret_cast<uint32_t*>(row);
    for (; x + PixelsPerCacheLine <= count; x += PixelsPerCacheLine) {
        PrefetchAhead(lane + x, PixelsPerCacheLine * sizeof(YDRGBA32i));
        for (size_t v = 0; v < PixelsPerCacheLine; v += lanes)
            hn::StoreU(vectors(hn::LoadU(d, lane + x + v)), d, lane + x + v);
    }
    for (; x + lanes <= count; x += lanes)
        hn::StoreU(vectors(hn::LoadU(d, lane + x)), d, lane + x);
#endif
    for (; x < count; ++x)
        rule(row[x]);
}

} // namespace HWY_NAMESPACE
} // namespace
HWY_AFTER_NAMESPACE();

#endif // SIMD_PIXEL_LOOP_TOGGLE
