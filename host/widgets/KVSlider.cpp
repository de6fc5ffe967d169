#include "widgets/KVSlider.h"

#include <QMouseEvent>
#include <QStyleOptionSlider>
#include <QWheelEvent>

KVSlider::KVSlider(QWidget* parent) : KVSlider(Qt::Vertical, parent) {}

KVSlider::KVSlider(Qt::Orientation orientation, QWidget* parent) : QSlider(orientation, parent)
{
    setFocusPolicy(Qt::StrongFocus); // not by the wheel
}

void KVSlider::mousePressEvent(QMouseEvent* event)
{
    const QRect handle = HandleRect();
    if (event->button() != Qt::LeftButton || event->buttons() != Qt::LeftButton ||
        handle.contains(event->pos())) {
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

void KVSlider::wheelEvent(QWheelEvent* event)
{
    if (hasFocus())
        QSlider::wheelEvent(event);
    else
        event->ignore();
}

QRect KVSlider::HandleRect() const
{
    QStyleOptionSlider option;
    initStyleOption(&option);
    return style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this);
}
