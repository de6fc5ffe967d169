#include <hwy/highway.h>

#include "image/ColorEnhancerRule.h"
#include "image/VectorKernels.h"
#include "simd/PixelLoop.h"

HWY_BEFORE_NAMESPACE();
namespace {
namespace HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

size_t EnhanceVectors(const YDRGBA32i*, YDRGBA32i*, size_t, const ColorEnhancerRule&) { return 0; }

#else

class ColorEnhancerVectors
{
public:
    explicit HWY_INLINE ColorEnhancerVectors(const ColorEnhancerRule& rule)
        : m_lumaOfBlueRed(PairOfShorts(Luma709::Blue, Luma709::Red)),
          m_lumaOfGreen(PairOfShorts(Luma709::Green, 0)), m_shares(PairOfShorts(rule.keep, rule.take)),
          m_boost(hn::Set(WordTag(), static_cast<uint16_t>(rule.boost)))
    {}

    HWY_INLINE Pixels operator()(Pixels original, Pixels levelled) const
    {
        const IntTag di;
        const Words levelledBlueRed = BlueRed(levelled);
        const Words levelledGreenAlpha = GreenAlpha(levelled);
        const Ints lumaHalf = hn::Set(di, ColorEnhancerRule::LumaHalf);
        const Ints luma = hn::ShiftRight<ColorEnhancerRule::LumaShift>(AddProducts(
            levelledGreenAlpha, m_lumaOfGreen, AddProducts(levelledBlueRed, m_lumaOfBlueRed, lumaHalf)));
        const Channels from = Split(original);
        const Channels to = Split(levelled);
        const Ints range = hn::Sub(hn::Max(hn::Max(to.b, to.g), to.r), hn::Min(hn::Min(to.b, to.g), to.r));
        const Words lack = hn::BitCast(WordTag(), hn::Sub(hn::Set(di, 255), range));
        // The high half of each lane is zero, and stays so.
        const Shorts colour = hn::BitCast(ShortTag(), hn::MulHigh(hn::ShiftLeft<8>(lack), m_boost));
        return Merge({Mix(from.b, to.b, luma, colour), Mix(from.g, to.g, luma, colour),
                      Mix(from.r, to.r, luma, colour)},
                     original);
    }

private:
    HWY_INLINE Ints Mix(Ints original, Ints levelled, Ints luma, Shorts colour) const
    {
        const IntTag di;
        const Ints level = hn::ShiftLeft<ColorEnhancerRule::LumaBits>(levelled);
        const Ints both =
            hn::Or(hn::ShiftLeft<ColorEnhancerRule::LumaBits>(original), hn::ShiftLeft<16>(level));
        const Ints mixed =
            AddProducts(hn::BitCast(WordTag(), both), m_shares, hn::Set(di, ColorEnhancerRule::Half));
        // The distance may be negative: what it makes of the upper half meets a zero in `colour`.
        const Words distance = hn::BitCast(WordTag(), hn::Sub(level, luma));
        return hn::ShiftRight<ColorEnhancerRule::Shift>(AddProducts(distance, colour, mixed));
    }

    Shorts m_lumaOfBlueRed;
    Shorts m_lumaOfGreen;
    Shorts m_shares; ///< of the original, of the levelled
    Words m_boost;
};

size_t EnhanceVectors(const YDRGBA32i* levelled, YDRGBA32i* row, size_t count, const ColorEnhancerRule& rule)
{
    const PixelTag d;
    const ColorEnhancerVectors vectors(rule);
    const size_t lanes = hn::Lanes(d);
    size_t x = 0;
    for (; x + lanes <= count; x += lanes) {
        PrefetchAhead(row + x, lanes * sizeof(YDRGBA32i));
        auto* const out = reinterpret_cast<uint32_t*>(row + x);
        const Pixels to = hn::LoadU(d, reinterpret_cast<const uint32_t*>(levelled + x));
        hn::StoreU(vectors(hn::LoadU(d, out), to), d, out);
    }
    return x;
}

#endif

void EnhanceColorsRow(const YDRGBA32i* levelled, YDRGBA32i* row, size_t count, const ColorEnhancerRule& rule)
{
    for (size_t x = EnhanceVectors(levelled, row, count, rule); x < count; ++x)
        rule(levelled[x], row[x]);
}

} // namespace HWY_NAMESPACE
} // namespace
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace {
HWY_EXPORT(EnhanceColorsRow);
} // namespace

extern "C" Q_DECL_EXPORT decltype(VectorKernels::EnhanceColorsRow)::Function EnhanceColorsRow;

void EnhanceColorsRow(const YDRGBA32i* levelled, YDRGBA32i* row, int count, const ColorEnhancerRule* rule)
{
    if (count > 0)
        HWY_DYNAMIC_DISPATCH(EnhanceColorsRow)(levelled, row, static_cast<size_t>(count), *rule);
}
#endif
