// What the compiler sees of a kernel that is defined and called as it is declared. Either macro adds a
// mistake that it has to refuse.
#include "image/VectorKernels.h"

extern "C" Q_DECL_EXPORT decltype(VectorKernels::ThresholdRow)::Function ThresholdRow;

#if defined(DEFINED_WITH_OTHER_ARGUMENTS)
void ThresholdRow(YDRGBA32i*, int, const int*) {}
#else
void ThresholdRow(YDRGBA32i*, int, int) {}
#endif

namespace {

[[maybe_unused]] void Call(decltype(VectorKernels::ThresholdRow)::Function* kernel)
{
    constexpr int Level = 128;
#if defined(CALLED_WITH_OTHER_ARGUMENTS)
    kernel(nullptr, 0, &Level);
#else
    kernel(nullptr, 0, Level);
#endif
}

} // namespace
