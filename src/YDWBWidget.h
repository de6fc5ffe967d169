#pragma once

#include "ControlLinks.h"
#include "YDTaskWidget.h"
#include "adjustmentgui_export.h"
#include "operations/WhiteBalance.h"

#include <memory>

class QRadioButton;

namespace Ui {
class WBWidget;
}

/// White balance: takes a colour cast away, or darkens or brightens a picture that was exposed wrongly, and
/// may filter the result warmer or colder.
///
/// One slider edits the strength of whichever function is chosen; each function keeps its own. The advanced
/// correction belongs to the automatic one: it stretches the levels of each channel as well, and its strength
/// mixes the result with the picture as it was.
class ADJUSTMENTGUI_EXPORT YDWBWidget : public YDTaskWidget
{
    Q_OBJECT

public:
    using Params = operations::WhiteBalance;

    YDWBWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~YDWBWidget() override;

    Params GetValue() const { return m_params; }
    /// Shows `params` without announcing a change. A mode that there is not leaves the choice of the function
    /// and its strength as they were.
    void SetValue(const Params& params);

    operations::Task MakeTask() const override;
    void Reset() override;

signals:
    void ValueChanged();

private slots:
    void OnAuto(bool on);
    void OnEnchanced(bool on);
    void OnOverexposure(bool on);
    void OnUnderexposure(bool on);
    void OnWBStrengthChanged(int value);
    void OnUseTemperature(bool on);
    void OnTemperature(int value);
    void OnTemperatureStrength(int value);

private:
    void Connect();
    [[nodiscard]] ControlLinks::Cut Disconnect() { return ControlLinks::Cut(m_links); }
    void ChooseFunction(int mode);
    QRadioButton* ButtonOf(int mode) const;

    const std::unique_ptr<Ui::WBWidget> m_ui;
    ControlLinks m_links;
    Params m_params;
};
