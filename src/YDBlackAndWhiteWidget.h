#pragma once

#include "YDAdjustmentWidget.h"
#include "YDRecord.h"
#include "adjustmentgui_export.h"

#include <memory>

namespace Ui {
class BlackAndWhiteWidget;
}

/// Grey from a weighted sum of red, green and blue, by one of five sets of weights or by custom ones.
///
/// The spin boxes show the weights in force, to three decimals; they can be edited, and the record's weights
/// with them, only for the custom set.
class ADJUSTMENTGUI_EXPORT YDBlackAndWhiteWidget : public YDAdjustmentWidget
{
    Q_OBJECT

public:
    /// The sets of weights.
    enum Type
    {
        Average,
        Luminance,
        D65,
        Ntsc,
        Cie, ///< the same numbers as Luminance and D65, for another rule
        Custom
    };

    struct ADJUSTMENTGUI_EXPORT Params
    {
        float r = 0.333f; ///< custom weights, 0..1 in the panel, kept while another set is selected
        float g = 0.333f;
        float b = 0.333f;
        qint32 type = Average; ///< a Type; any other number stands for custom weights with no button checked

        static constexpr std::string_view Tag = "KVBlackAndWhite 1.00000";
        /// What an older release called the same record.
        static constexpr std::string_view OlderTag = "KVDesaturate 1.00000";
        template <class Self, class Visitor>
        static bool VisitFields(Self& self, Visitor&& visit)
        {
            constexpr YDRecord::Range Weight{0, 1};
            return visit("type", self.type, YDRecord::Range{Average, Custom}) && visit("r", self.r, Weight) &&
                   visit("g", self.g, Weight) && visit("b", self.b, Weight);
        }
        [[nodiscard]] bool Read(QDataStream& stream);
        [[nodiscard]] bool Write(QDataStream& stream) const;

        /// The weights in force.
        float GetR() const;
        float GetG() const;
        float GetB() const;
    };

    YDBlackAndWhiteWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~YDBlackAndWhiteWidget() override;

    Params GetValue() const { return m_params; }
    /// Shows `params` without announcing a change.
    void SetValue(const Params& params);

    void ConvertImage(RGBA32iImage& image, const RGBA32iImage& selection, const QPoint& offset,
                      const QRect& boundingRect) override;
    void Reset() override;
    void StartJobWatching(JobWatcher* watcher) override;

public slots:
    void OnAverage(bool checked);
    void OnLuminance(bool checked);
    void OnD65(bool checked);
    void OnNTSC(bool checked);
    void OnCIE(bool checked);
    void OnCustom(bool checked);
    void OnRedChanged(double value);
    void OnGreenChanged(double value);
    void OnBlueChanged(double value);

signals:
    void ValueChanged();

private:
    struct BlackAndWhiteData : YDAdjustmentJob
    {
        Params params;
    };

    void Connect();
    void Disconnect();
    void ShowWeights();
    void SelectType(bool checked, Type type);
    void ChangeWeight(float& weight, double value);
    static RGBA32iImage Process(const BlackAndWhiteData& data);

    const std::unique_ptr<Ui::BlackAndWhiteWidget> m_ui;
    Params m_params;
};

ADJUSTMENTGUI_EXPORT QDataStream& operator<<(QDataStream& stream,
                                             const YDBlackAndWhiteWidget::Params& params);
/// A record that cannot be read is logged and becomes the default one.
ADJUSTMENTGUI_EXPORT QDataStream& operator>>(QDataStream& stream, YDBlackAndWhiteWidget::Params& params);
