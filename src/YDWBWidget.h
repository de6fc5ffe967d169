#pragma once

#include "YDAdjustmentWidget.h"
#include "YDRecord.h"
#include "adjustmentgui_export.h"

#include <memory>

class KVIterativeWBTransformation;
class QRadioButton;

namespace Ui {
class WBWidget;
}

/// White balance: takes a colour cast away, or darkens or brightens a picture that was exposed wrongly, and
/// may filter the result warmer or colder.
///
/// One slider edits the strength of whichever function is chosen; each function keeps its own. The advanced
/// correction belongs to the automatic one: it stretches the levels of each channel as well, and its strength
/// mixes the result with the picture as it was.
class ADJUSTMENTGUI_EXPORT YDWBWidget : public YDAdjustmentWidget
{
    Q_OBJECT

public:
    struct ADJUSTMENTGUI_EXPORT Params
    {
        bool enhanced = false;           ///< the advanced correction; of use with mode 0 only
        int autoStrength = 50;           ///< per cent
        int overexposureStrength = 100;  ///< per cent
        int underexposureStrength = 100; ///< per cent
        int mode = 0;                    ///< a KVWBTransformation::BalanceFunction; stored as read
        bool useTemperature = false;     ///< filters the result
        int temperature = 0;             ///< -100 (cold) .. 100 (warm)
        int temperatureStrength = 50;    ///< density of the filter, per cent

        static constexpr std::string_view Tag = "KVWhiteBalance 1.00000";
        template <class Self, class Visitor>
        static bool VisitFields(Self& self, Visitor&& visit)
        {
            constexpr YDRecord::Range Percent{0, 100};
            return visit("enhanced", self.enhanced) && visit("autoStrength", self.autoStrength, Percent) &&
                   visit("overexposureStrength", self.overexposureStrength, Percent) &&
                   visit("underexposureStrength", self.underexposureStrength, Percent) &&
                   visit("mode", self.mode, YDRecord::Range{0, 2}) &&
                   visit("useTemperature", self.useTemperature) &&
                   visit("temperature", self.temperature, YDRecord::Range{-100, 100}) &&
                   visit("temperatureStrength", self.temperatureStrength, Percent);
        }
        [[nodiscard]] bool Read(QDataStream& stream);
        [[nodiscard]] bool Write(QDataStream& stream) const;
    };

    YDWBWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~YDWBWidget() override;

    Params GetValue() const { return m_params; }
    /// Shows `params` without announcing a change. A mode that there is not leaves the choice of the function
    /// and its strength as they were.
    void SetValue(const Params& params);

    void ConvertImage(RGBA32iImage& image, const RGBA32iImage& selection, const QPoint& offset,
                      const QRect& boundingRect) override;
    void Reset() override;
    void StartJobWatching(JobWatcher* watcher) override;

signals:
    void ValueChanged();

private slots:
    void OnAuto(bool on);
    void OnEnchanced(bool on);
    void OnOverexposure(bool on);
    void OnUnderexposure(bool on);
    void OnWBStrengthChanged(int value);
    void OnUseTemperature(bool on);
    void OnTemperature(int value);
    void OnTemperatureStrength(int value);

private:
    struct WBData : YDAdjustmentJob
    {
        Params params;
    };

    void Connect();
    void Disconnect();
    void ChooseFunction(int mode);
    QRadioButton* ButtonOf(int mode) const;
    static RGBA32iImage Process(const WBData& data);
    [[nodiscard]] static bool Enhance(const WBData& data);
    [[nodiscard]] static bool EnhanceWhole(const WBData& data, const KVIterativeWBTransformation& balance);
    [[nodiscard]] static bool EnhanceSelected(const WBData& data, const KVIterativeWBTransformation& balance);

    const std::unique_ptr<Ui::WBWidget> m_ui;
    Params m_params;
};

ADJUSTMENTGUI_EXPORT QDataStream& operator<<(QDataStream& stream, const YDWBWidget::Params& params);
/// A record that cannot be read is logged and becomes the default one.
ADJUSTMENTGUI_EXPORT QDataStream& operator>>(QDataStream& stream, YDWBWidget::Params& params);
