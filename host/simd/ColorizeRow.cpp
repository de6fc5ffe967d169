#include <hwy/highway.h>

#include "image/ColorizeRule.h"
#include "image/VectorKernels.h"
#include "simd/PixelLoop.h"

HWY_BEFORE_NAMESPACE();
namespace {
namespace HWY_NAMESPACE {

class ColorizeVectors
{
#if HWY_TARGET == HWY_SCALAR
public:
    explicit ColorizeVectors(const ColorizeRule&) {}
#else
public:
    explicit HWY_INLINE ColorizeVectors(const ColorizeRule& rule)
        : m_lumaOfBlueRed(PairOfShorts(Luma709::Blue, Luma709::Red)),
          m_lumaOfGreen(PairOfShorts(Luma709::Green, 0)), m_knee(hn::Set(IntTag(), rule.knee)),
          m_blueTint(PairOfShorts(rule.blue.slope, rule.blue.bend)),
          m_greenTint(PairOfShorts(rule.green.slope, rule.green.bend)),
          m_redTint(PairOfShorts(rule.red.slope, rule.red.bend)), m_keepLow(PairOfShorts(rule.keep, 0)),
          m_keepHigh(PairOfShorts(0, rule.keep))
    {}

    HWY_INLINE Pixels operator()(Pixels pixels) const
    {
        const IntTag di;
        const Words blueRed = BlueRed(pixels);
        const Words greenAlpha = GreenAlpha(pixels);
        const Ints lumaHalf = hn::Set(di, ColorizeRule::LumaHalf);
        const Ints luma = hn::ShiftRight<ColorizeRule::LumaShift>(
            AddProducts(greenAlpha, m_lumaOfGreen, AddProducts(blueRed, m_lumaOfBlueRed, lumaHalf)));
        const Ints above = hn::Max(hn::Sub(luma, m_knee), hn::Zero(di));
        const Words lumas = hn::BitCast(WordTag(), hn::Or(luma, hn::ShiftLeft<16>(above)));
        const Words blueRed128 = hn::ShiftLeft<ColorizeRule::LumaBits>(blueRed);
        const Words greenAlpha128 = hn::ShiftLeft<ColorizeRule::LumaBits>(greenAlpha);
        return Merge({Mix(blueRed128, m_keepLow, lumas, m_blueTint),
                      Mix(greenAlpha128, m_keepLow, lumas, m_greenTint),
                      Mix(blueRed128, m_keepHigh, lumas, m_redTint)},
                     pixels);
    }

private:
    static HWY_INLINE Ints Mix(Words channels, Shorts keep, Words lumas, Shorts tint)
    {
        const Ints half = hn::Set(IntTag(), ColorizeRule::Half);
        return hn::ShiftRight<ColorizeRule::Shift>(
            AddProducts(channels, keep, AddProducts(lumas, tint, half)));
    }

    Shorts m_lumaOfBlueRed;
    Shorts m_lumaOfGreen;
    Ints m_knee;
    Shorts m_blueTint;
    Shorts m_greenTint;
    Shorts m_redTint;
    Shorts m_keepLow;
    Shorts m_keepHigh;
#endif
};

void ColorizeRow(YDRGBA32i* row, size_t count, const ColorizeRule& rule)
{
    MapPixels(row, count, rule, ColorizeVectors(rule));
}

} // namespace HWY_NAMESPACE
} // namespace
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace {
HWY_EXPORT(ColorizeRow);
} // namespace

extern "C" Q_DECL_EXPORT decltype(VectorKernels::ColorizeRow)::Function ColorizeRow;

void ColorizeRow(YDRGBA32i* row, int count, const ColorizeRule* rule)
{
    if (count > 0)
        HWY_DYNAMIC_DISPATCH(ColorizeRow)(row, static_cast<size_t>(count), *rule);
}
#endif
