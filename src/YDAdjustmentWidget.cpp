#include "YDAdjustmentWidget.h"

#include "core/KVApplication.h"
#include "gui/KVDocumentView.h"
#include "gui/YDMdiArea.h"
#include "gui/YDOperationProgressDlg.h"
#include "ui_AdjustmentDialogBase.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QGuiApplication>
#include <QLinearGradient>
#include <QPushButton>
#include <QSlider>
#include <QTimerEvent>
#include <QVector>

#include <algorithm>

namespace {

constexpr int RestartDelayMs = 50;

} // namespace

YDAdjustmentWidget::YDAdjustmentWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags)
    : KVAdjustmentWidget(parent, flags), m_isDialog(isDialog),
      m_ui(std::make_unique<Ui::AdjustmentDialogBase>())
{
    if (m_isDialog)
        BuildFrame();
    connect(&m_job, &LatestJobBase::ResultReadyAt, this, &YDAdjustmentWidget::OnResultReadyAt);
    connect(&m_job, &LatestJobBase::Ended, this, &YDAdjustmentWidget::OnProcessingFinished);
    connect(&m_progress, &operations::TaskProgress::RangeChanged, this,
            &YDAdjustmentWidget::ProgressRangeChanged, Qt::QueuedConnection);
    connect(&m_progress, &operations::TaskProgress::ValueChanged, this,
            &YDAdjustmentWidget::ProgressValueChanged, Qt::QueuedConnection);
    connect(this, &YDAdjustmentWidget::ProgressRangeChanged, this,
            &YDAdjustmentWidget::OnProgressRangeChanged);
    connect(this, &YDAdjustmentWidget::ProgressValueChanged, this,
            &YDAdjustmentWidget::OnProgressValueChanged);
}

void YDAdjustmentWidget::BuildFrame()
{
    m_ui->setupUi(this);
    QProgressBar* const bar = m_ui->m_pProgress;
    bar->setObjectName(QStringLiteral("FILTERPROGRESS"));
    connect(m_ui->m_pButtons, &QDialogButtonBox::accepted, this, &YDAdjustmentWidget::Ok);
    connect(m_ui->m_pButtons, &QDialogButtonBox::rejected, this, &YDAdjustmentWidget::Cancel);
    if (QPushButton* const reset = m_ui->m_pButtons->button(QDialogButtonBox::Reset))
        connect(reset, &QPushButton::clicked, this, &YDAdjustmentWidget::OnReset);
    connect(this, &YDAdjustmentWidget::DataChanged, this, &YDAdjustmentWidget::OnDataChanged);
    connect(this, &YDAdjustmentWidget::ProgressRangeChanged, bar, &QProgressBar::setRange);
    connect(this, &YDAdjustmentWidget::ProgressValueChanged, bar, &QProgressBar::setValue);
    bar->setRange(m_progressMinimum, m_progressMaximum);
    bar->setValue(m_progressValue);
    // An empty range would make an enabled bar look busy before anything was started.
    bar->setEnabled(false);
}

/// The form that is built on the content comes later than the frame, and so would the focus come to it.
void YDAdjustmentWidget::PutContentFirst()
{
    QVector<QWidget*> content;
    QVector<QWidget*> frame;
    for (QWidget* next = nextInFocusChain(); next != this; next = next->nextInFocusChain())
        if (isAncestorOf(next) && (next->focusPolicy() & Qt::TabFocus) && !next->focusProxy())
            (m_ui->m_pContent->isAncestorOf(next) ? content : frame).append(next);
    if (content.isEmpty())
        return;
    QWidget* last = content.last();
    for (QWidget* const next : qAsConst(frame)) {
        setTabOrder(last, next);
        last = next;
    }
    const auto first = std::find_if(content.cbegin(), content.cend(),
                                    [](const QWidget* control) { return control->isEnabled(); });
    if (first != content.cend() && !window()->focusWidget())
        (*first)->setFocus();
}

YDAdjustmentWidget::~YDAdjustmentWidget()
{
    if (m_waitTimerId != -1)
        QGuiApplication::restoreOverrideCursor();
    m_job.AbortAndWait();
}

void YDAdjustmentWidget::SetView(KVDocumentView* view)
{
    if (m_view && m_isDialog)
        disconnect(m_ui->m_pPreviewSlider, &QCheckBox::toggled, m_view, &KVDocumentView::HideSplitter);
    m_view = view;
    if (!view)
        return;
    const bool hide =
        KVApplication::GetUserValue(KVApplication::GetName(KVApplication::HidePreviewSlider), false);
    if (m_isDialog)
        m_ui->m_pPreviewSlider->setChecked(hide);
    view->HideSplitter(hide);
    if (m_isDialog)
        connect(m_ui->m_pPreviewSlider, &QCheckBox::toggled, view, &KVDocumentView::HideSplitter);
}

