#include <hwy/highway.h>

#include "image/TemperatureRule.h"
#include "image/VectorKernels.h"
#include "simd/PixelPairLoop.h"

HWY_BEFORE_NAMESPACE();
namespace {
namespace HWY_NAMESPACE {

class TemperatureVectors
{
#if HWY_TARGET == HWY_SCALAR
public:
    explicit TemperatureVectors(const TemperatureRule&) {}
#else
public:
    explicit HWY_INLINE TemperatureVectors(const TemperatureRule& rule)
        : m_luma(TemperatureRule::Luma), m_gains(rule.gains), m_gainedLuma(rule.gainedLuma),
          m_kept(hn::Set(ShortTag(), int16_t(rule.kept))), m_mixed(hn::Set(ShortTag(), int16_t(rule.mixed))),
          m_mostChroma(hn::Set(FloatTag(), rule.mostChroma)), m_strength(hn::Set(FloatTag(), rule.strength))
    {}

    HWY_INLINE PixelPair operator()(PixelPair pixels) const
    {
        const Planes p = SplitPair(pixels);
        const Planes before{hn::ShiftLeft<7>(p.b), hn::ShiftLeft<7>(p.g), hn::ShiftLeft<7>(p.r), p.a};
        const Planes gained{hn::MulFixedPoint15(before.b, m_gains.b),
                            hn::MulFixedPoint15(before.g, m_gains.g),
                            hn::MulFixedPoint15(before.r, m_gains.r), p.a};
        const Shorts luma = m_luma.SumOf(before);
        const Shorts newLuma = m_gainedLuma.SumOf(before);
        const Shorts highest = hn::Max(hn::Max(gained.b, gained.g), gained.r);
        const Shorts chroma = Chroma(luma, newLuma, hn::Sub(highest, newLuma));
        const Shorts grey = hn::Add(hn::MulFixedPoint15(hn::Add(luma, luma), m_mixed),
                                    hn::Set(ShortTag(), int16_t(TemperatureRule::Level / 2)));
        const auto mix = [=](Shorts channel, Shorts gainedChannel) {
            const Shorts distance = hn::Sub(gainedChannel, newLuma);
            const Shorts change = hn::ShiftLeft<2>(hn::MulFixedPoint15(hn::Add(distance, distance), chroma));
            static_assert(TemperatureRule::Level == 1 << 6);
            return hn::ShiftRight<6>(hn::Add(hn::Add(hn::MulFixedPoint15(channel, m_kept), grey), change));
        };
        return MergePair({mix(before.b, gained.b), mix(before.g, gained.g), mix(before.r, gained.r), p.a});
    }

private:
    struct Factors
    {
        explicit HWY_INLINE Factors(const TemperatureRule::Factors& factors)
            : b(hn::Set(ShortTag(), int16_t(factors.b))), g(hn::Set(ShortTag(), int16_t(factors.g))),
              r(hn::Set(ShortTag(), int16_t(factors.r)))
        {}

        HWY_INLINE Shorts SumOf(const Planes& channels) const
        {
            return hn::Add(hn::Add(hn::MulFixedPoint15(channels.b, b), hn::MulFixedPoint15(channels.g, g)),
                           hn::MulFixedPoint15(channels.r, r));
        }

        Shorts b;
        Shorts g;
        Shorts r;
    };

    HWY_INLINE Shorts Chroma(Shorts luma, Shorts newLuma, Shorts headroom) const
    {
        const Shorts one = hn::Set(ShortTag(), int16_t(1));
        const FloatPair l = ToFloats(luma);
        const FloatPair n = ToFloats(hn::Max(newLuma, one));
        const FloatPair w = ToFloats(hn::Sub(hn::Set(ShortTag(), int16_t(TemperatureRule::White)), luma));
        const FloatPair h = ToFloats(hn::Max(headroom, one));
        return WholeParts(
            {Factor(l.first, n.first, w.first, h.first), Factor(l.second, n.second, w.second, h.second)});
    }

    HWY_INLINE Floats Factor(Floats luma, Floats newLuma, Floats aboveLuma, Floats headroom) const
    {
        const Floats restored = hn::Div(luma, newLuma);
        const Floats fitting = hn::Div(aboveLuma, headroom);
        return hn::Mul(hn::Min(hn::Min(restored, fitting), m_mostChroma), m_strength);
    }

    Factors m_luma;
    Factors m_gains;
    Factors m_gainedLuma;
    Shorts m_kept;
    Shorts m_mixed;
    Floats m_mostChroma;
    Floats m_strength;
#endif
};

void TemperatureRow(YDRGBA32i* row, size_t count, const TemperatureRule& rule)
{
    MapPixelPairs(row, count, rule, TemperatureVectors(rule));
}

} // namespace HWY_NAMESPACE
} // namespace
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace {
HWY_EXPORT(TemperatureRow);
} // namespace

extern "C" Q_DECL_EXPORT decltype(VectorKernels::TemperatureRow)::Function TemperatureRow;

void TemperatureRow(YDRGBA32i* row, int count, const TemperatureRule* rule)
{
    if (count > 0)
        HWY_DYNAMIC_DISPATCH(TemperatureRow)(row, static_cast<size_t>(count), *rule);
}
#endif
