#pragma once

#include "YDAdjustmentWidget.h"
#include "YDRecord.h"
#include "adjustmentgui_export.h"

#include <QColor>

#include <memory>

namespace Ui {
class TintWidget;
}

/// Maps the tones of a picture onto the ramp between two colours.
class ADJUSTMENTGUI_EXPORT YDTintWidget : public YDAdjustmentWidget
{
    Q_OBJECT

public:
    /// How the brightness of a pixel is found; also the index in the panel's list.
    enum Type
    {
        Average,
        Ntsc,
        Luma,
        Rgb, ///< not found at all: every channel has a ramp of its own
    };

    struct ADJUSTMENTGUI_EXPORT Params
    {
        QColor blackTone{5, 6, 8};
        QColor whiteTone{170, 209, 255};
        int amount = 75; ///< per cent, 0..100 by the slider
        int type = Average;

        static constexpr std::string_view Tag = "KVTint 1.00000";
        template <class Self, class Visitor>
        static bool VisitFields(Self& self, Visitor&& visit)
        {
            return visit("blackTone", self.blackTone) && visit("whiteTone", self.whiteTone) &&
                   visit("amount", self.amount, YDRecord::Range{0, 100}) &&
                   visit("type", self.type, YDRecord::Range{Average, Rgb});
        }
        [[nodiscard]] bool Read(QDataStream& stream);
        [[nodiscard]] bool Write(QDataStream& stream) const;
    };

    YDTintWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~YDTintWidget() override;

    Params GetValue() const { return m_params; }
    /// Shows `params`. Other than in most panels, a type and an amount that differ from those shown are each
    /// announced as a change; the record is `params` by then.
    void SetValue(const Params& params);

    void ConvertImage(RGBA32iImage& image, const RGBA32iImage& selection, const QPoint& offset,
                      const QRect& boundingRect) override;
    void Reset() override;
    void StartJobWatching(JobWatcher* watcher) override;

public slots:
    void OnBlackTone();
    void OnWhiteTone();
    void OnCurrentBlackToneChanged(const QColor& color);
    void OnCurrentWhiteToneChanged(const QColor& color);
    void OnAmountChanged(int amount);
    void OnTypeChanged(int index);

signals:
    void ValueChanged();

private:
    struct TintData : YDAdjustmentJob
    {
        Params params;
    };

    void Connect();
    void Disconnect();
    void FillTintTypes();
    void ShowParams(const Params& params);
    void SetBlackTone(const QColor& color);
    void SetWhiteTone(const QColor& color);
    static int IndexByType(int type) { return type; }
    template <class Functor>
    static RGBA32iImage ProcessWith(const TintData& data, int amount);
    static RGBA32iImage Process(const TintData& data);

    const std::unique_ptr<Ui::TintWidget> m_ui;
    Params m_params;
    /// What SetValue() shows, while it does: the spin box ends where a stored amount may go on.
    const Params* m_given = nullptr;
};

ADJUSTMENTGUI_EXPORT QDataStream& operator<<(QDataStream& stream, const YDTintWidget::Params& params);
/// A record that cannot be read is logged and becomes the default one.
ADJUSTMENTGUI_EXPORT QDataStream& operator>>(QDataStream& stream, YDTintWidget::Params& params);
