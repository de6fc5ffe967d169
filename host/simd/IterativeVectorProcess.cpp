#include "simd/VectorKernels.h"

#include "image/BaseTransformation.h"
#include "image/ParallelRows.h"

#include <QRect>

namespace {

/// Neighbouring rows on one thread, so that what is prefetched past the end of a row is not in vain; few, so
/// that the threads end together.
constexpr int RowsPerBand = 4;

} // namespace

void IterativeVectorProcess(YDRGBA32i* pixels, int stride, const QRect& area,
                            BaseTransformation* transformation, const std::atomic<bool>& abort,
                            std::function<void()> progress)
{
    if (area.isEmpty())
        return;
    const int left = area.left();
    const int width = area.width();
    ForEachRowBand(area.top(), area.top() + area.height(), RowsPerBand, &abort, [&](int first, int last) {
        for (int y = first; y < last && !abort.load(std::memory_order_relaxed); ++y) {
            transformation->ProcessRow(pixels + qsizetype(y) * stride + left, width);
            progress();
        }
    });
}
