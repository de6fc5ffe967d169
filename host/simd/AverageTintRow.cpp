#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "simd/AverageTintRow.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "simd/AverageTint.h"
#include "simd/PixelLoop.h"
#include "simd/VectorKernels.h"

#include <algorithm>

HWY_BEFORE_NAMESPACE();
namespace {
namespace HWY_NAMESPACE {

class AverageTintVectors
{
#if HWY_TARGET == HWY_SCALAR
public:
    explicit AverageTintVectors(const AverageTint&) {}
#else
public:
    explicit HWY_INLINE AverageTintVectors(const AverageTint& tint)
        : m_blueRed(PairOfShorts(tint.blue, tint.red)), m_green(PairOfShorts(tint.green, 0)),
          m_blueRamp(tint.black.b, tint.white.b), m_greenRamp(tint.black.g, tint.white.g),
          m_redRamp(tint.black.r, tint.white.r), m_amount(hn::Set(IntTag(), tint.amount)),
          m_rest(hn::Set(IntTag(), AverageTint::Full - tint.amount))
    {}

    HWY_INLINE Pixels operator()(Pixels pixels) const
    {
        const Ints greenPart = SumOfProducts(GreenAlpha(pixels), m_green);
        const Ints level = AddProducts(BlueRed(pixels), m_blueRed, greenPart);
        const Channels from = Split(pixels);
        return Merge({Mix(from.b, m_blueRamp.At(level)), Mix(from.g, m_greenRamp.At(level)),
                      Mix(from.r, m_redRamp.At(level))},
                     pixels);
    }

private:
    /// numerator / Full, rounded down, for every numerator that there is: none exceeds 255 * Full.
    static HWY_INLINE Ints DividedByFull(Ints numerator)
    {
        const FloatTag df;
        const Floats eighth = hn::ConvertTo(df, hn::ShiftRight<AverageTint::ShiftOfFull>(numerator));
        return hn::ConvertTo(IntTag(), hn::Mul(eighth, hn::Set(df, AverageTint::Reciprocal)));
    }

    /// From one channel of the black tone to that of the white tone.
    class Ramp
    {
    public:
        HWY_INLINE Ramp(int black, int white)
            : m_start(hn::Set(IntTag(), black * AverageTint::Full)), m_slope(hn::Set(IntTag(), white - black))
        {}

        HWY_INLINE Ints At(Ints level) const
        {
            return DividedByFull(hn::Add(m_start, hn::Mul(m_slope, level)));
        }

    private:
        Ints m_start;
        Ints m_slope;
    };

    HWY_INLINE Ints Mix(Ints channel, Ints tone) const
    {
        return DividedByFull(hn::Add(hn::Mul(tone, m_amount), hn::Mul(channel, m_rest)));
    }

    Shorts m_blueRed;
    Shorts m_green;
    Ramp m_blueRamp;
    Ramp m_greenRamp;
    Ramp m_redRamp;
    Ints m_amount;
    Ints m_rest;
#endif
};

void AverageTintRow(YDRGBA32i* row, size_t count, const AverageTint& tint)
{
    MapPixels(row, count, tint, AverageTintVectors(tint));
}

} // namespace HWY_NAMESPACE
} // namespace
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace {
HWY_EXPORT(AverageTintRow);
} // namespace

void AverageTintAVX2(YDRGBA32i* row, int count, const int* weights, QRgb blackTone, QRgb whiteTone,
                     int amount)
{
    const AverageTint tint{weights[0], weights[1], weights[2],
                           blackTone,  whiteTone,  std::clamp(amount, 0, AverageTint::Full)};
    if (count > 0)
        HWY_DYNAMIC_DISPATCH(AverageTintRow)(row, static_cast<size_t>(count), tint);
}
#endif
