#include "YDTileRunner.h"

#include "YDVectorRoutine.h"
#include "image/BaseTransformation.h"
#include "image/PoolTasks.h"
#include "image/YDBlend.h"

#include <algorithm>
#include <thread>

namespace {

const std::atomic<bool> NeverAborted{false};

/// A rectangle in 64 bits: a stored selection may lie anywhere, and moving it must not overflow.
struct WideRect
{
    qint64 left;
    qint64 top;
    qint64 right; ///< one past the last column
    qint64 bottom;

    explicit WideRect(const QRect& rect)
        : left(rect.left()), top(rect.top()), right(qint64(rect.right()) + 1),
          bottom(qint64(rect.bottom()) + 1)
    {}

    WideRect MovedBy(qint64 dx, qint64 dy) const
    {
        WideRect moved = *this;
        moved.left += dx;
        moved.right += dx;
        moved.top += dy;
        moved.bottom += dy;
        return moved;
    }

    /// The part inside (0, 0, width, height); an empty rectangle at (0, 0) if there is none.
    QRect ClippedTo(const RGBA32iImage& image) const
    {
        const qint64 x0 = std::max<qint64>(left, 0);
        const qint64 y0 = std::max<qint64>(top, 0);
        const qint64 x1 = std::min<qint64>(right, image.Width());
        const qint64 y1 = std::min<qint64>(bottom, image.Height());
        if (x0 >= x1 || y0 >= y1)
            return {};
        return {int(x0), int(y0), int(x1 - x0), int(y1 - y0)};
    }
};

int HardwareThreads() { return static_cast<int>(std::thread::hardware_concurrency()); }

} // namespace

YDTileRunner::YDTileRunner(const std::atomic<bool>* abort) : m_abort(abort ? *abort : NeverAborted) {}

RGBA32iImage YDTileRunner::Run(const YDAdjustmentJob& job)
{
    if (job.selectionBoundingRect.isEmpty()) {
        SetRange(static_cast<unsigned>(job.image.Height()));
        TransformArea(job.image, QRect(0, 0, job.image.Width(), job.image.Height()));
    } else {
        RunOnSelection(job);
    }
    return job.image;
}

void YDTileRunner::RunOnSelection(const YDAdjustmentJob& job)
{
    const WideRect bounds(job.selectionBoundingRect);
    const qint64 dx = job.selectionOffset.x();
    const qint64 dy = job.selectionOffset.y();
    const QRect area = bounds.MovedBy(dx, dy).ClippedTo(job.image);
    // Where the selection begins left of or above the picture, the mask is read from further inside.
    const QRect mask =
        bounds.MovedBy(std::max<qint64>(-dx, 0), std::max<qint64>(-dy, 0)).ClippedTo(job.selection);
    BlendArea blend;
    blend.picture = area.topLeft();
    blend.mask = mask.topLeft();
    blend.width = std::min(area.width(), mask.width());
    blend.height = std::min(area.height(), mask.height());
    SetRange(static_cast<unsigned>(area.height()) + static_cast<unsigned>(blend.height));
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
    Blend(copy, job, blend);
}

void YDTileRunner::TransformArea(const RGBA32iImage& image, const QRect& area)
{
    if (area.isEmpty())
        return;
    const YDVectorRoutine& vectorRoutine = GetVectorRoutine();
    if (vectorRoutine && Transformation().AllowsVectorProcessing())
        vectorRoutine(image.Pixels(), image.RowLength(), area, &Transformation(), m_abort,
                      [this] { IncrementProgress(); });
    else
        TransformAreaByPixels(image, area);
}

void YDTileRunner::TransformAreaByPixels(const RGBA32iImage& image, const QRect& area)
{
    YDRowQueue rows(area.top(), area.bottom() + 1, m_abort);
    RunPoolTasks(HardwareThreads() - 1, [&] { TransformRows(rows, image, area.left(), area.right()); });
}

void YDTileRunner::Blend(const RGBA32iImage& adjusted, const YDAdjustmentJob& job, const BlendArea& area)
{
    YDRowQueue rows(0, area.height, m_abort);
    const auto worker = [&] {
        for (int row = 0; rows.Take(row);) {
            YDBlend::YDSourceBySelection::ProcessRow(
                adjusted.Row(row), job.image.Row(area.picture.y() + row) + area.picture.x(),
                job.selection.Row(area.mask.y() + row) + area.mask.x(), area.width);
            IncrementProgress();
        }
    };
    // Blending is bound by memory: a second thread of a two-core machine would only take the core from
    // the user interface.
    if (HardwareThreads() <= 2)
        worker();
    else
        RunPoolTasks(HardwareThreads() - 1, worker);
}
