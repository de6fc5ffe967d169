#include "image/YDBlend.h"

#include "image/VectorKernels.h"
#include "utilities/AVX2LIB.h"

void YDBlend::YDSourceBySelection::ProcessRow(const YDRGBA32i* source, YDRGBA32i* destination,
                                              const YDRGBA32i* mask, int count)
{
    static const auto kernel = AVX2LIB::Find(VectorKernels::BlendBySelectionRow);
    if (kernel) {
        kernel(source, destination, mask, count);
        return;
    }
    for (int x = 0; x < count; ++x)
        YDSourceBySelection()(source[x], destination[x], mask[x]);
}

void YDBlend::YDSourceOver<0>::ProcessRow(const YDRGBA32i* source, YDRGBA32i* destination, int count) const
{
    static const auto kernel = AVX2LIB::Find(VectorKernels::SourceOverRow);
    if (kernel) {
        kernel(source, destination, count, opacity);
        return;
    }
    for (int x = 0; x < count; ++x)
        (*this)(source[x], destination[x]);
}
