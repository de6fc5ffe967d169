#pragma once

#include "YDTaskWidget.h"
#include "adjustmentgui_export.h"
#include "operations/Gamma.h"

#include <memory>

namespace Ui {
class GammaParamWidget;
}

/// One gamma value, a slider and a spin box.
///
/// The spin box holds the value; the slider shows its hundredths. There is no record and no stream.
class ADJUSTMENTGUI_EXPORT YDGammaCorrectionWidget : public YDTaskWidget
{
    Q_OBJECT

public:
    YDGammaCorrectionWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~YDGammaCorrectionWidget() override;

    /// 0.01..5, to two decimals; 1 is neutral.
    double GetGamma() const;
    /// Shows `gamma` without announcing a change. The slider is connected: where it has to move, its
    /// truncated view becomes the value, so that 1.999 ends as 1.99. What is not a number counts as 1.
    void SetGamma(double gamma);

    operations::Task MakeTask() const override;
    void Reset() override;

public slots:
    void OnGammaChanged(double gamma);
    void OnGammaSlider(int position);

signals:
    void GammaChanged();

private:
    void MoveSlider(double gamma);

    const std::unique_ptr<Ui::GammaParamWidget> m_ui;
};
