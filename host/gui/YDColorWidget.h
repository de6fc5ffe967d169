#pragma once

#include <QBrush>
#include <QWidget>

/// An area of a colour or a gradient in a thin frame, such as the scale of tones beside a slider.
///
/// The gradient of a brush in ObjectBoundingMode or StretchToDeviceMode spans the widget: (0, 0) is its
/// top left corner and (1, 1) its bottom right one, also where the layout runs from right to left. The frame
/// is drawn over it, so that a level is where a widget of the same width above or below shows it.
class YDColorWidget : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QBrush backgroundBrush READ BackgroundBrush WRITE SetBackgroundBrush)

public:
    explicit YDColorWidget(QWidget* parent = nullptr);

    QBrush BackgroundBrush() const { return m_brush; }
    /// A brush without a style leaves the frame alone.
    void SetBackgroundBrush(const QBrush& brush);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QBrush m_brush;
};
