#include "YDTaskWidget.h"

#include "threads/PoolTasks.h"

YDTaskWidget::YDTaskWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags)
    : YDAdjustmentWidget(isDialog, parent, flags)
{
    connect(this, &YDAdjustmentWidget::ImageReady, this, [this] {
        if (m_problemOfJob)
            m_problem = *m_problemOfJob;
    });
}

YDTaskWidget::~YDTaskWidget() = default;

void YDTaskWidget::StartJobWatching(JobWatcher* watcher)
{
    const auto problem = std::make_shared<QString>();
    m_problemOfJob = problem;
    const operations::Selection selection{GetSelection(), GetSelectionOffset(), GetSelectionBoundingRect()};
    const operations::TaskControl control{&DataChangedFlag(), Progress()};
    watcher->setFuture(PoolTask<RGBA32iImage>::Start(
        [task = MakeTaskForSource(), source = SourceImage(), selection, control, problem] {
            const operations::Outcome outcome = task.ApplyToCopy(source, selection, control);
            *problem = outcome.problem;
            HandOver::Give(control.abort);
            return outcome.problem.isEmpty() ? outcome.picture : RGBA32iImage();
        }));
}

void YDTaskWidget::ForgetProblem() { m_problemOfJob = std::make_shared<const QString>(); }

void YDTaskWidget::ConvertImage(RGBA32iImage& image, const RGBA32iImage& selection, const QPoint& offset,
                                const QRect& boundingRect)
{
    m_problem =
        MakeTaskForSource().Apply(image, {selection, offset, boundingRect}, {nullptr, Progress()}).problem;
}
