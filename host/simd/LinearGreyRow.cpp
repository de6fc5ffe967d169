#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "simd/LinearGreyRow.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "image/LinearGreyRule.h"
#include "simd/PixelLoop.h"
#include "simd/VectorKernels.h"

HWY_BEFORE_NAMESPACE();
namespace {
namespace HWY_NAMESPACE {

class LinearGreyVectors
{
#if HWY_TARGET == HWY_SCALAR
public:
    explicit LinearGreyVectors(const LinearGreyRule&) {}
#else
public:
    explicit HWY_INLINE LinearGreyVectors(const LinearGreyRule& rule) : m_rule(rule) {}

    HWY_INLINE Pixels operator()(Pixels pixels) const
    {
        const IntTag d;
        const Channels from = Split(pixels);
        const Ints redGreen = hn::Add(hn::GatherIndex(d, m_rule.red.data(), from.r),
                                      hn::GatherIndex(d, m_rule.green.data(), from.g));
        const Ints blue =
            hn::Add(hn::GatherIndex(d, m_rule.blue.data(), from.b), hn::Set(d, LinearGreyRule::Half));
        const Ints light = hn::ShiftRight<LinearGreyRule::Shift>(hn::Add(redGreen, blue));
        const Ints index =
            hn::Min(hn::Max(light, hn::Zero(d)), hn::Set(d, 1 << LinearGreyRule::EncodingBits));
        // Three bytes more than the level are read.
        const auto* const levels = reinterpret_cast<const int32_t*>(m_rule.encoding->data());
        const Ints level = hn::And(hn::GatherOffset(d, levels, index), hn::Set(d, 0xff));
        return WithAlphaOf(pixels, Grey(level));
    }

private:
    const LinearGreyRule& m_rule;
#endif
};

void LinearGreyRow(YDRGBA32i* row, size_t count, const LinearGreyRule& rule)
{
    MapPixels(row, count, rule, LinearGreyVectors(rule));
}

} // namespace HWY_NAMESPACE
} // namespace
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace {
HWY_EXPORT(LinearGreyRow);
} // namespace

void LinearGreyRow(YDRGBA32i* row, int count, const LinearGreyRule* rule)
{
    if (count > 0)
        HWY_DYNAMIC_DISPATCH(LinearGreyRow)(row, static_cast<size_t>(count), *rule);
}
#endif
