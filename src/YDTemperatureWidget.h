#pragma once

#include "YDAdjustmentWidget.h"
#include "YDRecord.h"
#include "adjustmentgui_export.h"

#include <memory>

namespace Ui {
class TemperatureWidget;
}

/// Colour temperature, with a tint and a strength. Jobs use the record.
class ADJUSTMENTGUI_EXPORT YDTemperatureWidget : public YDAdjustmentWidget
{
    Q_OBJECT

public:
    struct ADJUSTMENTGUI_EXPORT Params
    {
        int temperature = 6500; ///< Kelvin, 1000..40000 in the panel
        int tint = 0;           ///< -100..100 in the panel
        int strength = 50;      ///< per cent

        static constexpr std::string_view Tag = "KVTemperature 1.00000";
        template <class Self, class Visitor>
        static bool VisitFields(Self& self, Visitor&& visit)
        {
            return visit("temperature", self.temperature, YDRecord::Range{1000, 40000}) &&
                   visit("tint", self.tint, YDRecord::Range{-100, 100}) &&
                   visit("strength", self.strength, YDRecord::Range{0, 100});
        }
        [[nodiscard]] bool Read(QDataStream& stream);
        [[nodiscard]] bool Write(QDataStream& stream) const;
    };

    YDTemperatureWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~YDTemperatureWidget() override;

    Params GetValue() const { return m_params; }
    /// Takes `params` without announcing a change. The control of the strength stays as it is.
    void SetValue(const Params& params);

    void ConvertImage(RGBA32iImage& image, const RGBA32iImage& selection, const QPoint& offset,
                      const QRect& boundingRect) override;
    /// Announces a change for each control that does not show its default yet.
    void Reset() override;
    void StartJobWatching(JobWatcher* watcher) override;

public slots:
    void OnTemperatureChanged(int value);
    void OnTintChanged(int value);
    void OnStrengthChanged(int value);

signals:
    void ValueChanged();

private:
    struct TData : YDAdjustmentJob
    {
        Params params;
    };

    void Connect();
    void Disconnect();
    void ShowDefaults();
    static RGBA32iImage Process(const TData& data);

    const std::unique_ptr<Ui::TemperatureWidget> m_ui;
    Params m_params;
};

ADJUSTMENTGUI_EXPORT QDataStream& operator<<(QDataStream& stream, const YDTemperatureWidget::Params& params);
/// A record that cannot be read is logged and becomes the default one.
ADJUSTMENTGUI_EXPORT QDataStream& operator>>(QDataStream& stream, YDTemperatureWidget::Params& params);
