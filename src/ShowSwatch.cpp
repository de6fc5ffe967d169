#include "ShowSwatch.h"

#include "image/ColorToRgba.h"

#include <QAbstractButton>
#include <QPixmap>

void ShowSwatch(QAbstractButton* button, const QColor& color)
{
    QPixmap pixmap(button->iconSize());
    pixmap.fill(QColor::fromRgba(ColorToRgba(color)));
    button->setIcon(pixmap);
}
