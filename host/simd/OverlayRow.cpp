#include <hwy/highway.h>

#include "image/OverlayRule.h"
#include "image/VectorKernels.h"
#include "simd/PixelLoop.h"

HWY_BEFORE_NAMESPACE();
namespace {
namespace HWY_NAMESPACE {

using Mode = KVCompositionMode;

template <Mode Which>
void LayPixels(const YDRGBA32i* over, YDRGBA32i* under, size_t count, float weight)
{
    for (size_t x = 0; x < count; ++x)
        OverlayRule::Lay<Which>(over[x], under[x], weight);
}

#if HWY_TARGET == HWY_SCALAR

template <Mode>
size_t LayVectors(const YDRGBA32i*, YDRGBA32i*, size_t, float)
{
    return 0;
}

#else

HWY_INLINE Floats Number(float number) { return hn::Set(FloatTag(), number); }

/// Levels as parts of the whole.
HWY_INLINE Floats Part(Ints levels)
{
    return hn::Mul(hn::ConvertTo(FloatTag(), levels), Number(OverlayRule::PartOfLevel));
}

HWY_INLINE Ints Level(Floats parts)
{
    return WholePart(hn::Add(hn::Mul(parts, Number(OverlayRule::White)), Number(OverlayRule::Half)));
}

HWY_INLINE Ints Alpha(Pixels pixels) { return hn::BitCast(IntTag(), hn::ShiftRight<24>(pixels)); }

HWY_INLINE Floats Screen(Floats over, Floats under)
{
    return hn::Sub(hn::Add(over, under), hn::Mul(over, under));
}

HWY_INLINE Floats HardLight(Floats over, Floats under)
{
    const Floats twice = hn::Add(over, over);
    return hn::IfThenElse(hn::Le(over, Number(0.5f)), hn::Mul(twice, under),
                          Screen(hn::Sub(twice, Number(1.0f)), under));
}

HWY_INLINE Floats SoftLight(Floats over, Floats under)
{
    const Floats shift = hn::Sub(hn::Add(over, over), Number(1.0f));
    const Floats dark = hn::Sub(under, hn::Mul(under, under));
    const Floats inner = hn::Sub(hn::Mul(Number(16.0f), under), Number(12.0f));
    const Floats polynomial = hn::Mul(hn::Add(hn::Mul(inner, under), Number(4.0f)), under);
    const Floats bright =
        hn::Sub(hn::IfThenElse(hn::Le(under, Number(0.25f)), polynomial, hn::Sqrt(under)), under);
    return hn::Add(under, hn::Mul(shift, hn::IfThenElse(hn::Le(over, Number(0.5f)), dark, bright)));
}

/// Both quotients divide by 0 where the result is not taken.
HWY_INLINE Floats ColorDodge(Floats over, Floats under)
{
    const Floats one = Number(1.0f);
    const Floats dodged = hn::Min(one, hn::Div(under, hn::Sub(one, over)));
    return hn::IfThenZeroElse(hn::Le(under, Number(0.0f)), hn::IfThenElse(hn::Ge(over, one), one, dodged));
}

HWY_INLINE Floats ColorBurn(Floats over, Floats under)
{
    const Floats one = Number(1.0f);
    const Floats burnt = hn::Sub(one, hn::Min(one, hn::Div(hn::Sub(one, under), over)));
    return hn::IfThenElse(hn::Ge(under, one), one, hn::IfThenZeroElse(hn::Le(over, Number(0.0f)), burnt));
}

template <Mode Which>
HWY_INLINE Floats Mix(Floats over, Floats under)
{
    if constexpr (Which == Mode::Multiply)
        return hn::Mul(over, under);
    else if constexpr (Which == Mode::Screen)
        return Screen(over, under);
    else if constexpr (Which == Mode::Overlay)
        return HardLight(under, over);
    else if constexpr (Which == Mode::Darken)
        return hn::Min(over, under);
    else if constexpr (Which == Mode::Lighten)
        return hn::Max(over, under);
    else if constexpr (Which == Mode::ColorDodge)
        return ColorDodge(over, under);
    else if constexpr (Which == Mode::ColorBurn)
        return ColorBurn(over, under);
    else if constexpr (Which == Mode::HardLight)
        return HardLight(over, under);
    else if constexpr (Which == Mode::SoftLight)
        return SoftLight(over, under);
    else if constexpr (Which == Mode::Difference)
        return hn::Abs(hn::Sub(over, under));
    else if constexpr (Which == Mode::Exclusion)
        return hn::Sub(hn::Add(over, under), hn::Mul(Number(2.0f), hn::Mul(over, under)));
    else
        return over;
}

/// The alphas of some pixels of both rows, and what follows from them.
template <Mode Which>
struct Shares
{
    Floats over;
    Floats under;
    Floats overAlone;
    Floats both;
    Floats underAlone;
    Floats sum;

