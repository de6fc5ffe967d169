#pragma once

#include "YDAdjustmentWidget.h"
#include "YDRecord.h"
#include "adjustmentgui_export.h"
#include "image/YDSharedImage.h"

#include <memory>

class YDHistogramFeed;

namespace Ui {
class Threshold;
}

/// Black and white at one level, which a spin box and a handle below the source's histogram set.
///
/// The handle sets the spin box, and the spin box, when it changes, sets the level and the handle. The spin
/// box begins at 1 and the handle at 0: a handle that is brought to 0 leaves the level at 1. A record's level
/// outside of 1..255 is kept until the spin box changes; each control shows the nearest level that it has.
class ADJUSTMENTGUI_EXPORT YDThresholdWidget : public YDAdjustmentWidget
{
    Q_OBJECT

public:
    struct ADJUSTMENTGUI_EXPORT Params
    {
        int level = 128; ///< 1..255 in the panel; stored as read

        static constexpr std::string_view Tag = "KVThreshold 1.00000";
        template <class Self, class Visitor>
        static bool VisitFields(Self& self, Visitor&& visit)
        {
            return visit("level", self.level, YDRecord::Range{1, 255});
        }
        [[nodiscard]] bool Read(QDataStream& stream);
        [[nodiscard]] bool Write(QDataStream& stream) const;
    };

    YDThresholdWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~YDThresholdWidget() override;

    Params GetValue() const { return m_params; }
    /// Shows `params`, as far as the controls reach, without announcing a change.
    void SetValue(const Params& params);

    void ConvertImage(RGBA32iImage& image, const RGBA32iImage& selection, const QPoint& offset,
                      const QRect& boundingRect) override;
    void Reset() override;
    void StartJobWatching(JobWatcher* watcher) override;

    /// Shows the histogram of the picture in `image` in place of the source's, until the source changes or
    /// another is attached. `image` must live until then; null: none.
    void AttachQImage(const YDSharedImage<QImage>* image);
    void AttachRGB32iImage(const YDSharedImage<RGBA32iImage>* image);

    /// Counts the picture of the histogram again.
    void UpdateHistogramm();

public slots:
    void OnSourceChanged();
    void OnLevelChanged(uint handle, int value);
    void OnLevelChanged(int value);

signals:
    void ValueChanged();

private:
    struct ThresholdData : YDAdjustmentJob
    {
        Params params;
    };

    void Connect();
    void Disconnect();
    void ShowLevel(int level);
    ThresholdData MakeData(const YDAdjustmentJob& job) const;
    static RGBA32iImage Process(const ThresholdData& data);

    const std::unique_ptr<Ui::Threshold> m_ui;
    std::unique_ptr<YDHistogramFeed> m_feed;
    Params m_params;
};

ADJUSTMENTGUI_EXPORT QDataStream& operator<<(QDataStream& stream, const YDThresholdWidget::Params& params);
/// A record that cannot be read is logged and becomes the default one.
ADJUSTMENTGUI_EXPORT QDataStream& operator>>(QDataStream& stream, YDThresholdWidget::Params& params);
