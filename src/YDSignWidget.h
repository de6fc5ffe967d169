#pragma once

#include "YDAdjustmentWidget.h"
#include "YDRecord.h"
#include "adjustmentgui_export.h"
#include "image/KVCompositionMode.h"

#include <QRect>
#include <QString>
#include <QStringList>

#include <memory>

namespace Ui {
class SignWidget;
}

/// A stamp: the picture of another file that the host puts onto the picture.
///
/// Always a panel, and it computes no pixels: the host draws what GetValue() says. Whether the stamp's file
/// can be read is for whoever draws it to find out.
class ADJUSTMENTGUI_EXPORT YDSignWidget : public YDAdjustmentWidget
{
    Q_OBJECT

public:
    struct ADJUSTMENTGUI_EXPORT Params
    {
        Qt::Alignment alignment = Qt::AlignLeft | Qt::AlignTop; ///< one flag of each direction, by the panel
        QString fileName;
        /// Distances from the picture's edges in pixels, 0..999 by the panel. Four numbers and no rectangle:
        /// the left one may exceed the right one, and nothing may ask for a width.
        QRect margins{QPoint(5, 5), QPoint(5, 5)};
        int blendingMode = 0; ///< a KVCompositionMode, or any number from a stream
        int opacity = 100;    ///< per cent, 0..100 by the panel

        static constexpr std::string_view Tag = "KVSign 1.00000";
        template <class Self, class Visitor>
        static bool VisitFields(Self& self, Visitor&& visit)
        {
            return visit("alignment", self.alignment) &&
                   visit("margins", self.margins, YDRecord::Range{0, 999}) &&
                   visit("fileName", self.fileName) &&
                   visit("blendingMode", self.blendingMode, YDRecord::Range{0, 23}) &&
                   visit("opacity", self.opacity, YDRecord::Range{0, 100});
        }
        [[nodiscard]] bool Read(QDataStream& stream);
        [[nodiscard]] bool Write(QDataStream& stream) const;
    };

    YDSignWidget(QWidget* parent, Qt::WindowFlags flags);
    ~YDSignWidget() override;

    Params GetValue() const { return m_params; }
    /// Shows `params` without announcing a change.
    void SetValue(const Params& params);

    void Reset() override;
    void StartJobWatching(JobWatcher* watcher) override;

    /// Asks for the stamp's file: one name, or none if the user cancelled or no kind of picture can be read.
    QStringList GetOpenFileNames();

public slots:
    void OnSelectFileName();
    void OnHorizontalAlignmentChanged(int index);
    void OnVerticalAlignmentChanged(int index);
    void OnLeftMarginChanged(int margin);
    void OnRightMarginChanged(int margin);
    void OnTopMarginChanged(int margin);
    void OnBottomMarginChanged(int margin);
    void OnOpacityChanged(int opacity);
    void OnBlendingModeChanged(int index);

signals:
    void ValueChanged();

private:
    void Connect();
    void Disconnect();
    void SetHorizontalAlignment(Qt::Alignment alignment);
    void SetVerticalAlignment(Qt::Alignment alignment);
    KVCompositionMode BlendingIndexToMode(int index) const;
    int BlendingModeToIndex(KVCompositionMode mode) const;

    const std::unique_ptr<Ui::SignWidget> m_ui;
    Params m_params;
};

ADJUSTMENTGUI_EXPORT QDataStream& operator<<(QDataStream& stream, const YDSignWidget::Params& params);
/// A record that cannot be read is logged and becomes the default one.
ADJUSTMENTGUI_EXPORT QDataStream& operator>>(QDataStream& stream, YDSignWidget::Params& params);
