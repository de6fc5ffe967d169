#include "image/CopyPastCaches.h"

#include "utilities/AVX2LIB.h"

#include <cstddef>
#include <cstring>

void CopyPastCaches(const void* from, void* to, qsizetype bytes)
{
    using Kernel = void (*)(const void*, void*, qsizetype);
    static const auto kernel = AVX2LIB::Find<Kernel>("StreamBytes");
    if (kernel)
        kernel(from, to, bytes);
    else
        std::memcpy(to, from, static_cast<std::size_t>(bytes));
}
