// For kernels whose numbers fit into 16 bits: two vectors of pixels at a time, so that each channel fills a
// vector. Included once for each instruction set, as "simd/PixelLoop.h" is.
#if defined(SIMD_PIXEL_PAIR_LOOP_TOGGLE) == defined(HWY_TARGET_TOGGLE)
#ifdef SIMD_PIXEL_PAIR_LOOP_TOGGLE
#undef SIMD_PIXEL_PAIR_LOOP_TOGGLE
#else
#define SIMD_PIXEL_PAIR_LOOP_TOGGLE
#endif

#include "simd/PixelLoop.h"

HWY_BEFORE_NAMESPACE();
namespace {
namespace HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR

struct PixelPair
{
    Pixels first;
    Pixels second;
};

/// A number for each pixel and channel: those of the first pixels in the low halves of the lanes, those of
/// the second in the high halves.
struct Planes
{
    Shorts b;
    Shorts g;
    Shorts r;
    Shorts a; ///< times 256
};

/// The low half of each lane of `first` in the low half, that of `second` in the high half.
HWY_INLINE Shorts LowHalves(Pixels first, Pixels second)
{
    const ShortTag d;
    return hn::OddEven(hn::BitCast(d, hn::ShiftLeft<16>(second)), hn::BitCast(d, first));
}

/// The high half of each lane of `first` in the low half, that of `second` in the high half.
HWY_INLINE Shorts HighHalves(Pixels first, Pixels second)
{
    const ShortTag d;
    return hn::OddEven(hn::BitCast(d, second), hn::BitCast(d, hn::ShiftRight<16>(first)));
}

HWY_INLINE Planes SplitPair(PixelPair pixels)
{
    const ShortTag d;
    const WordTag dWord;
    const Shorts lowByte = hn::Set(d, int16_t(0xff));
    const Shorts blueGreen = LowHalves(pixels.first, pixels.second);
    const Shorts redAlpha = HighHalves(pixels.first, pixels.second);
    return {hn::And(blueGreen, lowByte), hn::BitCast(d, hn::ShiftRight<8>(hn::BitCast(dWord, blueGreen))),
            hn::And(redAlpha, lowByte), hn::AndNot(lowByte, redAlpha)};
}

/// Pixels of these channels; blue, green and red in 0..255.
HWY_INLINE PixelPair MergePair(const Planes& channels)
{
    const PixelTag d;
    const Pixels blueGreen = hn::BitCast(d, hn::Or(channels.b, hn::ShiftLeft<8>(channels.g)));
    const Pixels redAlpha = hn::BitCast(d, hn::Or(channels.r, channels.a));
    return {hn::BitCast(d, LowHalves(blueGreen, redAlpha)), hn::BitCast(d, HighHalves(blueGreen, redAlpha))};
}

/// For each pixel the sum of its channels times `blueRed` and `green`, in 256ths: cut to whole numbers, which
/// fit into 16 bits if the weights sum to 32896 at most.
HWY_INLINE Shorts WeighedSum(PixelPair pixels, Shorts blueRed, Shorts green)
{
    const auto sum = [=](Pixels p) {
        return hn::Add(SumOfProducts(BlueRed(p), blueRed), SumOfProducts(GreenAlpha(p), green));
    };
    const ShortTag d;
    return hn::OddEven(hn::BitCast(d, hn::ShiftLeft<8>(sum(pixels.second))),
                       hn::BitCast(d, hn::ShiftRight<8>(sum(pixels.first))));
}

struct FloatPair
{
    Floats first;
    Floats second;
};

HWY_INLINE FloatPair ToFloats(Shorts numbers)
{
    const FloatTag d;
    const Ints lanes = hn::BitCast(IntTag(), numbers);
    return {hn::ConvertTo(d, hn::ShiftRight<16>(hn::ShiftLeft<16>(lanes))),
            hn::ConvertTo(d, hn::ShiftRight<16>(lanes))};
}

/// The whole parts of numbers in -32768..32767.
HWY_INLINE Shorts WholeParts(FloatPair numbers)
{
    const PixelTag d;
    return LowHalves(hn::BitCast(d, WholePart(numbers.first)), hn::BitCast(d, WholePart(numbers.second)));
}

#endif

/// MapPixels() with `vectors(PixelPair)`, which answers what two vectors of pixels become.
template <class Rule, class Vectors>
HWY_INLINE void MapPixelPairs(YDRGBA32i* row, size_t count, const Rule& rule,
                              [[maybe_unused]] const Vectors& vectors)
{
    size_t x = 0;
#if HWY_TARGET != HWY_SCALAR
    const PixelTag d;
    const size_t lanes = hn::Lanes(d);
    for (; x + 2 * lanes <= count; x += 2 * lanes) {
        auto* const pixels = reinterpret_cast<uint32_t*>(row + x);
        PrefetchAhead(pixels, 2 * lanes * sizeof(YDRGBA32i));
        const PixelPair changed = vectors(PixelPair{hn::LoadU(d, pixels), hn::LoadU(d, pixels + lanes)});
        hn::StoreU(changed.first, d, pixels);
        hn::StoreU(changed.second, d, pixels + lanes);
    }
#endif
    for (; x < count; ++x)
        rule(row[x]);
}

} // namespace HWY_NAMESPACE
} // namespace
HWY_AFTER_NAMESPACE();

#endif // SIMD_PIXEL_PAIR_LOOP_TOGGLE
