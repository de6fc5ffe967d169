#pragma once

#include "YDAdjustmentWidget.h"
#include "YDRecord.h"
#include "adjustmentgui_export.h"

#include <QColor>

#include <memory>

namespace Ui {
class FillColor;
}

/// Fills a picture, or what is selected of it, with one colour.
///
/// Only the preview of a dialog changes pixels: ConvertImage() is the base's and does nothing.
class ADJUSTMENTGUI_EXPORT KVFillColorWidget : public YDAdjustmentWidget
{
    Q_OBJECT

public:
    struct ADJUSTMENTGUI_EXPORT Params
    {
        QColor color{Qt::black}; ///< its alpha is kept, and gives way to the opacity
        int opacity = 100;       ///< per cent, 0..100 by the controls

        static constexpr std::string_view Tag = "KVFillColor 1.00000";
        template <class Self, class Visitor>
        static bool VisitFields(Self& self, Visitor&& visit)
        {
            return visit("color", self.color) && visit("opacity", self.opacity, YDRecord::Range{0, 100});
        }
        [[nodiscard]] bool Read(QDataStream& stream);
        [[nodiscard]] bool Write(QDataStream& stream) const;
    };

    KVFillColorWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~KVFillColorWidget() override;

    Params GetValue() const { return m_params; }
    /// Shows `params` without announcing a change.
    void SetValue(const Params& params);

    void Reset() override;
    void StartJobWatching(JobWatcher* watcher) override;

public slots:
    void OnColor();
    void OnCurrentColorChanged(const QColor& color);
    void OnOpacityChanged(int opacity);

signals:
    void ValueChanged();

private:
    struct ColorizeData : YDAdjustmentJob
    {
        QColor color;
        int opacity;
    };

    void Connect();
    void Disconnect();
    void SetColor(const QColor& color);
    static RGBA32iImage Process(const ColorizeData& data);

    const std::unique_ptr<Ui::FillColor> m_ui;
    Params m_params;
};

ADJUSTMENTGUI_EXPORT QDataStream& operator<<(QDataStream& stream, const KVFillColorWidget::Params& params);
/// A record that cannot be read is logged and becomes the default one.
ADJUSTMENTGUI_EXPORT QDataStream& operator>>(QDataStream& stream, KVFillColorWidget::Params& params);
