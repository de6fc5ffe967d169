#pragma once

#include "ControlLinks.h"
#include "YDTaskWidget.h"
#include "adjustmentgui_export.h"
#include "operations/ReplaceColor.h"

#include <QColor>

#include <memory>

namespace Ui {
class ReplaceColor;
}

/// Replaces the colour of the connected area that touches one corner of a picture.
///
/// Only the preview of a dialog changes pixels: ConvertImage() does nothing. The area is
/// sought in the whole picture, whatever is selected, and its filling runs to its end once it has begun.
class ADJUSTMENTGUI_EXPORT YDReplaceColorWidget : public YDTaskWidget
{
    Q_OBJECT

public:
    using Params = operations::ReplaceColor;

    /// The corner in which the area lies. Stored ones may be any number, and are the left top one then.
    enum PositionType : qint32
    {
        LeftTop = Params::LeftTop,
        RightTop = Params::RightTop,
        LeftBottom = Params::LeftBottom,
        RightBottom = Params::RightBottom,
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

    operations::Task MakeTask() const override;
    void Reset() override;
    /// Nothing: pixels are changed by the task, in previews or by whoever takes it.
    void ConvertImage(RGBA32iImage&, const RGBA32iImage&, const QPoint&, const QRect&) override {}

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
    void FillSourcePositions();
    void Connect();
    [[nodiscard]] ControlLinks::Cut Disconnect() { return ControlLinks::Cut(m_links); }

    const std::unique_ptr<Ui::ReplaceColor> m_ui;
    ControlLinks m_links;
    Params m_params;
};
