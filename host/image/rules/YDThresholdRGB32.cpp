#include "image/YDThresholdRGB32.h"

#include "image/VectorKernels.h"
#include "utilities/AVX2LIB.h"

namespace {

constexpr int BlockPixels = 8;

} // namespace

void YDThresholdRGB32::operator()(unsigned char* pixels, bool) const
{
    ProcessRow(reinterpret_cast<YDRGBA32i*>(pixels), BlockPixels);
}

void YDThresholdRGB32::ProcessRow(YDRGBA32i* row, int count) const
{
    static const auto kernel = AVX2LIB::Find(VectorKernels::ThresholdRow);
    if (kernel) {
        kernel(row, count, m_level);
        return;
    }
    for (int x = 0; x < count; ++x)
        (*this)(row[x]);
}
