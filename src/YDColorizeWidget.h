#pragma once

#include "YDAdjustmentWidget.h"
#include "YDRecord.h"
#include "adjustmentgui_export.h"

#include <QColor>

#include <memory>

namespace Ui {
class ColorizeWidget;
}

/// Tints a picture with one colour.
class ADJUSTMENTGUI_EXPORT YDColorizeWidget : public YDAdjustmentWidget
{
    Q_OBJECT

public:
    struct ADJUSTMENTGUI_EXPORT Params
    {
        QColor color{255, 210, 255};
        int amount = 25; ///< per cent, 0..100 by the slider

        static constexpr std::string_view Tag = "KVColorizeFilter 1.00000";
        template <class Self, class Visitor>
        static bool VisitFields(Self& self, Visitor&& visit)
        {
            return visit("color", self.color) && visit("amount", self.amount, YDRecord::Range{0, 100});
        }
        [[nodiscard]] bool Read(QDataStream& stream);
        [[nodiscard]] bool Write(QDataStream& stream) const;
    };

    YDColorizeWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~YDColorizeWidget() override;

    Params GetValue() const { return m_params; }
    /// Shows `params` without announcing a change.
    void SetValue(const Params& params);

    void ConvertImage(RGBA32iImage& image, const RGBA32iImage& selection, const QPoint& offset,
                      const QRect& boundingRect) override;
    void Reset() override;
    void StartJobWatching(JobWatcher* watcher) override;

public slots:
    void OnColor();
    void OnCurrentColorChanged(const QColor& color);
    void OnAmountChanged(int amount);

signals:
    void ValueChanged();

private:
    struct ColorizeData : YDAdjustmentJob
    {
        Params params;
    };

    void Connect();
    void Disconnect();
    void SetColor(const QColor& color);
    static RGBA32iImage Process(const ColorizeData& data);

    const std::unique_ptr<Ui::ColorizeWidget> m_ui;
    Params m_params;
};

ADJUSTMENTGUI_EXPORT QDataStream& operator<<(QDataStream& stream, const YDColorizeWidget::Params& params);
/// A record that cannot be read is logged and becomes the default one.
ADJUSTMENTGUI_EXPORT QDataStream& operator>>(QDataStream& stream, YDColorizeWidget::Params& params);
