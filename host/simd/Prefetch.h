#pragma once

#include <hwy/base.h>
#include <hwy/cache_control.h>

#include <cstddef>
#include <cstdint>

/// How far ahead of its use memory is asked for, in bytes: what lies nearer would still be on its way when
/// it is used, what lies further might be gone again.
constexpr std::size_t PrefetchDistance = 3 * 1024;

/// Asks for the cache lines of the `bytes` bytes that lie `distance` after `address`, for a loop that
/// goes through memory and asks so at each step. Past the end of the memory it does nothing, so rows need no
/// special end; mostly it is the start of the next row.
///
/// Always inlined: of a call, the compiler would see that it has no result, and drop it.
HWY_INLINE void PrefetchAhead(const void* address, std::size_t bytes, std::size_t distance = PrefetchDistance)
{
    constexpr std::size_t CacheLine = 64;
    const std::uintptr_t ahead = reinterpret_cast<std::uintptr_t>(address) + distance;
    for (std::size_t i = 0; i < bytes; i += CacheLine)
        hwy::Prefetch(reinterpret_cast<const char*>(ahead + i));
}
