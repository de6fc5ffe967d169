#pragma once

#include "YDAdjustmentJob.h"
#include "adjustmentgui_operations_export.h"
#include "image/YDAdjustmentProcessing.h"

#include <atomic>
#include <functional>

class BaseTransformation;
class YDSelectionArea;

/// Rows that workers take one by one until they are used up or the run is aborted.
class YDRowQueue
{
public:
    /// The rows [top, bottom). `abort` may be null: never aborted.
    YDRowQueue(int top, int bottom, const std::atomic<bool>* abort)
        : m_next(top), m_bottom(bottom), m_abort(abort)
    {}

    /// Puts the next row into `row`; false when there is none to be worked on.
    bool Take(int& row)
    {
        const qint64 next = m_next.fetch_add(1, std::memory_order_relaxed);
        row = static_cast<int>(next);
        return next < m_bottom && !(m_abort && m_abort->load(std::memory_order_relaxed));
    }

private:
    std::atomic<qint64> m_next;
    const qint64 m_bottom;
    const std::atomic<bool>* const m_abort;
};

/// Runs a transformation over a job's picture, limited to and blended through the job's selection.
///
/// This is the engine behind the processing templates, which add what depends on the transformation's
/// type. One runner serves one run; Run() may be called on any thread.
class ADJUSTMENTGUI_OPERATIONS_EXPORT YDTileRunner : public YDAdjustmentProcessing
{
public:
    /// Adjusts the job's picture in place and returns it, made from the job's source before where there is
    /// one. An aborted run leaves whatever it had reached.
    ///
    /// Without a selection every row is transformed. With one, the rows that the moved bounding rectangle
    /// covers are transformed as in a copy and blended back through the mask; progress counts the transformed
    /// rows and the blended ones. With vector kernels all of it is one pass (RulePass) on all cores.
    ///
    /// Without vector kernels the rows go to as many pool tasks as there are cores less one: the caller's
    /// own stays free, and on a machine with a single core no row is worked on. A selection takes a copy of
    /// what it covers then, or of as many rows at a time as memory has room for.
    RGBA32iImage Run(const YDAdjustmentJob& job);

    /// Runs `worker`, which is bound by memory rather than by computing, as pool tasks: as many as there are
    /// `cores` less one. With two cores or fewer it runs on the calling thread alone: a second thread would
    /// only take the core from the user interface. Returns when all is done.
    static void RunMemoryBoundTasks(int cores, const std::function<void()>& worker);

    /// 0 where the system does not tell.
    static int CoresOfMachine();

    /// Whether a run works on any row at all: without vector kernels it leaves one core alone, and a machine
    /// may have no other.
    static bool HasWorkers();

protected:
    /// `abort` may be null (never aborted) and must outlive the runner.
    YDTileRunner(const std::atomic<bool>* abort, int cores);

    /// The transformation, for the vector routine.
    virtual BaseTransformation& Transformation() = 0;

    /// One worker of the path without vector instructions: takes rows until there are none, transforms
    /// columns [left, right] of each with a transformation of its own, and counts each as progress.
    virtual void TransformRows(YDRowQueue& rows, const RGBA32iImage& image, int left, int right) = 0;

private:
    void RunWithVectors(const YDAdjustmentJob& job);
    void RunOnAll(const RGBA32iImage& image);
    void RunOnSelection(const YDAdjustmentJob& job);
    void TransformRowsOf(const RGBA32iImage& image, int count);
    void Blend(const RGBA32iImage& adjusted, const YDAdjustmentJob& job, const YDSelectionArea& selected,
               int top, int bottom);

    const std::atomic<bool>& m_abort;
    const int m_cores;
};
