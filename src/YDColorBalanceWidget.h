#pragma once

#include "ControlLinks.h"
#include "YDTaskWidget.h"
#include "adjustmentgui_export.h"
#include "operations/ColorBalance.h"

#include <memory>

namespace Ui {
class ColorBalanceParamWidget;
}

/// Colours moved between cyan and red, magenta and green, yellow and blue, in shadows, midtones and
/// highlights each for themselves.
///
/// One set of controls edits the tone range that is selected; the record holds all three, and jobs use the
/// record. With no range selected the set is disabled.
class ADJUSTMENTGUI_EXPORT YDColorBalanceWidget : public YDTaskWidget
{
    Q_OBJECT

public:
    using Params = operations::ColorBalance;

    YDColorBalanceWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~YDColorBalanceWidget() override;

    Params GetValue() const { return m_params; }
    /// Shows `params` without announcing a change.
    void SetValue(const Params& params);

    operations::Task MakeTask() const override;
    void Reset() override;

public slots:
    void OnCRChanged(int value);
    void OnMGChanged(int value);
    void OnYBChanged(int value);
    void OnShadowChanged(bool on);
    void OnMidtoneChanged(bool on);
    void OnHighLightChanged(bool on);
    void OnLumChanged(bool on);

signals:
    void ValueChanged();

private:
    void Connect();
    [[nodiscard]] ControlLinks::Cut Disconnect() { return ControlLinks::Cut(m_links); }
    void ColorGrooves();
    void ShowRecord();
    void ShowToneRange();
    void SelectToneRange(int toneRange);
    void ChangeAxis(Params::Axis& axis, int value);

    const std::unique_ptr<Ui::ColorBalanceParamWidget> m_ui;
    ControlLinks m_links;
    Params m_params;
};
