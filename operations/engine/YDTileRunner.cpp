#include "YDTileRunner.h"

#include "RulePass.h"
#include "YDVectorRoutine.h"
#include "image/BaseTransformation.h"
#include "image/YDBlend.h"
#include "image/YDSelectionArea.h"
#include "threads/PoolTasks.h"

#include <thread>

namespace {

const std::atomic<bool> NeverAborted{false};

int HardwareThreads() { return static_cast<int>(std::thread::hardware_concurrency()); }

} // namespace

YDTileRunner::YDTileRunner(const std::atomic<bool>* abort) : m_abort(abort ? *abort : NeverAborted) {}

RGBA32iImage YDTileRunner::Run(const YDAdjustmentJob& job)
{
    // With vectors the first pass copies as it goes.
    if (job.source.IsEmpty() || UsesVectors() || job.image.CopyFrom(job.source, &m_abort))
        job.selectionBoundingRect.isEmpty() ? RunOnAll(job) : RunOnSelection(job);
    return job.image;
}

bool YDTileRunner::UsesVectors() { return GetVectorRoutine() && Transformation().AllowsVectorProcessing(); }

void YDTileRunner::RunOnAll(const YDAdjustmentJob& job)
{
    SetRange(static_cast<unsigned>(job.image.Height()));
    if (UsesVectors() && !job.source.IsEmpty())
        RulePass::CopyAndApply(job, Transformation(), m_abort, [this] { IncrementProgress(); });
    else
        TransformArea(job.image, QRect(0, 0, job.image.Width(), job.image.Height()));
}

void YDTileRunner::RunOnSelection(const YDAdjustmentJob& job)
{
    const YDSelectionArea selected(job.image, job.selection, job.selectionOffset, job.selectionBoundingRect);
    const QRect& area = selected.Covered();
    SetRange(static_cast<unsigned>(area.height()) + static_cast<unsigned>(selected.Height()));
    if (UsesVectors()) {
        RulePass::ApplyThroughSelection(job, selected, Transformation(), m_abort,
                                        [this] { IncrementProgress(); });
        return;
    }
    if (area.isEmpty())
        return;

    // Only what the area covers is read of the copy, so only that is copied.
    const auto copy = RGBA32iImage::Uninitialized(area.width(), area.height());
    if (copy.IsEmpty())
        return;
    const bool copied = PixelBuffer::CopyRows(
        job.image.Row(area.top()) + area.left(), job.image.BytesPerLine(), copy.Pixels(), copy.BytesPerLine(),
        area.width() * qsizetype(sizeof(YDRGBA32i)), area.height(), &m_abort);
    if (!copied)
        return;
    TransformArea(copy, QRect(0, 0, copy.Width(), copy.Height()));
    Blend(copy, job, selected);
}

void YDTileRunner::TransformArea(const RGBA32iImage& image, const QRect& area)
{
    if (area.isEmpty())
        return;
    if (UsesVectors())
        GetVectorRoutine()(image.Pixels(), image.RowLength(), area, &Transformation(), m_abort,
                           [this] { IncrementProgress(); });
    else
        TransformAreaByPixels(image, area);
}

void YDTileRunner::TransformAreaByPixels(const RGBA32iImage& image, const QRect& area)
{
    YDRowQueue rows(area.top(), area.bottom() + 1, &m_abort);
    RunPoolTasks(HardwareThreads() - 1, [&] { TransformRows(rows, image, area.left(), area.right()); });
}

void YDTileRunner::Blend(const RGBA32iImage& adjusted, const YDAdjustmentJob& job,
                         const YDSelectionArea& selected)
{
    YDRowQueue rows(0, selected.Height(), &m_abort);
    RunMemoryBoundTasks([&] {
        for (int row = 0; rows.Take(row);) {
            YDBlend::YDSourceBySelection::ProcessRow(adjusted.Row(row), selected.RowOf(job.image, row),
                                                     selected.MaskRow(job.selection, row), selected.Width());
            IncrementProgress();
        }
    });
}

void YDTileRunner::RunMemoryBoundTasks(const std::function<void()>& worker)
{
    if (HardwareThreads() <= 2)
        worker();
    else
        RunPoolTasks(HardwareThreads() - 1, worker);
}