    HWY_INLINE Shares(Floats overAlpha, Floats underAlpha) : over(overAlpha), under(underAlpha)
    {
        const Floats one = Number(1.0f);
        underAlone = hn::Mul(underAlpha, hn::Sub(one, overAlpha));
        overAlone = hn::Mul(overAlpha, hn::Sub(one, underAlpha));
        both = hn::Mul(overAlpha, underAlpha);
        const Floats covered = Which == Mode::Addition ? hn::Min(one, hn::Add(overAlpha, underAlpha))
                                                       : hn::Add(overAlpha, underAlone);
        sum = hn::IfThenElse(hn::Lt(underAlpha, one), covered, one);
    }

    HWY_INLINE Ints Channel(Ints overLevels, Ints underLevels) const
    {
        const Floats above = Part(overLevels);
        const Floats below = Part(underLevels);
        if constexpr (Which == Mode::Addition)
            return Level(
                hn::Div(hn::Min(Number(1.0f), hn::Add(hn::Mul(over, above), hn::Mul(under, below))), sum));
        else
            return Level(
                hn::Div(hn::Add(hn::Add(hn::Mul(overAlone, above), hn::Mul(both, Mix<Which>(above, below))),
                                hn::Mul(underAlone, below)),
                        sum));
    }
};

template <Mode Which>
HWY_INLINE Pixels LayVector(Pixels over, Pixels under, Floats overAlpha)
{
    const PixelTag d;
    const Shares<Which> shares(overAlpha, Part(Alpha(under)));
    const Channels above = Split(over);
    const Channels below = Split(under);
    const Channels laid{shares.Channel(above.b, below.b), shares.Channel(above.g, below.g),
                        shares.Channel(above.r, below.r)};
    const Pixels alpha = hn::ShiftLeft<24>(hn::BitCast(d, Level(shares.sum)));
    const auto isCovered = hn::RebindMask(d, hn::Gt(overAlpha, Number(0.0f)));
    return hn::IfThenElse(isCovered, Merge(laid, alpha), under);
}

template <Mode Which>
size_t LayVectors(const YDRGBA32i* over, YDRGBA32i* under, size_t count, float weight)
{
    const PixelTag d;
    const FloatTag df;
    const size_t lanes = hn::Lanes(d);
    const Floats weights = Number(weight);
    size_t x = 0;
    for (; x + lanes <= count; x += lanes) {
        auto* const out = reinterpret_cast<uint32_t*>(under + x);
        const Pixels overs = hn::LoadU(d, reinterpret_cast<const uint32_t*>(over + x));
        const Floats overAlpha = hn::Mul(hn::ConvertTo(df, Alpha(overs)), weights);
        if (hn::AllTrue(df, hn::Le(overAlpha, Number(0.0f))))
            continue;
        hn::StoreU(LayVector<Which>(overs, hn::LoadU(d, out), overAlpha), d, out);
    }
    return x;
}

#endif

/// The kernel of one mode, for OverlayRule::WithMode().
struct LayRow
{
    const YDRGBA32i* over;
    YDRGBA32i* under;
    size_t count;
    float weight;

    template <Mode Which>
    void operator()(std::integral_constant<Mode, Which>) const
    {
        const size_t done = LayVectors<Which>(over, under, count, weight);
        LayPixels<Which>(over + done, under + done, count - done, weight);
    }
};

void OverlayRow(const YDRGBA32i* over, YDRGBA32i* under, size_t count, const OverlayRule& rule)
{
    OverlayRule::WithMode(rule.mode, LayRow{over, under, count, rule.weight});
}

} // namespace HWY_NAMESPACE
} // namespace
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace {
HWY_EXPORT(OverlayRow);
} // namespace

extern "C" Q_DECL_EXPORT decltype(VectorKernels::OverlayRow)::Function OverlayRow;

void OverlayRow(const YDRGBA32i* over, YDRGBA32i* under, int count, const OverlayRule* rule)
{
    if (count > 0)
        HWY_DYNAMIC_DISPATCH(OverlayRow)(over, under, static_cast<size_t>(count), *rule);
}
#endif