void YDAdjustmentWidget::ConvertImage(RGBA32iImage&, const RGBA32iImage&, const QPoint&, const QRect&) {}

void YDAdjustmentWidget::SetupActivation(int, int) {}

QString YDAdjustmentWidget::GetWidgetName() const
{
    const QWidget* const content = m_isDialog ? m_ui->m_pContent : this;
    return content->windowTitle();
}

void YDAdjustmentWidget::ClearInternal() {}

void YDAdjustmentWidget::CancelProcessing() { SetCancelProcessing(true); }

void YDAdjustmentWidget::SetImage(const RGBA32iImage& source, const RGBA32iImage& selection,
                                  const QPoint& offset, const QRect& boundingRect)
{
    ++m_pictureNumber;
    m_source = source;
    m_selection = selection;
    m_selectionOffset = offset;
    m_selectionBoundingRect = boundingRect;
    if (m_isDialog || IsProcessing())
        StartProcessing();
    emit SourceChanged();
}

void YDAdjustmentWidget::ClearData()
{
    AbortRunningJob();
    ++m_pictureNumber;
    m_source = RGBA32iImage();
    m_adjusted = RGBA32iImage();
    m_cancelled = false;
    Reset();
    emit SourceChanged();
}

void YDAdjustmentWidget::StartProcessing()
{
    if (IsProcessing()) {
        AbortRunningJob();
        return;
    }
    if (m_cancelled || m_source.IsEmpty())
        return;
    // What is left of the last job's progress would tell a wait dialog that this one has ended.
    m_progressMinimum = m_progressMaximum = m_progressValue = 0;
    if (!m_job.Request()) // an adjustment without a job
        return;
    StopTimer(m_progressTimerId);
    m_progressTimerId = startTimer(KVApplication::GetProgressTimeout());
}

void YDAdjustmentWidget::RestartProcessing()
{
    StopTimer(m_restartTimerId);
    m_restartTimerId = startTimer(RestartDelayMs, Qt::CoarseTimer);
}

void YDAdjustmentWidget::FlushPendingChange()
{
    if (m_restartTimerId == -1)
        return;
    StopTimer(m_restartTimerId);
    StartProcessing();
}

bool YDAdjustmentWidget::WaitForProcessingFinished(bool cancel)
{
    if (IsWaiting()) {
        if (cancel)
            CancelProcessing();
        return true;
    }
    if (!IsProcessing())
        return true;
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    m_waitTimerId = startTimer(KVApplication::GetProgressTimeout());
    if (cancel)
        CancelProcessing();
    return false;
}

void YDAdjustmentWidget::SetCancelProcessing(bool cancel)
{
    m_cancelled = cancel;
    if (cancel)
        AbortRunningJob();
}

void YDAdjustmentWidget::OnReset() { Reset(); }

void YDAdjustmentWidget::AbortJob() {}

QWidget* YDAdjustmentWidget::GetUIContent() { return m_isDialog ? m_ui->m_pContent : this; }

YDAdjustmentJob YDAdjustmentWidget::MakePreviewJob()
{
    YDAdjustmentJob job;
    job.image = m_source;
    job.selection = m_selection;
    job.selectionOffset = m_selectionOffset;
    job.selectionBoundingRect = m_selectionBoundingRect;
    job.abort = &DataChangedFlag();
    job.progress = &m_progress;
    return job;
}

void YDAdjustmentWidget::SetGrooveGradient(QSlider* slider, const QLinearGradient& gradient)
{
    QString stops;
    const QGradientStops gradientStops = gradient.stops();
    for (const QGradientStop& stop : gradientStops)
        stops += QStringLiteral("stop: %1 rgb(%2, %3, %4),")
                     .arg(stop.first)
                     .arg(stop.second.red())
                     .arg(stop.second.green())
                     .arg(stop.second.blue());
    slider->setStyleSheet(
        QStringLiteral("QSlider::groove:horizontal{border: 0px solid;height: 4px;"
                       "border-radius: 2px;background: qlineargradient(x1: 0, y1: 0, x2: 1, "
                       "y2: 0, %1);}")
            .arg(stops));
}

void YDAdjustmentWidget::showEvent(QShowEvent* event)
{
    if (m_isDialog)
        PutContentFirst(); // only now is the adjustment's form complete
    KVAdjustmentWidget::showEvent(event);
}

void YDAdjustmentWidget::timerEvent(QTimerEvent* event)
{
    const int id = event->timerId();
    if (id == m_restartTimerId)
        OnRestartTimeout();
    else if (id == m_progressTimerId)
        RevealProgress();
    else if (id == m_waitTimerId)
        OnWaitTimeout();
    else
        KVAdjustmentWidget::timerEvent(event);
}

void YDAdjustmentWidget::OnDataChanged()
{
    if (m_isDialog && !m_source.IsEmpty())
        RestartProcessing();
}

