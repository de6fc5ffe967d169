#include "operations/Task.h"

#include "CopyPicture.h"

#include <QCoreApplication>

namespace {

using operations::Selection;
using operations::TaskControl;

YDAdjustmentJob JobOf(const RGBA32iImage& picture, const Selection& selection, const TaskControl& control)
{
    YDAdjustmentJob job;
    job.image = picture;
    job.selection = selection.mask;
    job.selectionOffset = selection.offset;
    job.selectionBoundingRect = selection.bounds;
    job.abort = control.abort;
    job.progress = control.progress;
    return job;
}

bool IsAborted(const TaskControl& control) { return control.abort && control.abort->load(); }

} // namespace

operations::Task::Task() : m_function([](const YDAdjustmentJob& job) { return Outcome(job.image); }) {}

operations::Task::Task(Function function) : m_function(std::move(function)) {}

operations::Outcome operations::Task::Apply(const RGBA32iImage& picture, const Selection& selection,
                                            const TaskControl& control) const
{
    return m_function(JobOf(picture, selection, control));
}

operations::Outcome operations::Task::ApplyToCopy(const RGBA32iImage& source, const Selection& selection,
                                                  const TaskControl& control) const
{
    const RGBA32iImage copy = CopyPicture(source, control.abort);
    if (!copy.IsEmpty() || source.IsEmpty())
        return Apply(copy, selection, control);
    const QString problem =
        IsAborted(control)
            ? QString()
            : QCoreApplication::translate("Task", "There may be too little memory for this picture.");
    return {RGBA32iImage(), problem};
}
