#pragma once

#include "ControlLinks.h"
#include "YDTaskWidget.h"
#include "adjustmentgui_export.h"
#include "operations/Watermark.h"

#include <QColor>
#include <QFont>
#include <QRect>
#include <QString>

#include <memory>

namespace Ui {
class WatermarkWidget;
}

/// A text that the host writes onto the picture, once or in a grid.
///
/// Always a panel, and it computes no pixels: the host draws what GetValue() says.
class ADJUSTMENTGUI_EXPORT YDWatermarkWidget : public YDTaskWidget
{
    Q_OBJECT

public:
    using Params = operations::Watermark;

    YDWatermarkWidget(QWidget* parent, Qt::WindowFlags flags);
    ~YDWatermarkWidget() override;

    Params GetValue() const { return m_params; }
    /// Shows `params` without announcing a change.
    void SetValue(const Params& params);

    operations::Task MakeTask() const override;
    void Reset() override;
    /// Nothing, as the host draws what the panel holds: with the task, or by itself.
    void StartJobWatching(JobWatcher*) override {}
    void ConvertImage(RGBA32iImage&, const RGBA32iImage&, const QPoint&, const QRect&) override {}

public slots:
    void OnSelectFont();
    void OnSelectColor();
    void OnAnglechanged(int angle);
    void OnTextChanged(const QString& text);
    void OnLeftMarginChanged(int margin);
    void OnRightMarginChanged(int margin);
    void OnTopMarginChanged(int margin);
    void OnBottomMarginChanged(int margin);
    void OnOpacityChanged(int opacity);
    void OnBlendingModeChanged(int index);
    void OnVrtTilesChanged(int count);
    void OnHrzTilesChanged(int count);

signals:
    void ValueChanged();

private:
    void Connect();
    [[nodiscard]] ControlLinks::Cut Disconnect() { return ControlLinks::Cut(m_links); }
    int BlendingModeToIndex(unsigned mode) const;

    const std::unique_ptr<Ui::WatermarkWidget> m_ui;
    ControlLinks m_links;
    Params m_params;
};
