#pragma once

#include "YDAdjustmentJob.h"
#include "adjustmentgui_export.h"
#include "image/KVImage.h"
#include "operations/TaskProgress.h"
#include "plugincore/KVAdjustmentWidget.h"
#include "threads/LatestJob.h"

#include <QPoint>
#include <QPointer>
#include <QRect>

#include <atomic>
#include <memory>

class KVDocumentView;
class QLinearGradient;
class QSlider;

namespace Ui {
class AdjustmentDialogBase;
}

/// The common base of every adjustment's dialog and panel.
///
/// As a dialog it frames the adjustment's controls with OK, Cancel and Reset, a preview toggle and a
/// progress strip, and computes a preview in the background 50 ms after the last change of a control. As a
/// panel it is the controls alone, and the host applies the adjustment through ConvertImage().
///
/// A concrete adjustment derives from YDTaskWidget, which implements ConvertImage() and StartJobWatching()
/// over a task. It builds its form on GetUIContent(), keeps its parameters and overrides Reset(). Every slot
/// that reacts to a control stores the value and calls AnnounceChange(), but for those that change only what
/// the controls show, such as the channel in view.
///
/// All of it belongs to the GUI thread. Jobs run on the global thread pool and read nothing of the widget
/// but the abort flag; a widget that is destroyed while its job runs aborts it and waits for it.
class ADJUSTMENTGUI_EXPORT YDAdjustmentWidget : public KVAdjustmentWidget
{
    Q_OBJECT

public:
    using JobWatcher = LatestJob<RGBA32iImage>::Watcher;

    YDAdjustmentWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~YDAdjustmentWidget() override;

    /// Shows the before/after splitter of `view` as the user's setting says and lets the preview toggle
    /// govern it. Null forgets the view.
    virtual void SetView(KVDocumentView* view);

    /// Applies the current parameters to `image`, in place and at once, limited by the selection: the
    /// mask, the position of its upper left corner in the picture, and its bounding rectangle in coordinates
    /// of the mask (empty: no selection). The base does nothing.
    virtual void ConvertImage(RGBA32iImage& image, const RGBA32iImage& selection, const QPoint& offset,
                              const QRect& boundingRect);

    /// Receives the host's activation values. The base does nothing.
    virtual void SetupActivation(int first, int second);

    /// Puts every control back to its default.
    virtual void Reset() = 0;

    /// Starts the adjustment's background job and gives its future to `watcher`; an adjustment that
    /// computes no pixels gives none.
    virtual void StartJobWatching(JobWatcher* watcher) = 0;

    /// The title of the adjustment's form; empty if it has none.
    virtual QString GetWidgetName() const;

    /// Lets go of what an adjustment holds besides the images. The base does nothing.
    virtual void ClearInternal();

    /// Tells a running job to stop, hides its result and lets no other start.
    virtual void CancelProcessing();

    /// Takes the picture to adjust and what limits it; a dialog starts a preview of it.
    ///
    /// Jobs, histograms and colour pickers read the pixels on threads of their own, so nobody may write to
    /// them while the widget holds the picture. Another picture in its place tells them to stop, but they may
    /// read the former one for a moment longer, histograms and pickers even past the widget's end, and
    /// nothing says when the last of them is done. A host that goes on writing to its picture gives the
    /// widget a deep copy. A panel's picture is not read in the background before the event loop turns.
    void SetImage(const RGBA32iImage& source, const RGBA32iImage& selection, const QPoint& offset,
                  const QRect& boundingRect);

    RGBA32iImage SourceImage() const { return m_source; }
    /// The latest preview; empty before the first one.
    RGBA32iImage AdjustedImage() const { return m_adjusted; }

    /// Lets go of both images and puts the controls back to their defaults; a preview that is being
    /// computed is never shown. The source may still be read for a moment, as SetImage() has it.
    void ClearData();

    /// Starts a preview, or tells the running job to stop and have another follow it.
    void StartProcessing();

    /// Starts a preview 50 ms after the last call.
    void RestartProcessing();

    /// Starts the preview of a change that is less than 50 ms old at once, so that what is then waited for
    /// includes it. The host calls it when the user accepts the dialog.
    void FlushPendingChange();

