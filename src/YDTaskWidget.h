#pragma once

#include "YDAdjustmentWidget.h"
#include "adjustmentgui_export.h"
#include "operations/Task.h"

#include <QString>

#include <memory>

/// An adjustment that a task carries out: previews and conversions alike run what MakeTask() gives.
///
/// An adjustment of one's own is a class derived from this one, with a form on GetUIContent(), a MakeTask()
/// and a Reset().
class ADJUSTMENTGUI_EXPORT YDTaskWidget : public YDAdjustmentWidget
{
    Q_OBJECT

public:
    YDTaskWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~YDTaskWidget() override;

    /// What the controls say now, as a value that any thread may run and that knows the widget no more.
    [[nodiscard]] virtual operations::Task MakeTask() const = 0;

    /// What the settings lack without which they do nothing, for people; empty for nothing.
    virtual QString WhatIsMissing() const { return {}; }

    /// Runs the task over the source, and over `image` itself; nothing aborts the latter.
    void StartJobWatching(JobWatcher* watcher) override;
    void ConvertImage(RGBA32iImage& image, const RGBA32iImage& selection, const QPoint& offset,
                      const QRect& boundingRect) override;

    /// Why the adjusted picture that came last is none, for people; empty where it is one. New when
    /// ImageReady() is emitted and when ConvertImage() returns.
    QString Problem() const { return m_problem; }

protected:
    /// The task that the widget itself runs, always over what SetImage() gave it. The base's is MakeTask().
    [[nodiscard]] virtual operations::Task MakeTaskForSource() const { return MakeTask(); }

    /// For a job that runs no task and so has no problem to tell of.
    void ForgetProblem();

private:
    std::shared_ptr<const QString> m_problemOfJob; ///< written by the job before its result
    QString m_problem;
};
