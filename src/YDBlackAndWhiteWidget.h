#pragma once

#include "ControlLinks.h"
#include "YDTaskWidget.h"
#include "adjustmentgui_export.h"
#include "operations/BlackAndWhite.h"

#include <memory>

namespace Ui {
class BlackAndWhiteWidget;
}

/// Grey from a weighted sum of red, green and blue, by one of five sets of weights or by custom ones.
///
/// The spin boxes show the weights in force, to three decimals; they can be edited, and the record's weights
/// with them, only for the custom set.
class ADJUSTMENTGUI_EXPORT YDBlackAndWhiteWidget : public YDTaskWidget
{
    Q_OBJECT

public:
    using Params = operations::BlackAndWhite;

    /// The sets of weights.
    enum Type
    {
        Average = Params::Average,
        Luminance = Params::Luminance,
        D65 = Params::D65,
        Ntsc = Params::Ntsc,
        Cie = Params::Cie,
        Custom = Params::Custom,
    };

    YDBlackAndWhiteWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~YDBlackAndWhiteWidget() override;

    Params GetValue() const { return m_params; }
    /// Shows `params` without announcing a change.
    void SetValue(const Params& params);

    operations::Task MakeTask() const override;
    void Reset() override;

public slots:
    void OnAverage(bool checked);
    void OnLuminance(bool checked);
    void OnD65(bool checked);
    void OnNTSC(bool checked);
    void OnCIE(bool checked);
    void OnCustom(bool checked);
    void OnRedChanged(double value);
    void OnGreenChanged(double value);
    void OnBlueChanged(double value);

signals:
    void ValueChanged();

private:
    void Connect();
    [[nodiscard]] ControlLinks::Cut Disconnect() { return ControlLinks::Cut(m_links); }
    void ShowWeights();
    void SelectType(bool checked, Type type);
    void ChangeWeight(float& weight, double value);

    const std::unique_ptr<Ui::BlackAndWhiteWidget> m_ui;
    ControlLinks m_links;
    Params m_params;
};
