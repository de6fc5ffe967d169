#pragma once

#include "YDAdjustmentWidget.h"
#include "YDRecord.h"
#include "adjustmentgui_export.h"

#include <QColor>

#include <memory>

namespace Ui {
class PhotoFilterWidget;
}

/// Lays a coloured filter over a picture, as on a lens. The colour is one of a list of named filters or any
/// other, for which the list shows "Custom".
class ADJUSTMENTGUI_EXPORT YDPhotoFilterWidget : public YDAdjustmentWidget
{
    Q_OBJECT

public:
    struct ADJUSTMENTGUI_EXPORT Params
    {
        QColor color{0xeb, 0xb1, 0x13}; ///< "Warming Filter (81)"
        int density = 50;               ///< per cent, 0..100 by the slider

        static constexpr std::string_view Tag = "KVPhotoFilter 1.00000";
        template <class Self, class Visitor>
        static bool VisitFields(Self& self, Visitor&& visit)
        {
            return visit("color", self.color) && visit("density", self.density, YDRecord::Range{0, 100});
        }
        [[nodiscard]] bool Read(QDataStream& stream);
        [[nodiscard]] bool Write(QDataStream& stream) const;
    };

    YDPhotoFilterWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~YDPhotoFilterWidget() override;

    Params GetValue() const { return m_params; }
    /// Shows `params` without announcing a change.
    void SetValue(const Params& params);

    void ConvertImage(RGBA32iImage& image, const RGBA32iImage& selection, const QPoint& offset,
                      const QRect& boundingRect) override;
    void Reset() override;
    void StartJobWatching(JobWatcher* watcher) override;

signals:
    void ValueChanged();

private slots:
    void OnColor();
    void OnCurrentColorChanged(const QColor& color);
    void OnDensityChanged(int density);
    void OnPresetChanged(int index);

private:
    struct PhotoFilterData : YDAdjustmentJob
    {
        Params params;
    };

    void Connect();
    void Disconnect();
    void FillPresets();
    void UpdatePresetIndex(const QColor& color);
    void SetColor(const QColor& color);
    static RGBA32iImage Process(const PhotoFilterData& data);

    const std::unique_ptr<Ui::PhotoFilterWidget> m_ui;
    Params m_params;
};

ADJUSTMENTGUI_EXPORT QDataStream& operator<<(QDataStream& stream, const YDPhotoFilterWidget::Params& params);
/// A record that cannot be read is logged and becomes the default one.
ADJUSTMENTGUI_EXPORT QDataStream& operator>>(QDataStream& stream, YDPhotoFilterWidget::Params& params);
