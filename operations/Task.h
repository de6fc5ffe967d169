#pragma once

#include "YDAdjustmentJob.h"
#include "adjustmentgui_operations_export.h"
#include "operations/Selection.h"

#include <QString>

#include <atomic>
#include <functional>
#include <utility>

namespace operations {

class TaskProgress;

/// How a run of a task is stopped and watched. Both outlive the run.
struct TaskControl
{
    const std::atomic<bool>* abort = nullptr; ///< set to stop the run at the next row; null: never
    TaskProgress* progress = nullptr;         ///< null: nobody hears of it
};

/// What a run of a task came to.
struct Outcome
{
    /// The adjusted picture; empty where there is none: the run had no memory, was aborted before there was
    /// anything, or the settings name no rule.
    RGBA32iImage picture;
    /// Why the picture is not adjusted, for people; empty when all went well. Nothing is said of an abort.
    QString problem;

    Outcome(const RGBA32iImage& adjusted) : picture(adjusted) {}
    Outcome(const RGBA32iImage& adjusted, QString why) : picture(adjusted), problem(std::move(why)) {}
};

/// What one adjustment with its settings does to a picture: a value that knows no widget.
///
/// A task may be run on any thread, on several pictures at once; it uses all cores by itself. None needs an
/// application object, but for those that draw texts, which say so. It is copied at the price of a pointer.
class ADJUSTMENTGUI_OPERATIONS_EXPORT Task
{
public:
    /// Adjusts the job's picture in place and gives it back. Called on any thread, several times at once.
    using Function = std::function<Outcome(const YDAdjustmentJob& job)>;

    /// Who makes the copy that ApplyToCopy() adjusts.
    enum class Copying
    {
        Before,      ///< the task finds its picture made
        InFirstPass, ///< the task's first pass makes it from the job's source; an aborted run has none
        InTask ///< a pass of the task makes it from the job's source, which an aborted run gives instead
    };

    /// A task that changes nothing.
    Task();
    explicit Task(Function function, Copying copying = Copying::Before);

    /// Adjusts `picture` itself. A run that was aborted leaves whatever it had reached; one that could not be
    /// done leaves the picture as it was.
    [[nodiscard]] Outcome Apply(const RGBA32iImage& picture, const Selection& selection = {},
                                const TaskControl& control = {}) const;

    /// Adjusts a copy and leaves `source` alone. An aborted run may give a picture of no use, or none.
    [[nodiscard]] Outcome ApplyToCopy(const RGBA32iImage& source, const Selection& selection = {},
                                      const TaskControl& control = {}) const;

private:
    Function m_function;
    Copying m_copying = Copying::Before;
};

} // namespace operations
