#include "gui/YDColorWidget.h"

#include "gui/ControlLook.h"

#include <QPainter>

namespace {

constexpr QSize UsualBarSize(256, 16);
constexpr QSize SmallestBarSize(8, 8);
constexpr double FrameOpacity = 0.5;

/// The brush for a rectangle that it shall span. A painter would stretch StretchToDeviceMode over what it
/// draws on, which may be the window or a picture of it instead of the widget.
QBrush SpanningBrush(const QBrush& brush)
{
    const QGradient* const gradient = brush.gradient();
    if (!gradient || gradient->coordinateMode() != QGradient::StretchToDeviceMode)
        return brush;
    QGradient spanning = *gradient;
    spanning.setCoordinateMode(QGradient::ObjectBoundingMode);
    QBrush spanningBrush(spanning);
    spanningBrush.setTransform(brush.transform());
    return spanningBrush;
}

} // namespace

YDColorWidget::YDColorWidget(QWidget* parent) : QWidget(parent) {}

void YDColorWidget::SetBackgroundBrush(const QBrush& brush)
{
    if (brush == m_brush)
        return;
    m_brush = brush;
    update();
}

QSize YDColorWidget::sizeHint() const { return UsualBarSize; }

QSize YDColorWidget::minimumSizeHint() const { return SmallestBarSize; }

void YDColorWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    if (!isEnabled())
        painter.setOpacity(DisabledOpacity);
    painter.fillRect(rect(), SpanningBrush(m_brush));
    const double line = 1.0 / devicePixelRatioF(); // one pixel of the screen
    QColor frame = palette().color(QPalette::WindowText);
    frame.setAlphaF(FrameOpacity);
    QPen pen(frame, line);
    pen.setJoinStyle(Qt::MiterJoin);
    painter.setPen(pen);
    painter.drawRect(QRectF(rect()).adjusted(line / 2, line / 2, -line / 2, -line / 2));
}
