#include "ShowSwatch.h"

#include "image/ColorToRgba.h"

#include <QAbstractButton>
#include <QPainter>

#include <array>

namespace {

constexpr std::array<int, 2> PixelRatios{1, 2};
constexpr double LineOpacity = 0.4;

QPixmap Swatch(const QSize& size, int lineWidth, const QColor& color, const QColor& line)
{
    QPixmap pixmap(size);
    pixmap.fill(color);
    QPainter painter(&pixmap);
    painter.setOpacity(LineOpacity);
    const QRect inside = pixmap.rect().adjusted(lineWidth, lineWidth, -lineWidth, -lineWidth);
    painter.setClipRegion(QRegion(pixmap.rect()) - inside);
    painter.fillRect(pixmap.rect(), line);
    return pixmap;
}

} // namespace

void ShowSwatch(QAbstractButton* button, const QColor& color)
{
    QIcon icon;
    const QSize size = button->iconSize();
    if (!size.isEmpty())
        for (const int ratio : PixelRatios)
            icon.addPixmap(Swatch(size * ratio, ratio, QColor::fromRgba(ColorToRgba(color)),
                                  button->palette().color(QPalette::ButtonText)));
    button->setIcon(icon);
}
