#pragma once

#include "YDAdjustmentWidget.h"
#include "YDRecord.h"
#include "adjustmentgui_export.h"

#include <memory>

namespace Ui {
class BrightnessContrastParamWidget;
}

/// Brightness and contrast, each a slider and a spin box that follow one another.
///
/// The spin boxes reach further than the sliders: a value beyond a slider's end is what jobs use, while the
/// slider, and the record with it, stay at the end.
class ADJUSTMENTGUI_EXPORT YDBrightnessContrastWidget : public YDAdjustmentWidget
{
    Q_OBJECT

public:
    struct ADJUSTMENTGUI_EXPORT Params
    {
        int brightness = 0; ///< -100..100 by the slider
        int contrast = 0;   ///< -100..100 by the slider

        static constexpr std::string_view Tag = "KVBrightnessContrast 1.00000";
        template <class Self, class Visitor>
        static bool VisitFields(Self& self, Visitor&& visit)
        {
            constexpr YDRecord::Range SliderRange{-100, 100};
            return visit("brightness", self.brightness, SliderRange) &&
                   visit("contrast", self.contrast, SliderRange);
        }
        [[nodiscard]] bool Read(QDataStream& stream);
        [[nodiscard]] bool Write(QDataStream& stream) const;
    };

    YDBrightnessContrastWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~YDBrightnessContrastWidget() override;

    Params GetValue() const { return m_params; }
    /// Shows `params` without announcing a change.
    void SetValue(const Params& params);

    void ConvertImage(RGBA32iImage& image, const RGBA32iImage& selection, const QPoint& offset,
                      const QRect& boundingRect) override;
    void Reset() override;
    void StartJobWatching(JobWatcher* watcher) override;

public slots:
    void OnBrightnessChanged(int value);
    void OnContrastChanged(int value);

signals:
    void ValueChanged();

private:
    struct BCData : YDAdjustmentJob
    {
        int brightness;
        int contrast;
    };

    void Connect();
    void Disconnect();
    BCData MakeData(const YDAdjustmentJob& job) const;
    static RGBA32iImage Process(const BCData& data);

    const std::unique_ptr<Ui::BrightnessContrastParamWidget> m_ui;
    Params m_params;
};

ADJUSTMENTGUI_EXPORT QDataStream& operator<<(QDataStream& stream,
                                             const YDBrightnessContrastWidget::Params& params);
/// A record that cannot be read is logged and becomes the default one.
ADJUSTMENTGUI_EXPORT QDataStream& operator>>(QDataStream& stream, YDBrightnessContrastWidget::Params& params);
