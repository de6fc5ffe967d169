#pragma once

#include "YDAdjustmentWidget.h"
#include "YDRecord.h"
#include "adjustmentgui_export.h"

#include <memory>

class YDThresholdCache;

namespace Ui {
class ColorEnhancer;
}

/// Strengthens colours after a stretch of the levels to what the picture holds.
///
/// What the picture holds is counted for the first job and kept until the source changes, so moving a control
/// counts nothing again. Whoever only calls ConvertImage() for one picture after another hands each over with
/// SetImage() first.
class ADJUSTMENTGUI_EXPORT YDColorEnhancerWidget : public YDAdjustmentWidget
{
    Q_OBJECT

public:
    struct ADJUSTMENTGUI_EXPORT Params
    {
        int amount = 100;   ///< per cent
        int affected = 100; ///< per cent: 0 stretches all channels alike, 100 each by what it holds itself

        static constexpr std::string_view Tag = "KVColorEnhancer 1.00000";
        template <class Self, class Visitor>
        static bool VisitFields(Self& self, Visitor&& visit)
        {
            constexpr YDRecord::Range Percent{0, 100};
            return visit("affected", self.affected, Percent) && visit("amount", self.amount, Percent);
        }
        [[nodiscard]] bool Read(QDataStream& stream);
        [[nodiscard]] bool Write(QDataStream& stream) const;
    };

    YDColorEnhancerWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~YDColorEnhancerWidget() override;

    Params GetValue() const { return m_params; }
    /// Shows `params` without announcing a change.
    void SetValue(const Params& params);

    void ConvertImage(RGBA32iImage& image, const RGBA32iImage& selection, const QPoint& offset,
                      const QRect& boundingRect) override;
    void Reset() override;
    void StartJobWatching(JobWatcher* watcher) override;

    /// An input bound of a channel's levels: `affected` per cent of the way from the common bound to the
    /// channel's own, rounded toward zero.
    static int InputBound(int own, int common, int affected);

signals:
    void ValueChanged();

private slots:
    void OnAmountChanged(int value);
    void OnAffectedChanged(int value);
    void OnSourceChanged();

private:
    struct EnhancerData : YDAdjustmentJob
    {
        Params params;
        std::shared_ptr<YDThresholdCache> thresholds;
    };

    void Connect();
    void Disconnect();
    void ForgetThresholds();
    static RGBA32iImage Process(const EnhancerData& data);

    const std::unique_ptr<Ui::ColorEnhancer> m_ui;
    Params m_params;
    std::shared_ptr<YDThresholdCache> m_thresholds;
    RGBA32iImage m_counted;       ///< the source that the thresholds are of
    bool m_isChangeKnown = false; ///< a job has begun on a source whose change is yet to be announced
};

ADJUSTMENTGUI_EXPORT QDataStream& operator<<(QDataStream& stream,
                                             const YDColorEnhancerWidget::Params& params);
/// A record that cannot be read is logged and becomes the default one.
ADJUSTMENTGUI_EXPORT QDataStream& operator>>(QDataStream& stream, YDColorEnhancerWidget::Params& params);
