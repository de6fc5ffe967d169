#pragma once

#include "YDTaskWidget.h"
#include "adjustmentgui_export.h"
#include "operations/Exposure.h"

#include <memory>

namespace Ui {
class ExposureParamWidget;
}

/// Exposure in stops and an offset in linear light, each a slider and a spin box.
///
/// The spin boxes hold the values; a slider shows its value's ten thousandths, truncated toward zero, so that
/// -1.5 puts it at -14999. There is no record and no stream.
class ADJUSTMENTGUI_EXPORT YDExposureWidget : public YDTaskWidget
{
    Q_OBJECT

public:
    YDExposureWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~YDExposureWidget() override;

    /// -20..20 stops, to four decimals.
    double GetExposure() const;
    /// Shows `exposure` and announces the change, once for each time that the spin box is connected: each
    /// call connects it twice more. The slider is connected too: where it has to move from where the spin box
    /// has put it, as for 0.12345, which the one rounds up and the other truncates, its value is the last one
    /// and is announced as well. What is not a number counts as 0.
    void SetExposure(double exposure);

    /// -0.5..0.5, to four decimals.
    double GetOffset() const;
    /// Shows `offset` without announcing a change. The slider is connected: where it has to move, its
    /// truncated view becomes the value, so that -0.25 ends as -0.2499. What is not a number counts as 0.
    void SetOffset(double offset);

    operations::Task MakeTask() const override;
    void Reset() override;

public slots:
    void OnExposureChanged(double exposure);
    void OnOffsetChanged(double offset);
    void OnExposureSlider(int position);
    void OnOffsetSlider(int position);

signals:
    void ExposureChanged();
    void OffsetChanged();

private:
    void Connect();
    void MoveExposureSlider(double exposure);
    void MoveOffsetSlider(double offset);

    const std::unique_ptr<Ui::ExposureParamWidget> m_ui;
};
