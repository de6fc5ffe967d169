#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "simd/StreamBytes.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "simd/VectorKernels.h"

#include <hwy/cache_control.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

HWY_BEFORE_NAMESPACE();
namespace {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// Whole cache lines go past the caches. A part of one at either end would take as long there as a line.
void StreamBytes(const uint8_t* from, uint8_t* to, size_t count)
{
    constexpr size_t CacheLine = 64;
    const size_t head = std::min(count, (0 - reinterpret_cast<std::uintptr_t>(to)) % CacheLine);
    const size_t end = count - (count - head) % CacheLine;
    const hn::ScalableTag<uint8_t> d;
    std::memcpy(to, from, head);
    for (size_t i = head; i < end; i += hn::Lanes(d))
        hn::Stream(hn::LoadU(d, from + i), d, to + i);
    hwy::FlushStream();
    std::memcpy(to + end, from + end, count - end);
}

} // namespace HWY_NAMESPACE
} // namespace
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace {
HWY_EXPORT(StreamBytes);
} // namespace

void StreamBytes(const void* from, void* to, qsizetype bytes)
{
    const auto* const source = static_cast<const uint8_t*>(from);
    if (bytes > 0)
        HWY_DYNAMIC_DISPATCH(StreamBytes)(source, static_cast<uint8_t*>(to), static_cast<size_t>(bytes));
}
#endif
