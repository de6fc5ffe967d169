#include <hwy/highway.h>

#include "image/PhotoFilterRule.h"
#include "image/VectorKernels.h"
#include "simd/PixelLoop.h"

HWY_BEFORE_NAMESPACE();
namespace {
namespace HWY_NAMESPACE {

class PhotoFilterVectors
{
#if HWY_TARGET == HWY_SCALAR
public:
    explicit PhotoFilterVectors(const PhotoFilterRule&) {}
#else
public:
    explicit HWY_INLINE PhotoFilterVectors(const PhotoFilterRule& rule)
        : m_blueRedBefore(PairOfShorts(-Luma709::Blue, -Luma709::Red)),
          m_greenBefore(PairOfShorts(-Luma709::Green, 0)),
          m_blueRedAfter(PairOfShorts(-rule.blue.weight, -rule.red.weight)),
          m_greenAfter(PairOfShorts(-rule.green.weight, 0)),
          m_blueRedAbsorbed(PairOfWords(rule.blue.absorbed, rule.red.absorbed)),
          m_greenAbsorbed(PairOfWords(rule.green.absorbed, 0))
    {}

    HWY_INLINE Pixels operator()(Pixels pixels) const
    {
        const Words blueRed = BlueRed(pixels);
        const Words greenAlpha = GreenAlpha(pixels);
        const Words ratio = Ratio(blueRed, greenAlpha);
        return WithAlphaOf(pixels, MergeWords(Restored(blueRed, m_blueRedAbsorbed, ratio),
                                              Restored(greenAlpha, m_greenAbsorbed, ratio)));
    }

private:
    /// In both halves of each pixel.
    HWY_INLINE Words Ratio(Words blueRed, Words greenAlpha) const
    {
        const IntTag di;
        const FloatTag df;
        const Ints white = hn::Set(di, PhotoFilterRule::WhiteLuma);
        const Ints before =
            AddProducts(blueRed, m_blueRedBefore, AddProducts(greenAlpha, m_greenBefore, white));
        const Ints after = AddProducts(blueRed, m_blueRedAfter, AddProducts(greenAlpha, m_greenAfter, white));
        const Floats quotient =
            hn::Div(hn::ConvertTo(df, before), hn::ConvertTo(df, hn::Max(after, hn::Set(di, 1))));
        const Ints ratio = WholePart(hn::Mul(quotient, hn::Set(df, PhotoFilterRule::Whole)));
        return hn::BitCast(WordTag(), hn::Or(ratio, hn::ShiftLeft<16>(ratio)));
    }

    static HWY_INLINE Words Restored(Words channels, Words absorbed, Words ratio)
    {
        const WordTag d;
        const Words white = hn::Set(d, uint16_t(PhotoFilterRule::White));
        const Words whiteAndHalf = hn::Set(d, uint16_t(PhotoFilterRule::White + PhotoFilterRule::Half));
        const Words level = hn::ShiftLeft<PhotoFilterRule::ChannelBits>(channels);
        const Words filtered = hn::Add(hn::Sub(white, level), hn::MulHigh(level, absorbed));
        return hn::ShiftRight<PhotoFilterRule::ChannelBits>(
            hn::Sub(whiteAndHalf, hn::MulHigh(filtered, ratio)));
    }

    Shorts m_blueRedBefore;
    Shorts m_greenBefore;
    Shorts m_blueRedAfter;
    Shorts m_greenAfter;
    Words m_blueRedAbsorbed;
    Words m_greenAbsorbed;
#endif
};

void PhotoFilterRow(YDRGBA32i* row, size_t count, const PhotoFilterRule& rule)
{
    MapPixels(row, count, rule, PhotoFilterVectors(rule));
}

} // namespace HWY_NAMESPACE
} // namespace
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace {
HWY_EXPORT(PhotoFilterRow);
} // namespace

extern "C" Q_DECL_EXPORT decltype(VectorKernels::PhotoFilterRow)::Function PhotoFilterRow;

void PhotoFilterRow(YDRGBA32i* row, int count, const PhotoFilterRule* rule)
{
    if (count > 0)
        HWY_DYNAMIC_DISPATCH(PhotoFilterRow)(row, static_cast<size_t>(count), *rule);
}
#endif
