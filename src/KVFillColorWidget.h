#pragma once

#include "ControlLinks.h"
#include "YDTaskWidget.h"
#include "adjustmentgui_export.h"
#include "operations/FillColor.h"

#include <QColor>

#include <memory>

namespace Ui {
class FillColor;
}

/// Fills a picture, or what is selected of it, with one colour.
///
/// Only the preview of a dialog changes pixels: ConvertImage() does nothing.
class ADJUSTMENTGUI_EXPORT KVFillColorWidget : public YDTaskWidget
{
    Q_OBJECT

public:
    using Params = operations::FillColor;

    KVFillColorWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~KVFillColorWidget() override;

    Params GetValue() const { return m_params; }
    /// Shows `params` without announcing a change.
    void SetValue(const Params& params);

    operations::Task MakeTask() const override;
    void Reset() override;
    /// Nothing: pixels are changed by the task, in previews or by whoever takes it.
    void ConvertImage(RGBA32iImage&, const RGBA32iImage&, const QPoint&, const QRect&) override {}

public slots:
    void OnColor();
    void OnCurrentColorChanged(const QColor& color);
    void OnOpacityChanged(int opacity);

signals:
    void ValueChanged();

private:
    void Connect();
    [[nodiscard]] ControlLinks::Cut Disconnect() { return ControlLinks::Cut(m_links); }
    void SetColor(const QColor& color);

    const std::unique_ptr<Ui::FillColor> m_ui;
    ControlLinks m_links;
    Params m_params;
};
