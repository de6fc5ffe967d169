#include <hwy/highway.h>

#include "image/VectorKernels.h"
#include "image/YDThresholdRGB32.h"
#include "simd/PixelLoop.h"

#include <algorithm>

HWY_BEFORE_NAMESPACE();
namespace {
namespace HWY_NAMESPACE {

class ThresholdVectors
{
#if HWY_TARGET == HWY_SCALAR
public:
    explicit ThresholdVectors(int) {}
#else
public:
    explicit HWY_INLINE ThresholdVectors(int level)
        : m_blueRed(PairOfShorts(Luma709::Blue, Luma709::Red)), m_green(PairOfShorts(Luma709::Green, 0)),
          m_justDark(hn::Set(IntTag(), (2 * level - 1) * (1 << (Luma709::Shift - 1)) - 1))
    {}

    HWY_INLINE Pixels operator()(Pixels pixels) const
    {
        const Ints greenPart = SumOfProducts(GreenAlpha(pixels), m_green);
        const Ints luma = AddProducts(BlueRed(pixels), m_blueRed, greenPart);
        const auto isWhite = hn::VecFromMask(IntTag(), hn::Gt(luma, m_justDark));
        return WithAlphaOf(pixels, hn::BitCast(PixelTag(), isWhite));
    }

private:
    Shorts m_blueRed;
    Shorts m_green;
    Ints m_justDark; ///< the highest luma that is black, before it is rounded and shifted
#endif
};

void ThresholdRow(YDRGBA32i* row, size_t count, int level)
{
    const int bounded = std::clamp(level, 0, 256); // all white, all black
    YDThresholdRGB32 rule;
    rule.SetLevel(bounded);
    MapPixels(row, count, rule, ThresholdVectors(bounded));
}

} // namespace HWY_NAMESPACE
} // namespace
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace {
HWY_EXPORT(ThresholdRow);
} // namespace

extern "C" Q_DECL_EXPORT decltype(VectorKernels::ThresholdRow)::Function ThresholdRow;

void ThresholdRow(YDRGBA32i* row, int count, int level)
{
    if (count > 0)
        HWY_DYNAMIC_DISPATCH(ThresholdRow)(row, static_cast<size_t>(count), level);
}
#endif
