#include <hwy/highway.h>

#include "image/VectorKernels.h"
#include "simd/AverageTint.h"
#include "simd/PixelLoop.h"

#include <algorithm>

HWY_BEFORE_NAMESPACE();
namespace {
namespace HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR

/// From one channel of the black tone to that of the white tone.
class Ramp
{
public:
    HWY_INLINE Ramp(int black, int white)
        : m_start(hn::Set(IntTag(), black * AverageTint::Full)), m_slope(hn::Set(IntTag(), white - black))
    {}

    HWY_INLINE Ints At(Ints level) const
    {
        const FloatTag df;
        const Ints numerator = hn::Add(m_start, hn::Mul(m_slope, level));
        const Floats eighth = hn::ConvertTo(df, hn::ShiftRight<AverageTint::ShiftOfFull>(numerator));
        return WholePart(hn::Mul(eighth, hn::Set(df, AverageTint::Reciprocal)));
    }

private:
    Ints m_start;
    Ints m_slope;
};

/// The tones that the ramps give for the brightness of each pixel.
class ToneVectors
{
public:
    explicit HWY_INLINE ToneVectors(const AverageTint& tint)
        : m_blueRed(PairOfShorts(tint.blue, tint.red)), m_green(PairOfShorts(tint.green, 0)),
          m_blueRamp(tint.black.b, tint.white.b), m_greenRamp(tint.black.g, tint.white.g),
          m_redRamp(tint.black.r, tint.white.r)
    {}

    /// With the alpha of the pixels, whose parts the other two are.
    HWY_INLINE Pixels operator()(Pixels pixels, Words blueRed, Words greenAlpha) const
    {
        const Ints greenPart = SumOfProducts(greenAlpha, m_green);
        const Ints level = AddProducts(blueRed, m_blueRed, greenPart);
        const Ints blueGreen = hn::Or(m_blueRamp.At(level), hn::ShiftLeft<8>(m_greenRamp.At(level)));
        const Ints colour = hn::Or(blueGreen, hn::ShiftLeft<16>(m_redRamp.At(level)));
        const Pixels alpha = hn::Set(PixelTag(), 0xff000000u);
        return hn::Or(hn::And(alpha, pixels), hn::BitCast(PixelTag(), colour));
    }

private:
    Shorts m_blueRed;
    Shorts m_green;
    Ramp m_blueRamp;
    Ramp m_greenRamp;
    Ramp m_redRamp;
};

/// All of the tones.
class FullTintVectors
{
public:
    explicit HWY_INLINE FullTintVectors(const AverageTint& tint) : m_tones(tint) {}

    HWY_INLINE Pixels operator()(Pixels pixels) const
    {
        return m_tones(pixels, BlueRed(pixels), GreenAlpha(pixels));
    }

private:
    ToneVectors m_tones;
};

/// The tones mixed with the pixels.
///
/// tone A + channel (Full - A) is the lesser of the two times Full plus their difference times A, if the tone
/// is the greater, or Full - A; divided by Full, the first part is whole.
class MixedTintVectors
{
public:
    explicit HWY_INLINE MixedTintVectors(const AverageTint& tint)
        : m_tones(tint), m_up(FactorVector(tint.amount)),
          m_down(FactorVector(AverageTint::Full - tint.amount))
    {}

    HWY_INLINE Pixels operator()(Pixels pixels) const
    {
        const Words blueRed = BlueRed(pixels);
        const Words greenAlpha = GreenAlpha(pixels);
        const Pixels tones = m_tones(pixels, blueRed, greenAlpha);
        return MergeWords(Mix(blueRed, BlueRed(tones)), Mix(greenAlpha, GreenAlpha(tones)));
    }

private:
    static HWY_INLINE Words FactorVector(int share)
    {
        return hn::Set(WordTag(), static_cast<uint16_t>(AverageTint::FactorOf(share)));
    }

    HWY_INLINE Words Mix(Words channels, Words tones) const
    {
        const ShortTag d;
        const Shorts from = hn::BitCast(d, channels);
        const Shorts to = hn::BitCast(d, tones);
        const auto isUp = hn::RebindMask(WordTag(), hn::Gt(to, from));
        const Shorts lesser = hn::Min(from, to);
        const Words difference = hn::BitCast(WordTag(), hn::Sub(hn::Max(from, to), lesser));
        const Words share = hn::MulHigh(difference, hn::IfThenElse(isUp, m_up, m_down));
        return hn::Add(hn::BitCast(WordTag(), lesser), share);
    }

    ToneVectors m_tones;
    Words m_up;
    Words m_down;
};

#else

struct FullTintVectors
{
    explicit FullTintVectors(const AverageTint&) {}
};

struct MixedTintVectors
{
    explicit MixedTintVectors(const AverageTint&) {}
};

#endif

void AverageTintRow(YDRGBA32i* row, size_t count, const AverageTint& tint)
{
    if (tint.amount == AverageTint::Full)
        MapPixels(row, count, tint, FullTintVectors(tint));
    else if (tint.amount != 0)
        MapPixels(row, count, tint, MixedTintVectors(tint));
}

} // namespace HWY_NAMESPACE
} // namespace
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace {
HWY_EXPORT(AverageTintRow);
} // namespace

extern "C" Q_DECL_EXPORT decltype(VectorKernels::AverageTintAVX2)::Function AverageTintAVX2;

void AverageTintAVX2(YDRGBA32i* row, int count, const int* weights, QRgb blackTone, QRgb whiteTone,
                     int amount)
{
    const AverageTint tint{weights[0], weights[1], weights[2],
                           blackTone,  whiteTone,  std::clamp(amount, 0, AverageTint::Full)};
    if (count > 0)
        HWY_DYNAMIC_DISPATCH(AverageTintRow)(row, static_cast<size_t>(count), tint);
}
#endif
