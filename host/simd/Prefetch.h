#pragma once

#include <hwy/cache_control.h>

#include <cstddef>
#include <cstdint>

/// Asks for the cache lines of the `bytes` bytes that lie a few KiB after `address`, for a loop that goes
/// through memory and asks so at each step. Past the end of the memory it does nothing, so rows need no
/// special end; mostly it is the start of the next row.
inline void PrefetchAhead(const void* address, std::size_t bytes)
{
    constexpr std::size_t CacheLine = 64;
    // What lies nearer would still be on its way when it is used, what lies further might be gone again.
    constexpr std::size_t Distance = 3 * 1024;
    const std::uintptr_t ahead = reinterpret_cast<std::uintptr_t>(address) + Distance;
    for (std::size_t i = 0; i < bytes; i += CacheLine)
        hwy::Prefetch(reinterpret_cast<const char*>(ahead + i));
}
