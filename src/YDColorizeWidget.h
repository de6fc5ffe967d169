#pragma once

#include "ControlLinks.h"
#include "YDTaskWidget.h"
#include "adjustmentgui_export.h"
#include "operations/Colorize.h"

#include <QColor>

#include <memory>

namespace Ui {
class ColorizeWidget;
}

/// Tints a picture with one colour.
class ADJUSTMENTGUI_EXPORT YDColorizeWidget : public YDTaskWidget
{
    Q_OBJECT

public:
    using Params = operations::Colorize;

    YDColorizeWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~YDColorizeWidget() override;

    Params GetValue() const { return m_params; }
    /// Shows `params` without announcing a change.
    void SetValue(const Params& params);

    operations::Task MakeTask() const override;
    void Reset() override;

public slots:
    void OnColor();
    void OnCurrentColorChanged(const QColor& color);
    void OnAmountChanged(int amount);

signals:
    void ValueChanged();

private:
    void Connect();
    [[nodiscard]] ControlLinks::Cut Disconnect() { return ControlLinks::Cut(m_links); }
    void SetColor(const QColor& color);

    const std::unique_ptr<Ui::ColorizeWidget> m_ui;
    ControlLinks m_links;
    Params m_params;
};
