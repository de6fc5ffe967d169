#include "widgets/KVSlider.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>
#include <QStyleOptionSlider>
#include <QWheelEvent>

namespace {

constexpr double DisabledOpacity = 0.35;

} // namespace

KVSlider::KVSlider(QWidget* parent) : KVSlider(Qt::Vertical, parent) {}

KVSlider::KVSlider(Qt::Orientation orientation, QWidget* parent) : QSlider(orientation, parent)
{
    setFocusPolicy(Qt::StrongFocus); // not by the wheel
}

void KVSlider::paintEvent(QPaintEvent* event)
{
    if (!LacksHandle()) {
        QSlider::paintEvent(event);
        return;
    }
    QPainter painter(this);
    if (isEnabled()) {
        DrawWithOwnHandle(painter);
        return;
    }
    // The groove's style sheet has one look for both states. Dimmed as a whole, the handle still hides it.
    QPixmap layer(size() * devicePixelRatioF());
    layer.setDevicePixelRatio(devicePixelRatioF());
    layer.fill(Qt::transparent);
    QPainter layerPainter(&layer);
    DrawWithOwnHandle(layerPainter);
    layerPainter.end();
    painter.setOpacity(DisabledOpacity);
    painter.drawPixmap(0, 0, layer);
}

void KVSlider::mousePressEvent(QMouseEvent* event)
{
    const bool isLeftAlone = event->button() == Qt::LeftButton && event->buttons() == Qt::LeftButton;
    if (isLeftAlone && LacksHandle()) {
        BeginOwnDrag(*event);
        return;
    }
    const QRect handle = StyleHandle();
    if (!isLeftAlone || handle.contains(event->pos())) {
        QSlider::mousePressEvent(event);
        return;
    }
    // The handle is taken at its middle and dragged to the mouse.
    QMouseEvent press(event->type(), handle.center(), event->button(), event->buttons(), event->modifiers());
    QSlider::mousePressEvent(&press);
    QMouseEvent move(QEvent::MouseMove, event->localPos(), Qt::NoButton, event->buttons(),
                     event->modifiers());
    QSlider::mouseMoveEvent(&move);
    event->setAccepted(press.isAccepted());
}

void KVSlider::mouseMoveEvent(QMouseEvent* event)
{
    if (m_isOwnDrag)
        DragOwnHandleTo(event->pos());
    else
        QSlider::mouseMoveEvent(event);
}

void KVSlider::mouseReleaseEvent(QMouseEvent* event)
{
    if (!m_isOwnDrag || event->button() != Qt::LeftButton) {
        QSlider::mouseReleaseEvent(event);
        return;
    }
    m_isOwnDrag = false;
    setSliderDown(false);
    update();
}

void KVSlider::wheelEvent(QWheelEvent* event)
{
    if (hasFocus())
        QSlider::wheelEvent(event);
    else
        event->ignore();
}

QStyleOptionSlider KVSlider::Option() const
{
    QStyleOptionSlider option;
    initStyleOption(&option);
    return option;
}

/// The handle as the widget's style has it; empty under a style sheet that styles the groove alone.
QRect KVSlider::StyleHandle() const
{
    const QStyleOptionSlider option = Option();
    return style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this);
}

/// The handle as the application's style has it, out of any style sheet's reach.
QRect KVSlider::OwnHandle() const
{
    const QStyleOptionSlider option = Option();
    return QApplication::style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle);
}

/// The groove as the style sheet has it, the handle as the application's style has it.
void KVSlider::DrawWithOwnHandle(QPainter& painter)
{
    QStyleOptionSlider option = Option();
    option.subControls = QStyle::SC_SliderGroove;
    if (tickPosition() != NoTicks)
        option.subControls |= QStyle::SC_SliderTickmarks;
    style()->drawComplexControl(QStyle::CC_Slider, &option, &painter, this);
    option.subControls = QStyle::SC_SliderHandle;
    if (m_isOwnDrag) {
        option.activeSubControls = QStyle::SC_SliderHandle;
        option.state |= QStyle::State_Sunken;
    }
    QApplication::style()->drawComplexControl(QStyle::CC_Slider, &option, &painter);
}

void KVSlider::BeginOwnDrag(const QMouseEvent& event)
{
    const QRect handle = OwnHandle();
    m_isOwnDrag = true;
    m_grabOffset = handle.contains(event.pos()) ? Along(event.pos()) - Along(handle.center()) : 0;
    setSliderDown(true);
    setRepeatAction(SliderNoAction);
    DragOwnHandleTo(event.pos());
    update();
}

void KVSlider::DragOwnHandleTo(const QPoint& mouse)
{
    const QStyleOptionSlider option = Option();
    const QRect groove =
        QApplication::style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderGroove);
    const QRect handle = OwnHandle();
    const bool isHorizontal = orientation() == Qt::Horizontal;
    const int length = isHorizontal ? groove.width() : groove.height();
    const int handleLength = isHorizontal ? handle.width() : handle.height();
    const int start = Along(mouse) - m_grabOffset - handleLength / 2 - Along(groove.topLeft());
    setSliderPosition(QStyle::sliderValueFromPosition(minimum(), maximum(), start, length - handleLength,
                                                      option.upsideDown));
}