void YDAdjustmentWidget::OnResultReadyAt(int index)
{
    m_adjusted = m_job.ResultAt(index);
    emit ImageReady();
}

void YDAdjustmentWidget::OnProcessingFinished()
{
    StopTimer(m_progressTimerId);
    HideProgress();
    const QPointer<YDAdjustmentWidget> self(this);
    emit ProgressRangeChanged(0, 100);
    if (self)
        emit ProgressValueChanged(100);
    if (self && DataChangedFlag())
        StartProcessing();
}

void YDAdjustmentWidget::OnProgressRangeChanged(int minimum, int maximum)
{
    m_progressMinimum = minimum;
    m_progressMaximum = maximum;
}

void YDAdjustmentWidget::OnProgressValueChanged(int value) { m_progressValue = value; }

/// Tells the running job, once, to stop without a result. Another may follow in OnProcessingFinished().
void YDAdjustmentWidget::AbortRunningJob()
{
    if (m_job.Abort())
        AbortJob();
}

void YDAdjustmentWidget::StopTimer(int& timerId)
{
    if (timerId != -1)
        killTimer(timerId);
    timerId = -1;
}

void YDAdjustmentWidget::RevealProgress()
{
    StopTimer(m_progressTimerId);
    if (m_isDialog) {
        m_ui->m_pProgress->setEnabled(true);
        m_ui->m_pProgress->setMinimum(m_ui->m_pProgress->value());
    }
    m_progressShown = true;
}

void YDAdjustmentWidget::HideProgress()
{
    if (m_isDialog) {
        m_ui->m_pProgress->setEnabled(false);
        m_ui->m_pProgress->setMinimum(m_progressMinimum);
    }
    m_progressShown = false;
}

void YDAdjustmentWidget::OnRestartTimeout()
{
    if (m_waitTimerId == -1)
        StartProcessing();
    StopTimer(m_restartTimerId);
}

/// The host still waits after the progress time-out.
void YDAdjustmentWidget::OnWaitTimeout()
{
    if (m_cancelled)
        AbortRunningJob();
    StopTimer(m_waitTimerId);
    StopTimer(m_restartTimerId);
    QGuiApplication::restoreOverrideCursor();

    const QPointer<YDAdjustmentWidget> self(this);
    const int result = IsProcessing() ? WaitInDialog() : 1;
    if (self)
        QCoreApplication::processEvents();
    if (self)
        emit Finished(result);
}

/// Shows the progress in a dialog until no job runs or the user aborts the wait. The dialog's event loop runs
/// everything else too, so this widget may be gone when it returns.
int YDAdjustmentWidget::WaitInDialog()
{
    const QPointer<YDAdjustmentWidget> self(this);
    int result = 1;
    bool isFollowed = true;
    while (result == 1 && isFollowed) {
        const QPointer<JobWatcher> awaited = m_job.RunningWatcher();
        result = ExecWaitDialog();
        if (!self)
            return 0;
        // A change meanwhile has another job follow, which is waited for in the same way.
        isFollowed = IsProcessing() && m_job.RunningWatcher() != awaited;
    }
    if (result == 0 && IsProcessing())
        SetCancelProcessing(true);
    if (IsProcessing() && !m_job.RunningWatcher()->isFinished()) {
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
        AwaitEndOfJob();
        QGuiApplication::restoreOverrideCursor();
    }
    return self ? result : 0;
}

/// In an event loop, as a job of another device ends by an event of this thread. The widget may be gone when
/// it returns.
void YDAdjustmentWidget::AwaitEndOfJob()
{
    QEventLoop loop;
    connect(m_job.RunningWatcher(), &JobWatcher::finished, &loop, &QEventLoop::quit);
    connect(m_job.RunningWatcher(), &QObject::destroyed, &loop, &QEventLoop::quit);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
}

/// The dialog for the job that runs now; 1 when it has ended, 0 when the user aborts.
int YDAdjustmentWidget::ExecWaitDialog()
{
    const QPointer<YDAdjustmentWidget> self(this);
    const QPointer<YDOperationProgressDlg> dialog = new YDOperationProgressDlg(YDMdiArea::MainWindow());
    dialog->SetLabel(GetWidgetName() + QLatin1Char(':'));
    dialog->SetProgressRange(m_progressMinimum, m_progressMaximum);
    dialog->SetProgressPos(m_progressValue);
    connect(this, &YDAdjustmentWidget::ProgressRangeChanged, dialog,
            &YDOperationProgressDlg::SetProgressRange);
    connect(this, &YDAdjustmentWidget::ProgressValueChanged, dialog, &YDOperationProgressDlg::SetProgressPos);
    connect(this, &QObject::destroyed, dialog, &QDialog::reject);
    m_waitDialogShown = true;
    const int result = dialog->Exec(true);
    delete dialog;
    if (self)
        m_waitDialogShown = false;
    return result;
}
