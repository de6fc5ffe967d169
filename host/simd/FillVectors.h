// What a fill makes of vectors of pixels. Included once for each instruction set, like simd/PixelLoop.h,
// after it.
#if defined(SIMD_FILL_VECTORS_TOGGLE) == defined(HWY_TARGET_TOGGLE)
#ifdef SIMD_FILL_VECTORS_TOGGLE
#undef SIMD_FILL_VECTORS_TOGGLE
#else
#define SIMD_FILL_VECTORS_TOGGLE
#endif

#include "image/FillRule.h"
#include "simd/PixelLoop.h"

HWY_BEFORE_NAMESPACE();
namespace {
namespace HWY_NAMESPACE {

/// For a fill that is opaque.
class OpaqueFillVectors
{
#if HWY_TARGET == HWY_SCALAR
public:
    explicit OpaqueFillVectors(const FillRule&) {}
#else
public:
    explicit HWY_INLINE OpaqueFillVectors(const FillRule& rule) : m_fill(hn::Set(PixelTag(), QRgb(rule.fill)))
    {}

    HWY_INLINE Pixels operator()(Pixels) const { return m_fill; }

private:
    Pixels m_fill;
#endif
};

/// For a fill that is neither opaque nor transparent.
class FillVectors
{
#if HWY_TARGET == HWY_SCALAR
public:
    explicit FillVectors(const FillRule&) {}
#else
public:
    explicit HWY_INLINE FillVectors(const FillRule& rule)
        : m_blueRed(AboveAndHalf(rule, rule.fill.b, rule.fill.r)),
          m_greenAlpha(AboveAndHalf(rule, rule.fill.g, FillRule::Opaque)),
          m_rest(hn::Set(WordTag(), uint16_t(FillRule::Opaque - rule.fill.a))),
          m_over(hn::Set(IntTag(), int(rule.fill.a * FillRule::Opaque))), m_blue(AboveOf(rule, rule.fill.b)),
          m_green(AboveOf(rule, rule.fill.g)), m_red(AboveOf(rule, rule.fill.r))
    {}

    HWY_INLINE Pixels operator()(Pixels pixels) const
    {
        const PixelTag d;
        const Pixels opaque = hn::Set(d, 0xff000000u);
        if (hn::AllTrue(d, hn::Eq(hn::And(pixels, opaque), opaque)))
            return MergeWords(Mix(BlueRed(pixels), m_blueRed), Mix(GreenAlpha(pixels), m_greenAlpha));
        return MixByAlpha(pixels);
    }

private:
    /// What the fill adds to two channels of an opaque pixel, and what rounds the division by 255.
    static HWY_INLINE Words AboveAndHalf(const FillRule& rule, unsigned low, unsigned high)
    {
        return PairOfWords(low * rule.fill.a + Half, high * rule.fill.a + Half);
    }

    static HWY_INLINE Floats AboveOf(const FillRule& rule, unsigned channel)
    {
        return hn::Set(FloatTag(), float(channel * rule.fill.a * FillRule::Opaque));
    }

    /// (x + 128 + ((x + 128) >> 8)) >> 8 is x / 255 rounded to nearest for every x up to 255 * 255.
    HWY_INLINE Words Mix(Words below, Words aboveAndHalf) const
    {
        const Words sum = hn::Add(hn::Mul(below, m_rest), aboveAndHalf);
        return hn::ShiftRight<8>(hn::Add(sum, hn::ShiftRight<8>(sum)));
    }

    /// All numbers are whole and of at most 24 bits, so floats hold them. A quotient that is not whole lies
    /// at least 1 / 65025 below the next whole number, further than floats below 256 lie apart: the division
    /// does not round it up to that.
    HWY_INLINE Pixels MixByAlpha(Pixels pixels) const
    {
        const IntTag di;
        const FloatTag df;
        const Ints alpha = hn::BitCast(di, hn::ShiftRight<24>(pixels));
        const Ints under = hn::BitCast(di, hn::Mul(hn::BitCast(WordTag(), alpha), m_rest));
        const Ints both = hn::Add(under, m_over); // not 0, as the fill is not transparent
        const Floats weight = hn::ConvertTo(df, under);
        const Floats half = hn::ConvertTo(df, hn::ShiftRight<1>(both));
        const Floats divisor = hn::ConvertTo(df, both);
        const auto mix = [=](Ints below, Floats above) {
            const Floats sum = hn::Add(hn::Mul(hn::ConvertTo(df, below), weight), hn::Add(above, half));
            return WholePart(hn::Div(sum, divisor));
        };
        const Channels from = Split(pixels);
        const Ints sum = hn::Add(both, hn::Set(di, int(Half)));
        const Ints composed = hn::ShiftRight<8>(hn::Add(sum, hn::ShiftRight<8>(sum)));
        return Merge({mix(from.b, m_blue), mix(from.g, m_green), mix(from.r, m_red)},
                     hn::BitCast(PixelTag(), hn::ShiftLeft<24>(composed)));
    }

    static constexpr unsigned Half = 128;

    Words m_blueRed;
    Words m_greenAlpha;
    Words m_rest;
    Ints m_over;
    Floats m_blue;
    Floats m_green;
    Floats m_red;
#endif
};

} // namespace HWY_NAMESPACE
} // namespace
HWY_AFTER_NAMESPACE();

#endif // SIMD_FILL_VECTORS_TOGGLE
