#include <hwy/highway.h>

#include "image/ColorBalanceRule.h"
#include "image/VectorKernels.h"
#include "simd/PixelPairLoop.h"

HWY_BEFORE_NAMESPACE();
namespace {
namespace HWY_NAMESPACE {

class ColorBalanceVectors
{
#if HWY_TARGET == HWY_SCALAR
public:
    explicit ColorBalanceVectors(const ColorBalanceRule&) {}
#else
public:
    explicit HWY_INLINE ColorBalanceVectors(const ColorBalanceRule& rule)
        : m_blue(rule.b), m_green(rule.g), m_red(rule.r),
          m_lumaOfBlueRed(PairOfShorts(ColorBalanceRule::LumaOfBlue, ColorBalanceRule::LumaOfRed)),
          m_lumaOfGreen(PairOfShorts(ColorBalanceRule::LumaOfGreen, 0))
    {}

    HWY_INLINE PixelPair operator()(PixelPair pixels) const
    {
        const ShortTag d;
        const Shorts middle = hn::Set(d, int16_t(ColorBalanceRule::MiddleLuma));
        const Shorts luma = WeighedSum(pixels, m_lumaOfBlueRed, m_lumaOfGreen);
        const auto isDark = hn::Lt(luma, middle);
        const Shorts end = EndWeight(hn::Abs(hn::Sub(luma, middle)));
        const Planes p = SplitPair(pixels);
        const auto shifted = [=](Shorts channel, const Shifts& shifts) {
            const Shorts of = hn::IfThenElse(isDark, shifts.shadows, shifts.highlights);
            return Shifted(channel, hn::Add(shifts.midtones, hn::MulFixedPoint15(end, of)));
        };
        return MergePair({shifted(p.b, m_blue), shifted(p.g, m_green), shifted(p.r, m_red), p.a});
    }

private:
    struct Shifts
    {
        explicit HWY_INLINE Shifts(const ColorBalanceRule::Shifts& shifts)
            : midtones(hn::Set(ShortTag(), int16_t(shifts.midtones))),
              shadows(hn::Set(ShortTag(), int16_t(shifts.shadows))),
              highlights(hn::Set(ShortTag(), int16_t(shifts.highlights)))
        {}

        Shorts midtones;
        Shorts shadows;
        Shorts highlights;
    };

    /// ColorBalanceRule::EndWeight of the distance from the middle luma.
    static HWY_INLINE Shorts EndWeight(Shorts fromMiddle)
    {
        const WordTag d;
        const Words distance = hn::BitCast(d, hn::ShiftLeft<2>(fromMiddle));
        const Words square = hn::MulHigh(distance, distance);
        const Words slope = hn::Sub(hn::Set(d, uint16_t(3 << 14)), hn::ShiftRight<1>(distance));
        return hn::BitCast(ShortTag(), hn::MulHigh(square, slope));
    }

    static HWY_INLINE Shorts Shifted(Shorts channel, Shorts shift)
    {
        const ShortTag d;
        const WordTag dWord;
        const Shorts lowByte = hn::Set(d, int16_t(255));
        const Shorts isNegative = hn::ShiftRight<15>(shift);
        const Words used = hn::BitCast(dWord, hn::Xor(channel, hn::And(isNegative, lowByte)));
        const Words left =
            hn::Sub(hn::Set(dWord, uint16_t(ColorBalanceRule::SquareOfWhite)), hn::Mul(used, used));
        const Shorts room = hn::BitCast(d, hn::ShiftRight<1>(left));
        const Shorts before =
            hn::Add(hn::ShiftLeft<6>(channel), hn::Set(d, int16_t(ColorBalanceRule::Level / 2)));
        static_assert(ColorBalanceRule::Level == 1 << 6);
        return hn::ShiftRight<6>(hn::Add(before, hn::MulFixedPoint15(shift, room)));
    }

    Shifts m_blue;
    Shifts m_green;
    Shifts m_red;
    Shorts m_lumaOfBlueRed;
    Shorts m_lumaOfGreen;
#endif
};

void ColorBalanceRow(YDRGBA32i* row, size_t count, const ColorBalanceRule& rule)
{
    MapPixelPairs(row, count, rule, ColorBalanceVectors(rule));
}

} // namespace HWY_NAMESPACE
} // namespace
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace {
HWY_EXPORT(ColorBalanceRow);
} // namespace

extern "C" Q_DECL_EXPORT decltype(VectorKernels::ColorBalanceRow)::Function ColorBalanceRow;

void ColorBalanceRow(YDRGBA32i* row, int count, const ColorBalanceRule* rule)
{
    if (count > 0)
        HWY_DYNAMIC_DISPATCH(ColorBalanceRow)(row, static_cast<size_t>(count), *rule);
}
#endif
