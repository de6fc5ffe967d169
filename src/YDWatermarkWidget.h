#pragma once

#include "YDAdjustmentWidget.h"
#include "YDRecord.h"
#include "adjustmentgui_export.h"

#include <QColor>
#include <QFont>
#include <QRect>
#include <QString>

#include <memory>

namespace Ui {
class WatermarkWidget;
}

/// A text that the host writes onto the picture, once or in a grid.
///
/// Always a panel, and it computes no pixels: the host draws what GetValue() says.
class ADJUSTMENTGUI_EXPORT YDWatermarkWidget : public YDAdjustmentWidget
{
    Q_OBJECT

public:
    struct ADJUSTMENTGUI_EXPORT Params
    {
        int angle = 0; ///< degrees, clockwise, -179..180 by the panel
        /// Distances from the picture's edges in pixels, 0..999 by the panel. Four numbers and no rectangle:
        /// the left one may exceed the right one, and nothing may ask for a width.
        QRect margins{QPoint(5, 5), QPoint(5, 5)};
        QString text = DefaultText();
        QFont font; ///< one from a stream may have any size, finite or not, and name what is not installed
        QColor color = Qt::white;
        int blendingMode = 0; ///< a KVCompositionMode, or any number from a stream
        int opacity = 100;    ///< per cent, 0..100 by the panel
        int hrzTiles = 1;     ///< repetitions across, 1..9 by the panel
        int vrtTiles = 1;     ///< repetitions down, 1..9 by the panel

        static constexpr std::string_view Tag = "KVWatermark 1.00000";
        template <class Self, class Visitor>
        static bool VisitFields(Self& self, Visitor&& visit)
        {
            constexpr YDRecord::Range Tiles{1, 9};
            return visit("angle", self.angle, YDRecord::Range{-179, 180}) &&
                   visit("margins", self.margins, YDRecord::Range{0, 999}) && visit("text", self.text) &&
                   visit("font", self.font) && visit("color", self.color) &&
                   visit("blendingMode", self.blendingMode, YDRecord::Range{0, 23}) &&
                   visit("opacity", self.opacity, YDRecord::Range{0, 100}) &&
                   visit("hrzTiles", self.hrzTiles, Tiles) && visit("vrtTiles", self.vrtTiles, Tiles);
        }
        [[nodiscard]] bool Read(QDataStream& stream);
        [[nodiscard]] bool Write(QDataStream& stream) const;

    private:
        static QString DefaultText();
    };

    YDWatermarkWidget(QWidget* parent, Qt::WindowFlags flags);
    ~YDWatermarkWidget() override;

    Params GetValue() const { return m_params; }
    /// Shows `params` without announcing a change.
    void SetValue(const Params& params);

    void Reset() override;
    void StartJobWatching(JobWatcher* watcher) override;

public slots:
    void OnSelectFont();
    void OnSelectColor();
    void OnAnglechanged(int angle);
    void OnTextChanged(const QString& text);
    void OnLeftMarginChanged(int margin);
    void OnRightMarginChanged(int margin);
    void OnTopMarginChanged(int margin);
    void OnBottomMarginChanged(int margin);
    void OnOpacityChanged(int opacity);
    void OnBlendingModeChanged(int index);
    void OnVrtTilesChanged(int count);
    void OnHrzTilesChanged(int count);

signals:
    void ValueChanged();

private:
    void Connect();
    void Disconnect();
    int BlendingModeToIndex(unsigned mode) const;

    const std::unique_ptr<Ui::WatermarkWidget> m_ui;
    Params m_params;
};

ADJUSTMENTGUI_EXPORT QDataStream& operator<<(QDataStream& stream, const YDWatermarkWidget::Params& params);
/// A record that cannot be read is logged and becomes the default one.
ADJUSTMENTGUI_EXPORT QDataStream& operator>>(QDataStream& stream, YDWatermarkWidget::Params& params);
