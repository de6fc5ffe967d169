#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "simd/TemperatureRow.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "image/TemperatureRule.h"
#include "simd/PixelLoop.h"
#include "simd/VectorKernels.h"

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
        : m_luma(TemperatureRule::Luma), m_gainedLuma(rule.gainedLuma), m_mixedLuma(rule.mixedLuma),
          m_blueGain(PairOfShorts(rule.gains.b, 0)), m_greenGain(PairOfShorts(rule.gains.g, 0)),
          m_redGain(PairOfShorts(0, rule.gains.r)), m_keptLow(PairOfShorts(rule.kept, 0)),
          m_keptHigh(PairOfShorts(0, rule.kept)), m_mostChroma(hn::Set(FloatTag(), rule.mostChroma)),
          m_strength(hn::Set(FloatTag(), rule.strength))
    {}

    HWY_INLINE Pixels operator()(Pixels pixels) const
    {
        const Words blueRed = BlueRed(pixels);
        const Words greenAlpha = GreenAlpha(pixels);
        const Ints gained = m_gainedLuma.Of(blueRed, greenAlpha);
        const Ints blue = SumOfProducts(blueRed, m_blueGain);
        const Ints green = SumOfProducts(greenAlpha, m_greenGain);
        const Ints red = SumOfProducts(blueRed, m_redGain);
        const Floats chroma =
            Chroma(m_luma.Of(blueRed, greenAlpha), gained, hn::Max(hn::Max(blue, green), red));
        const Ints grey =
            hn::Add(m_mixedLuma.Of(blueRed, greenAlpha), hn::Set(IntTag(), TemperatureRule::One / 2));
        const auto mixed = [=](Ints kept, Ints channel) {
            const Floats distance = hn::ConvertTo(FloatTag(), hn::Sub(channel, gained));
            const Ints changed = hn::ConvertTo(IntTag(), hn::Mul(distance, chroma));
            return hn::ShiftRight<TemperatureRule::Shift>(hn::Add(hn::Add(kept, grey), changed));
        };
        return Merge({mixed(SumOfProducts(blueRed, m_keptLow), blue),
                      mixed(SumOfProducts(greenAlpha, m_keptLow), green),
                      mixed(SumOfProducts(blueRed, m_keptHigh), red)},
                     pixels);
    }

private:
    class ChannelSum
    {
    public:
        explicit HWY_INLINE ChannelSum(const TemperatureRule::Weights& weights)
            : m_blueRed(PairOfShorts(weights.b, weights.r)), m_green(PairOfShorts(weights.g, 0))
        {}

        HWY_INLINE Ints Of(Words blueRed, Words greenAlpha) const
        {
            return hn::Add(SumOfProducts(blueRed, m_blueRed), SumOfProducts(greenAlpha, m_green));
        }

    private:
        Shorts m_blueRed;
        Shorts m_green;
    };

    HWY_INLINE Floats Chroma(Ints luma, Ints gained, Ints highest) const
    {
        const FloatTag d;
        const Ints one = hn::Set(IntTag(), 1);
        const auto quotient = [=](Ints dividend, Ints divisor) {
            return hn::Div(hn::ConvertTo(d, dividend), hn::ConvertTo(d, hn::Max(divisor, one)));
        };
        const Floats restored = quotient(luma, gained);
        const Floats fitting =
            quotient(hn::Sub(hn::Set(IntTag(), TemperatureRule::White), luma), hn::Sub(highest, gained));
        return hn::Mul(hn::Min(hn::Min(restored, fitting), m_mostChroma), m_strength);
    }

    ChannelSum m_luma;
    ChannelSum m_gainedLuma;
    ChannelSum m_mixedLuma;
    Shorts m_blueGain;
    Shorts m_greenGain;
    Shorts m_redGain;
    Shorts m_keptLow;
    Shorts m_keptHigh;
    Floats m_mostChroma;
    Floats m_strength;
#endif
};

void TemperatureRow(YDRGBA32i* row, size_t count, const TemperatureRule& rule)
{
    MapPixels(row, count, rule, TemperatureVectors(rule));
}

} // namespace HWY_NAMESPACE
} // namespace
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace {
HWY_EXPORT(TemperatureRow);
} // namespace

void TemperatureRow(YDRGBA32i* row, int count, const TemperatureRule* rule)
{
    if (count > 0)
        HWY_DYNAMIC_DISPATCH(TemperatureRow)(row, static_cast<size_t>(count), *rule);
}
#endif
