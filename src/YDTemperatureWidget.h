#pragma once

#include "ControlLinks.h"
#include "YDTaskWidget.h"
#include "adjustmentgui_export.h"
#include "operations/Temperature.h"

#include <memory>

namespace Ui {
class TemperatureWidget;
}

/// Colour temperature, with a tint and a strength. Jobs use the record.
class ADJUSTMENTGUI_EXPORT YDTemperatureWidget : public YDTaskWidget
{
    Q_OBJECT

public:
    using Params = operations::Temperature;

    YDTemperatureWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~YDTemperatureWidget() override;

    Params GetValue() const { return m_params; }
    /// Takes `params` without announcing a change. The control of the strength stays as it is.
    void SetValue(const Params& params);

    /// Announces a change for each control that does not show its default yet.
    operations::Task MakeTask() const override;
    void Reset() override;

public slots:
    void OnTemperatureChanged(int value);
    void OnTintChanged(int value);
    void OnStrengthChanged(int value);

signals:
    void ValueChanged();

private:
    void Connect();
    [[nodiscard]] ControlLinks::Cut Disconnect() { return ControlLinks::Cut(m_links); }
    void ShowDefaults();

    const std::unique_ptr<Ui::TemperatureWidget> m_ui;
    ControlLinks m_links;
    Params m_params;
};
