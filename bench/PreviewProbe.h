#pragma once

#include "BenchAdjustments.h"
#include "BenchPictures.h"

#include <memory>

class YDTaskWidget;

/// An adjustment's dialog over a picture, whose jobs are timed from outside, as its user sees them.
class PreviewProbe
{
public:
    /// Makes the dialog, gives it the picture and waits for the first preview. `adjustment` must be in the
    /// catalogue and outlive the probe.
    PreviewProbe(const BenchAdjustment& adjustment, const RGBA32iImage& picture);
    ~PreviewProbe();

    YDTaskWidget& Widget() const { return *m_widget; }

    /// Puts the control to its other value.
    void ChangeControl();

    /// Milliseconds from a change of the control to ImageReady, without the delay in which changes are
    /// gathered; negative if no preview came.
    double TimePreview();

    /// Milliseconds from the moment when a change reaches a job that is under way to the end of that job;
    /// negative if the job had ended before. Returns when the job after it has ended too.
    double TimeAbort();

    /// Waits as a host does whose user accepts the dialog: then the preview shows what the controls say.
    void Accept();

private:
    const BenchAdjustment& m_adjustment;
    const std::unique_ptr<YDTaskWidget> m_widget;
    int m_nextValue = 0;
};
