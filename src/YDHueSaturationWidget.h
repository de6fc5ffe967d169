#pragma once

#include "YDAdjustmentWidget.h"
#include "YDRecord.h"
#include "adjustmentgui_export.h"

#include <QLinearGradient>

#include <memory>

namespace Ui {
class HueSaturationParamWidget;
}

/// Hue, saturation and lightness, or the whole picture in one hue.
///
/// The controls show what they do: the grooves of the hue and saturation sliders take the colours that a
/// move would give, and of the two strips below them the upper shows the hues as they are, the lower what
/// becomes of them.
///
/// Jobs use the controls: a value of the record beyond its control's end is kept, and processed as that end.
class ADJUSTMENTGUI_EXPORT YDHueSaturationWidget : public YDAdjustmentWidget
{
    Q_OBJECT

public:
    struct ADJUSTMENTGUI_EXPORT Params
    {
        int hue = 0;        ///< degrees, 0..359 in the panel
        int saturation = 0; ///< -100..100 in the panel
        int lightness = 0;  ///< -100..100 in the panel
        bool colorize = false;

        static constexpr std::string_view Tag = "KVHueSaturation 1.00000";
        template <class Self, class Visitor>
        static bool VisitFields(Self& self, Visitor&& visit)
        {
            constexpr YDRecord::Range Percent{-100, 100};
            return visit("hue", self.hue, YDRecord::Range{0, 359}) &&
                   visit("saturation", self.saturation, Percent) &&
                   visit("lightness", self.lightness, Percent) && visit("colorize", self.colorize);
        }
        [[nodiscard]] bool Read(QDataStream& stream);
        [[nodiscard]] bool Write(QDataStream& stream) const;
    };

    YDHueSaturationWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~YDHueSaturationWidget() override;

    /// The hues at a saturation and lightness, from 0 around the circle and back to 0.
    static QLinearGradient GetHue(int saturation, int lightness);
    /// A hue at a lightness, from grey to full colour.
    static QLinearGradient GetSaturation(int hue, int lightness);

    Params GetValue() const { return m_params; }
    /// Shows `params` without announcing a change.
    void SetValue(const Params& params);

    void ConvertImage(RGBA32iImage& image, const RGBA32iImage& selection, const QPoint& offset,
                      const QRect& boundingRect) override;
    void Reset() override;
    void StartJobWatching(JobWatcher* watcher) override;

public slots:
    void OnHueChanged(int value);
    void OnSaturationChanged(int value);
    void OnLightnessChanged(int value);
    void OnColorizeChanged(bool on);

signals:
    void ValueChanged();

private:
    struct HSData : YDAdjustmentJob
    {
        int hue;
        int saturation;
        int lightness;
        bool colorize;
    };

    void Connect();
    void Disconnect();
    void ShowLastHue();
    void UpdateColorLabels();
    void UpdateHueGroove();
    void UpdateSaturationGroove();
    HSData MakeData(const YDAdjustmentJob& job) const;
    static RGBA32iImage Process(const HSData& data);

    const std::unique_ptr<Ui::HueSaturationParamWidget> m_ui;
    Params m_params;
};

ADJUSTMENTGUI_EXPORT QDataStream& operator<<(QDataStream& stream,
                                             const YDHueSaturationWidget::Params& params);
/// A record that cannot be read is logged and becomes the default one.
ADJUSTMENTGUI_EXPORT QDataStream& operator>>(QDataStream& stream, YDHueSaturationWidget::Params& params);
