#include <hwy/highway.h>

#include "image/BlackAndWhiteRule.h"
#include "image/VectorKernels.h"
#include "simd/PixelLoop.h"

HWY_BEFORE_NAMESPACE();
namespace {
namespace HWY_NAMESPACE {

class BlackAndWhiteVectors
{
#if HWY_TARGET == HWY_SCALAR
public:
    explicit BlackAndWhiteVectors(const BlackAndWhiteRule&) {}
#else
public:
    explicit HWY_INLINE BlackAndWhiteVectors(const BlackAndWhiteRule& rule)
        : m_red(hn::Set(IntTag(), rule.red)), m_green(hn::Set(IntTag(), rule.green)),
          m_blue(hn::Set(IntTag(), rule.blue))
    {}

    HWY_INLINE Pixels operator()(Pixels pixels) const
    {
        const IntTag d;
        const Channels from = Split(pixels);
        const Ints redGreen = hn::Add(hn::Mul(from.r, m_red), hn::Mul(from.g, m_green));
        const Ints blue = hn::Add(hn::Mul(from.b, m_blue), hn::Set(d, BlackAndWhiteRule::Half));
        const Ints sum = hn::ShiftRight<BlackAndWhiteRule::Shift>(hn::Add(redGreen, blue));
        return WithAlphaOf(pixels, Grey(hn::Min(hn::Max(sum, hn::Zero(d)), hn::Set(d, 255))));
    }

private:
    Ints m_red;
    Ints m_green;
    Ints m_blue;
#endif
};

void BlackAndWhiteRow(YDRGBA32i* row, size_t count, const BlackAndWhiteRule& rule)
{
    MapPixels(row, count, rule, BlackAndWhiteVectors(rule));
}

} // namespace HWY_NAMESPACE
} // namespace
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace {
HWY_EXPORT(BlackAndWhiteRow);
} // namespace

extern "C" Q_DECL_EXPORT decltype(VectorKernels::BlackAndWhiteRow)::Function BlackAndWhiteRow;

void BlackAndWhiteRow(YDRGBA32i* row, int count, const BlackAndWhiteRule* rule)
{
    if (count > 0)
        HWY_DYNAMIC_DISPATCH(BlackAndWhiteRow)(row, static_cast<size_t>(count), *rule);
}
#endif
