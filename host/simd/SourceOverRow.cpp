#include <hwy/highway.h>

#include "image/VectorKernels.h"
#include "image/YDBlend.h"
#include "simd/PixelLoop.h"

HWY_BEFORE_NAMESPACE();
namespace {
namespace HWY_NAMESPACE {

using SourceOver = YDBlend::YDSourceOver<0>;

void LayOver(const SourceOver& rule, const YDRGBA32i* source, YDRGBA32i* destination, size_t count)
{
    for (size_t x = 0; x < count; ++x)
        rule(source[x], destination[x]);
}

#if HWY_TARGET == HWY_SCALAR

size_t LayVectorsOver(const SourceOver&, const YDRGBA32i*, YDRGBA32i*, size_t) { return 0; }

#else

/// (over * opacity + under * (256 - opacity) + 128) / 256. All below 65536.
HWY_INLINE Words Mix(Words over, Words under, Words opacity, Words rest)
{
    const Words half = hn::Set(WordTag(), uint16_t(SourceOver::Full / 2));
    return hn::ShiftRight<8>(hn::Add(hn::Add(hn::Mul(over, opacity), hn::Mul(under, rest)), half));
}

size_t LayVectorsOver(const SourceOver& rule, const YDRGBA32i* source, YDRGBA32i* destination, size_t count)
{
    const PixelTag d;
    const Words opacity = hn::Set(WordTag(), uint16_t(rule.opacity));
    const Words rest = hn::Set(WordTag(), uint16_t(SourceOver::Full - rule.opacity));
    const size_t lanes = hn::Lanes(d);
    size_t x = 0;
    for (; x + lanes <= count; x += lanes) {
        PrefetchAhead(source + x, lanes * sizeof(YDRGBA32i));
        PrefetchAhead(destination + x, lanes * sizeof(YDRGBA32i));
        auto* const out = reinterpret_cast<uint32_t*>(destination + x);
        const Pixels over = hn::LoadU(d, reinterpret_cast<const uint32_t*>(source + x));
        const Pixels under = hn::LoadU(d, out);
        const Pixels mixed = MergeWords(Mix(BlueRed(over), BlueRed(under), opacity, rest),
                                        Mix(GreenAlpha(over), GreenAlpha(under), opacity, rest));
        hn::StoreU(WithAlphaOf(under, mixed), d, out);
    }
    return x;
}

#endif

void SourceOverRow(const SourceOver& rule, const YDRGBA32i* source, YDRGBA32i* destination, size_t count)
{
    const size_t done = LayVectorsOver(rule, source, destination, count);
    LayOver(rule, source + done, destination + done, count - done);
}

} // namespace HWY_NAMESPACE
} // namespace
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace {
HWY_EXPORT(SourceOverRow);
} // namespace

extern "C" Q_DECL_EXPORT decltype(VectorKernels::SourceOverRow)::Function SourceOverRow;

void SourceOverRow(const YDRGBA32i* source, YDRGBA32i* destination, int count, int opacity)
{
    const YDBlend::YDSourceOver<0> rule{opacity};
    if (count > 0)
        HWY_DYNAMIC_DISPATCH(SourceOverRow)(rule, source, destination, static_cast<size_t>(count));
}
#endif
