#pragma once

#include "ControlLinks.h"
#include "YDTaskWidget.h"
#include "adjustmentgui_export.h"
#include "operations/ColorEnhancer.h"

#include <memory>

class YDThresholdCache;

namespace Ui {
class ColorEnhancer;
}

/// Strengthens colours after a stretch of the levels to what the picture holds.
///
/// What the picture holds is counted for the first job and kept until the source changes, so moving a control
/// counts nothing again. Whoever only calls ConvertImage() for one picture after another hands each over with
/// SetImage() first.
class ADJUSTMENTGUI_EXPORT YDColorEnhancerWidget : public YDTaskWidget
{
    Q_OBJECT

public:
    using Params = operations::ColorEnhancer;

    YDColorEnhancerWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~YDColorEnhancerWidget() override;

    Params GetValue() const { return m_params; }
    /// Shows `params` without announcing a change.
    void SetValue(const Params& params);

    /// The task counts the picture that it is run on; the widget itself counts its source once.
    operations::Task MakeTask() const override;
    void Reset() override;
    void StartJobWatching(JobWatcher* watcher) override;

    /// An input bound of a channel's levels: `affected` per cent of the way from the common bound to the
    /// channel's own, rounded toward zero.
    static int InputBound(int own, int common, int affected);

signals:
    void ValueChanged();

protected:
    operations::Task MakeTaskForSource() const override;

private slots:
    void OnAmountChanged(int value);
    void OnAffectedChanged(int value);
    void OnSourceChanged();

private:
    void Connect();
    [[nodiscard]] ControlLinks::Cut Disconnect() { return ControlLinks::Cut(m_links); }
    void ForgetThresholds();

    const std::unique_ptr<Ui::ColorEnhancer> m_ui;
    ControlLinks m_links;
    Params m_params;
    std::shared_ptr<YDThresholdCache> m_thresholds;
    RGBA32iImage m_counted;       ///< the source that the thresholds are of
    bool m_isChangeKnown = false; ///< a job has begun on a source whose change is yet to be announced
};