    /// True when the caller may continue at once, with AdjustedImage() if it wants the result; false when
    /// Finished() will say so, the progress time-out later at the earliest. `cancel` stops the running job.
    [[nodiscard]] bool WaitForProcessingFinished(bool cancel);

    /// While cancelled, no job starts.
    void SetCancelProcessing(bool cancel);
    bool IsCancelProcessing() const { return m_cancelled; }
    /// Whether a background job runs.
    bool IsProcessing() const { return m_job.IsRunning(); }

public slots:
    void OnReset();

signals:
    /// A change of the parameters; a dialog computes a new preview after it.
    void DataChanged();
    void SourceChanged();
    /// AdjustedImage() is new.
    void ImageReady();
    /// The answer to WaitForProcessingFinished(): 1, or 0 when the user aborted the wait.
    void Finished(int result);
    void Ok();
    void Cancel();
    void ProgressRangeChanged(int minimum, int maximum);
    void ProgressValueChanged(int value);

protected:
    bool IsDialog() const { return m_isDialog; }

    /// The widget that the adjustment's form is built on.
    QWidget* GetUIContent();

    RGBA32iImage GetSelection() const { return m_selection; }
    QPoint GetSelectionOffset() const { return m_selectionOffset; }
    QRect GetSelectionBoundingRect() const { return m_selectionBoundingRect; }

    /// Counts the pictures that the widget was given: the same number stands for the same pixels.
    quint64 PictureNumber() const { return m_pictureNumber; }

    /// Called once when the running job is told to stop. A job that does not look at the abort flag, because
    /// another device computes it, finishes its future here: the widget may be about to wait for it. The base
    /// does nothing.
    virtual void AbortJob();

    /// Set while the running job shall stop; the abort flag of every background job.
    std::atomic<bool>& DataChangedFlag() { return m_job.AbortFlag(); }

    /// What a job tells of its progress, for the widget's own signals; outlives every job.
    operations::TaskProgress* Progress() { return &m_progress; }

    /// Tells the host and both kinds of listeners, in this order, that the user changed a parameter;
    /// `valueChanged` is the adjustment's own signal.
    template <class Widget>
    void AnnounceChange(void (Widget::*valueChanged)())
    {
        AboutUserParamsChanged();
        (static_cast<Widget*>(this)->*valueChanged)();
        emit DataChanged();
    }

    /// A preview's job for who computes it in another way than by a task. Its image is the source itself,
    /// which nobody may write to.
    YDAdjustmentJob MakePreviewJob();

    /// Colours the groove of a horizontal slider.
    static void SetGrooveGradient(QSlider* slider, const QLinearGradient& gradient);

    void showEvent(QShowEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private slots:
    void OnDataChanged();
    void OnResultReadyAt(int index);
    void OnProcessingFinished();
    void OnProgressRangeChanged(int minimum, int maximum);
    void OnProgressValueChanged(int value);

private:
    void BuildFrame();
    void PutContentFirst();
    void AbortRunningJob();
    void StopTimer(int& timerId);
    void RevealProgress();
    void HideProgress();
    void OnRestartTimeout();
    void OnWaitTimeout();
    int WaitInDialog();
    int ExecWaitDialog();
    void AwaitEndOfJob();
    bool IsWaiting() const { return m_waitTimerId != -1 || m_waitDialogShown; }

    RGBA32iImage m_source;
    quint64 m_pictureNumber = 0;
    RGBA32iImage m_adjusted;
    RGBA32iImage m_selection;
    QRect m_selectionBoundingRect;
    QPoint m_selectionOffset;
    operations::TaskProgress m_progress;
    LatestJob<RGBA32iImage> m_job{this, [this](JobWatcher* watcher) { StartJobWatching(watcher); }};
    int m_progressTimerId = -1;
    int m_restartTimerId = -1;
    int m_waitTimerId = -1;
    bool m_progressShown = false;
    int m_progressMinimum = 0;
    int m_progressMaximum = 0;
    int m_progressValue = 0;
    const bool m_isDialog;
    const std::unique_ptr<Ui::AdjustmentDialogBase> m_ui; ///< filled in dialog mode only
    bool m_cancelled = false;
    QPointer<KVDocumentView> m_view;
    bool m_waitDialogShown = false;
};
