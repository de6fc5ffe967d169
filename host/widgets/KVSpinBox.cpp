#include "widgets/KVSpinBox.h"

#include <QWheelEvent>

KVSpinBox::KVSpinBox(QWidget* parent) : QSpinBox(parent)
{
    setFocusPolicy(Qt::StrongFocus); // not by the wheel
}

void KVSpinBox::wheelEvent(QWheelEvent* event)
{
    if (hasFocus())
        QSpinBox::wheelEvent(event);
    else
        event->ignore();
}
