#pragma once

#include "YDAdjustmentWidget.h"
#include "YDRecord.h"
#include "adjustmentgui_export.h"

#include <QColor>

#include <memory>

namespace Ui {
class ReplaceColor;
}

/// Replaces the colour of the connected area that touches one corner of a picture.
///
/// Only the preview of a dialog changes pixels: ConvertImage() is the base's and does nothing. The area is
/// sought in the whole picture, whatever is selected, and its filling runs to its end once it has begun.
class ADJUSTMENTGUI_EXPORT YDReplaceColorWidget : public YDAdjustmentWidget
{
    Q_OBJECT

public:
    /// The corner in which the area lies. Stored ones may be any number, and are the left top one then.
    enum PositionType : qint32
    {
        LeftTop,
        RightTop,
        LeftBottom,
        RightBottom,
    };

    struct ADJUSTMENTGUI_EXPORT Params
    {
        int tolerance = 0; ///< by which a channel may differ from the corner's pixel, 0..255 by the controls
        int position = LeftTop;  ///< a PositionType
        QColor color{Qt::white}; ///< without its alpha
        int opacity = 100;       ///< per cent, 0..100 by the controls

        static constexpr std::string_view Tag = "KVReplaceColor 1.00000";
        template <class Self, class Visitor>
        static bool VisitFields(Self& self, Visitor&& visit)
        {
            return visit("tolerance", self.tolerance, YDRecord::Range{0, 255}) &&
                   visit("position", self.position, YDRecord::Range{LeftTop, RightBottom}) &&
                   visit("color", self.color) && visit("opacity", self.opacity, YDRecord::Range{0, 100});
        }
        [[nodiscard]] bool Read(QDataStream& stream);
        [[nodiscard]] bool Write(QDataStream& stream) const;
    };

    YDReplaceColorWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~YDReplaceColorWidget() override;

    Params GetValue() const { return m_params; }
    /// Shows `params` without announcing a change. A position that there is not leaves the list of positions
    /// without a current item.
    void SetValue(const Params& params);

    /// The item of the list of positions that stands for `type`; -1 if none does.
    int GetPositionIndex(PositionType type) const;
    /// What the item at `index` of that list stands for; LeftTop where there is no such item.
    PositionType GetPositionType(int index) const;

    void Reset() override;
    void StartJobWatching(JobWatcher* watcher) override;

public slots:
    void OnSourceToleranceChanged(int tolerance);
    void OnSourcePosTypeChanged(int index);
    void OnDestinationOpacityChanged(int opacity);
    void OnDestinationColor();
    void OnCurrentColorChanged(const QColor& color);
    /// Shows `color` without announcing a change.
    void SetDestinationColor(const QColor& color);

signals:
    void ValueChanged();

private:
    struct RCData : YDAdjustmentJob
    {
        YDRGBA32i color; ///< its alpha is the opacity
        QPoint start;
        int tolerance;
    };

    void FillSourcePositions();
    void Connect();
    void Disconnect();
    QPoint StartPoint() const;
    static RGBA32iImage Process(const RCData& data);

    const std::unique_ptr<Ui::ReplaceColor> m_ui;
    Params m_params;
};

ADJUSTMENTGUI_EXPORT QDataStream& operator<<(QDataStream& stream, const YDReplaceColorWidget::Params& params);
/// A record that cannot be read is logged and becomes the default one.
ADJUSTMENTGUI_EXPORT QDataStream& operator>>(QDataStream& stream, YDReplaceColorWidget::Params& params);
