#pragma once

#include "YDAdjustmentWidget.h"
#include "YDRecord.h"
#include "adjustmentgui_export.h"

#include <memory>

namespace Ui {
class ColorBalanceParamWidget;
}

/// Colours moved between cyan and red, magenta and green, yellow and blue, in shadows, midtones and
/// highlights each for themselves.
///
/// One set of controls edits the tone range that is selected; the record holds all three, and jobs use the
/// record. With no range selected the set is disabled.
class ADJUSTMENTGUI_EXPORT YDColorBalanceWidget : public YDAdjustmentWidget
{
    Q_OBJECT

public:
    struct ADJUSTMENTGUI_EXPORT Params
    {
        /// A position between two colours, -100..100 in the panel, for shadows, midtones and highlights.
        using Axis = std::array<int, 3>;

        Axis cyanRed{};
        Axis magentaGreen{};
        Axis yellowBlue{};
        int toneRange = 2; ///< the one that is edited: 1 shadows, 2 midtones, 3 highlights; others: none
        bool preserveLuminosity = true; ///< kept and shown; the transformation has no such choice

        static constexpr std::string_view Tag = "KVColorBalance 1.00000";
        template <class Self, class Visitor>
        static bool VisitFields(Self& self, Visitor&& visit)
        {
            constexpr YDRecord::Range Percent{-100, 100};
            return visit("preserveLuminosity", self.preserveLuminosity) &&
                   visit("toneRange", self.toneRange, YDRecord::Range{0, 3}) &&
                   visit("cyanRed", self.cyanRed, Percent) &&
                   visit("magentaGreen", self.magentaGreen, Percent) &&
                   visit("yellowBlue", self.yellowBlue, Percent);
        }
        [[nodiscard]] bool Read(QDataStream& stream);
        [[nodiscard]] bool Write(QDataStream& stream) const;
    };

    YDColorBalanceWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~YDColorBalanceWidget() override;

    Params GetValue() const { return m_params; }
    /// Shows `params` without announcing a change.
    void SetValue(const Params& params);

    void ConvertImage(RGBA32iImage& image, const RGBA32iImage& selection, const QPoint& offset,
                      const QRect& boundingRect) override;
    void Reset() override;
    void StartJobWatching(JobWatcher* watcher) override;

public slots:
    void OnCRChanged(int value);
    void OnMGChanged(int value);
    void OnYBChanged(int value);
    void OnShadowChanged(bool on);
    void OnMidtoneChanged(bool on);
    void OnHighLightChanged(bool on);
    void OnLumChanged(bool on);

signals:
    void ValueChanged();

private:
    struct CBData : YDAdjustmentJob
    {
        Params params;
    };

    void Connect();
    void Disconnect();
    void ColorGrooves();
    void ShowRecord();
    void ShowToneRange();
    void SelectToneRange(int toneRange);
    void ChangeAxis(Params::Axis& axis, int value);
    static RGBA32iImage Process(const CBData& data);

    const std::unique_ptr<Ui::ColorBalanceParamWidget> m_ui;
    Params m_params;
};

ADJUSTMENTGUI_EXPORT QDataStream& operator<<(QDataStream& stream, const YDColorBalanceWidget::Params& params);
/// A record that cannot be read is logged and becomes the default one.
ADJUSTMENTGUI_EXPORT QDataStream& operator>>(QDataStream& stream, YDColorBalanceWidget::Params& params);
