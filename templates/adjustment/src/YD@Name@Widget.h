#pragma once

#include "ControlLinks.h"
#include "YDTaskWidget.h"
#include "adjustmentgui_export.h"
#include "operations/@Name@.h"

#include <memory>

namespace Ui {
class @Name@ParamWidget;
}

/// @Title@: its amount, a slider and a spin box that follow one another.
class ADJUSTMENTGUI_EXPORT YD@Name@Widget : public YDTaskWidget
{
    Q_OBJECT

public:
    using Params = operations::@Name@;

    YD@Name@Widget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~YD@Name@Widget() override;

    Params GetValue() const { return m_params; }
    /// Shows `params` without announcing a change.
    void SetValue(const Params& params);

    operations::Task MakeTask() const override;
    void Reset() override;

signals:
    void ValueChanged();

private slots:
    void OnAmountChanged(int amount);

private:
    void Connect();

    const std::unique_ptr<Ui::@Name@ParamWidget> m_ui;
    ControlLinks m_links;
    Params m_params;
};
