#include "YDTileRunner.h"

#include "PassOver.h"
#include "YDVectorRoutine.h"
#include "image/BaseTransformation.h"
#include "image/YDBlend.h"
#include "image/YDSelectionArea.h"
#include "threads/PoolTasks.h"

#include <algorithm>
#include <thread>

namespace {

const std::atomic<bool> NeverAborted{false};

/// A picture of this size, or of as many of its rows as memory has room for; empty for none.
RGBA32iImage AsHighAsFits(const QSize& size)
{
    RGBA32iImage image;
    for (int rows = size.height(); rows > 0 && image.IsEmpty(); rows /= 2)
        image = RGBA32iImage::Uninitialized(size.width(), rows);
    return image;
}

} // namespace

YDTileRunner::YDTileRunner(const std::atomic<bool>* abort, int cores)
    : m_abort(abort ? *abort : NeverAborted), m_cores(cores)
{}

int YDTileRunner::CoresOfMachine() { return static_cast<int>(std::thread::hardware_concurrency()); }

bool YDTileRunner::HasWorkers() { return GetVectorRoutine() || CoresOfMachine() > 1; }

RGBA32iImage YDTileRunner::Run(const YDAdjustmentJob& job)
{
    if (GetVectorRoutine() && Transformation().AllowsVectorProcessing())
        RunWithVectors(job);
    else if (job.source.IsEmpty() || job.image.CopyFrom(job.source, &m_abort))
        job.selectionBoundingRect.isEmpty() ? RunOnAll(job.image) : RunOnSelection(job);
    return job.image;
}

void YDTileRunner::RunWithVectors(const YDAdjustmentJob& job)
{
    const RulePass pass = PassOver(job);
    BaseTransformation& rule = Transformation();
    const auto onStep = [this] { IncrementProgress(); };
    SetRange(pass.Steps());
    if (!pass.IsWholeInPlace())
        pass.Run(RulePass::RuleOf(rule), &m_abort, onStep);
    else if (!pass.Reach().isEmpty())
        GetVectorRoutine()(job.image.Pixels(), job.image.RowLength(), pass.Reach(), &rule, m_abort, onStep);
}

void YDTileRunner::RunOnAll(const RGBA32iImage& image)
{
    SetRange(static_cast<unsigned>(image.Height()));
    TransformRowsOf(image, image.Height());
}

void YDTileRunner::RunOnSelection(const YDAdjustmentJob& job)
{
    const YDSelectionArea selected(job.image, job.selection, job.selectionOffset, job.selectionBoundingRect);
    const QRect& area = selected.Covered();
    SetRange(static_cast<unsigned>(area.height()) + static_cast<unsigned>(selected.Height()));
    // Only what the area covers is read of the copy. Where memory has no room for all of that, a part at a
    // time is transformed and blended.
    const RGBA32iImage copy = AsHighAsFits(area.size());
    for (int top = 0; top < area.height() && !copy.IsEmpty(); top += copy.Height()) {
        const int rows = std::min(copy.Height(), area.height() - top);
        if (!PixelBuffer::CopyRows(selected.RowOf(job.image, top), job.image.BytesPerLine(), copy.Pixels(),
                                   copy.BytesPerLine(), area.width() * qsizetype(sizeof(YDRGBA32i)), rows,
                                   &m_abort))
            return;
        TransformRowsOf(copy, rows);
        Blend(copy, job, selected, top, std::min(top + rows, selected.Height()));
    }
}

void YDTileRunner::TransformRowsOf(const RGBA32iImage& image, int count)
{
    if (image.IsEmpty())
        return;
    YDRowQueue rows(0, count, &m_abort);
    RunPoolTasks(m_cores - 1, [&] { TransformRows(rows, image, 0, image.Width() - 1); });
}

void YDTileRunner::Blend(const RGBA32iImage& adjusted, const YDAdjustmentJob& job,
                         const YDSelectionArea& selected, int top, int bottom)
{
    YDRowQueue rows(top, bottom, &m_abort);
    RunMemoryBoundTasks(m_cores, [&] {
        for (int row = 0; rows.Take(row);) {
            YDBlend::YDSourceBySelection::ProcessRow(adjusted.Row(row - top), selected.RowOf(job.image, row),
                                                     selected.MaskRow(job.selection, row), selected.Width());
            IncrementProgress();
        }
    });
}

void YDTileRunner::RunMemoryBoundTasks(int cores, const std::function<void()>& worker)
{
    if (cores <= 2)
        worker();
    else
        RunPoolTasks(cores - 1, worker);
}
