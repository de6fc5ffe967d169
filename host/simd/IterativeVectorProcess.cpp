#include "image/BaseTransformation.h"
#include "image/VectorKernels.h"
#include "threads/ParallelRows.h"

#include <QRect>

extern "C" Q_DECL_EXPORT decltype(VectorKernels::IterativeVectorProcess)::Function IterativeVectorProcess;

void IterativeVectorProcess(YDRGBA32i* pixels, int stride, const QRect& area,
                            BaseTransformation* transformation, const std::atomic<bool>& abort,
                            std::function<void()> progress)
{
    if (area.isEmpty())
        return;
    const int left = area.left();
    const int width = area.width();
    ForEachRow(area.top(), area.top() + area.height(), &abort, [&](int y) {
        transformation->ProcessRow(pixels + qsizetype(y) * stride + left, width);
        progress();
    });
}
