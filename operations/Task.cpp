#include "operations/Task.h"

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

QString TooLittleMemory()
{
    return QCoreApplication::translate("Task", "There may be too little memory for this picture.");
}

} // namespace

operations::Task::Task() : m_function([](const YDAdjustmentJob& job) { return Outcome(job.image); }) {}

operations::Task::Task(Function function, Copying copying)
    : m_function(std::move(function)), m_copying(copying)
{}

operations::Outcome operations::Task::Apply(const RGBA32iImage& picture, const Selection& selection,
                                            const TaskControl& control) const
{
    if (selection.isMissing)
        return {picture, TooLittleMemory()};
    return m_function(JobOf(picture, selection, control));
}

operations::Outcome operations::Task::ApplyToCopy(const RGBA32iImage& source, const Selection& selection,
                                                  const TaskControl& control) const
{
    if (source.IsEmpty())
        return Apply(source, selection, control);
    if (selection.isMissing)
        return {RGBA32iImage(), TooLittleMemory()};
    const RGBA32iImage copy = m_copying == Copying::Before
                                  ? source.DeepCopy(control.abort)
                                  : RGBA32iImage::Uninitialized(source.Width(), source.Height());
    if (copy.IsEmpty())
        return {copy, IsAborted(control) ? QString() : TooLittleMemory()};
    if (m_copying == Copying::Before)
        return Apply(copy, selection, control);
    YDAdjustmentJob job = JobOf(copy, selection, control);
    job.source = source;
    Outcome outcome = m_function(job);
    if (!IsAborted(control))
        return outcome;
    // A part of the copy was never written to.
    if (m_copying == Copying::InFirstPass)
        outcome.picture = RGBA32iImage();
    else
        (void)copy.CopyFrom(source);
    return outcome;
}
