#pragma once

#include "ControlLinks.h"
#include "YDTaskWidget.h"
#include "adjustmentgui_export.h"
#include "operations/HueSaturation.h"

#include <QLinearGradient>

#include <memory>

namespace Ui {
class HueSaturationParamWidget;
}

/// Hue, saturation and lightness, or the whole picture in one hue.
///
/// The controls show what they do: the grooves of the hue and saturation sliders take the colours that a
/// move would give, and of the two strips below them the upper shows the hues as they are, the lower what
/// becomes of them.
///
/// Jobs use the controls: a value of the record beyond its control's end is kept, and processed as that end.
class ADJUSTMENTGUI_EXPORT YDHueSaturationWidget : public YDTaskWidget
{
    Q_OBJECT

public:
    using Params = operations::HueSaturation;

    YDHueSaturationWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~YDHueSaturationWidget() override;

    /// The hues at a saturation and lightness, from 0 around the circle and back to 0.
    static QLinearGradient GetHue(int saturation, int lightness);
    /// A hue at a lightness, from grey to full colour.
    static QLinearGradient GetSaturation(int hue, int lightness);

    Params GetValue() const { return m_params; }
    /// Shows `params` without announcing a change.
    void SetValue(const Params& params);

    operations::Task MakeTask() const override;
    void Reset() override;

public slots:
    void OnHueChanged(int value);
    void OnSaturationChanged(int value);
    void OnLightnessChanged(int value);
    void OnColorizeChanged(bool on);

signals:
    void ValueChanged();

private:
    void Connect();
    [[nodiscard]] ControlLinks::Cut Disconnect() { return ControlLinks::Cut(m_links); }
    void ShowLastHue();
    void UpdateColorLabels();
    void UpdateHueGroove();
    void UpdateSaturationGroove();

    const std::unique_ptr<Ui::HueSaturationParamWidget> m_ui;
    ControlLinks m_links;
    Params m_params;
};
