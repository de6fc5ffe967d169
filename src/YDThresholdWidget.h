#pragma once

#include "ControlLinks.h"
#include "YDTaskWidget.h"
#include "adjustmentgui_export.h"
#include "image/YDSharedImage.h"
#include "operations/Threshold.h"

#include <memory>

class YDHistogramFeed;

namespace Ui {
class Threshold;
}

/// Black and white at one level, which a spin box and a handle below the source's histogram set.
///
/// The handle sets the spin box, and the spin box, when it changes, sets the level and the handle. The spin
/// box begins at 1 and the handle at 0: a handle that is brought to 0 leaves the level at 1. A record's level
/// outside of 1..255 is kept until the spin box changes; each control shows the nearest level that it has.
class ADJUSTMENTGUI_EXPORT YDThresholdWidget : public YDTaskWidget
{
    Q_OBJECT

public:
    using Params = operations::Threshold;

    YDThresholdWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~YDThresholdWidget() override;

    Params GetValue() const { return m_params; }
    /// Shows `params`, as far as the controls reach, without announcing a change.
    void SetValue(const Params& params);

    operations::Task MakeTask() const override;
    void Reset() override;

    /// Shows the histogram of the picture in `image` in place of the source's, until the source changes or
    /// another is attached. `image` must live until then; null: none.
    void AttachQImage(const YDSharedImage<QImage>* image);
    void AttachRGB32iImage(const YDSharedImage<RGBA32iImage>* image);

    /// Counts the picture of the histogram again.
    void UpdateHistogramm();

public slots:
    void OnSourceChanged();
    void OnLevelChanged(uint handle, int value);
    void OnLevelChanged(int value);

signals:
    void ValueChanged();

private:
    void Connect();
    [[nodiscard]] ControlLinks::Cut Disconnect() { return ControlLinks::Cut(m_links); }
    void ShowLevel(int level);

    const std::unique_ptr<Ui::Threshold> m_ui;
    ControlLinks m_links;
    std::unique_ptr<YDHistogramFeed> m_feed;
    Params m_params;
};
