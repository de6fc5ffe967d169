#pragma once

#include "ControlLinks.h"
#include "YDTaskWidget.h"
#include "adjustmentgui_export.h"
#include "operations/BrightnessContrast.h"

#include <memory>

namespace Ui {
class BrightnessContrastParamWidget;
}

/// Brightness and contrast, each a slider and a spin box that follow one another.
///
/// The spin boxes reach further than the sliders: a value beyond a slider's end is what jobs use, while the
/// slider, and the record with it, stay at the end.
class ADJUSTMENTGUI_EXPORT YDBrightnessContrastWidget : public YDTaskWidget
{
    Q_OBJECT

public:
    using Params = operations::BrightnessContrast;

    YDBrightnessContrastWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~YDBrightnessContrastWidget() override;

    Params GetValue() const { return m_params; }
    /// Shows `params` without announcing a change.
    void SetValue(const Params& params);

    operations::Task MakeTask() const override;
    void Reset() override;

public slots:
    void OnBrightnessChanged(int value);
    void OnContrastChanged(int value);

signals:
    void ValueChanged();

private:
    void Connect();
    [[nodiscard]] ControlLinks::Cut Disconnect() { return ControlLinks::Cut(m_links); }

    const std::unique_ptr<Ui::BrightnessContrastParamWidget> m_ui;
    ControlLinks m_links;
    Params m_params;
};
