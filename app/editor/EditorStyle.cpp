#include "editor/EditorStyle.h"

#include "editor/ToolIcons.h"

#include <QPainter>
#include <QStyleOption>

namespace {

constexpr int DarkLightness = 128;
constexpr int OutlineAlpha = 110;
constexpr double CrossShare = 0.17; ///< half the cross's width, of the tab button's

void DrawCloseMark(const QStyleOption& option, QPainter& painter)
{
    const bool isHovered = option.state & QStyle::State_MouseOver;
    QColor ink = option.palette.color(QPalette::WindowText);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF area = QRectF(option.rect);
    if (isHovered) {
        QColor ground = ink;
        ground.setAlphaF(0.15);
        painter.setPen(Qt::NoPen);
        painter.setBrush(ground);
        painter.drawRoundedRect(area.adjusted(1, 1, -1, -1), 3, 3);
    } else {
        ink.setAlphaF(0.7);
    }
    const double reach = area.width() * CrossShare;
    const QPointF middle = area.center();
    painter.setPen(QPen(ink, 1.5, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(middle + QPointF(-reach, -reach), middle + QPointF(reach, reach));
    painter.drawLine(middle + QPointF(reach, -reach), middle + QPointF(-reach, reach));
    painter.restore();
}

/// Fusion's outlines are darker than their ground, which on a dark one is next to nothing.
void DrawOutline(const QStyleOption& option, QPainter& painter, bool isRound)
{
    QColor ink = option.palette.color(QPalette::WindowText);
    ink.setAlpha(OutlineAlpha);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(ink);
    painter.setBrush(Qt::NoBrush);
    const QRectF area = QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5);
    const double radius = isRound ? area.width() / 2 : 1.5;
    painter.drawRoundedRect(area, radius, radius);
    painter.restore();
}

bool IsDark(const QPalette& palette) { return palette.color(QPalette::Window).lightness() < DarkLightness; }

} // namespace

QStyle* EditorStyle::Create(const QString& baseStyle) { return new EditorStyle(baseStyle); }

EditorStyle::EditorStyle(const QString& baseStyle) : QProxyStyle(baseStyle) {}

int EditorStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                           QStyleHintReturn* answer) const
{
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons)
        return 0;
    return QProxyStyle::styleHint(hint, option, widget, answer);
}

void EditorStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                const QWidget* widget) const
{
    if (element == PE_IndicatorTabClose) {
        DrawCloseMark(*option, *painter);
        return;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    const bool isRound = element == PE_IndicatorRadioButton;
    if ((isRound || element == PE_IndicatorCheckBox) && IsDark(option->palette))
        DrawOutline(*option, *painter, isRound);
}

QIcon EditorStyle::standardIcon(StandardPixmap pixmap, const QStyleOption* option,
                                const QWidget* widget) const
{
    if (pixmap == SP_TitleBarCloseButton || pixmap == SP_DockWidgetCloseButton)
        return ToolIcons::Icon(ToolIcons::Kind::Close);
    if (pixmap == SP_TitleBarNormalButton)
        return ToolIcons::Icon(ToolIcons::Kind::Detach);
    return QProxyStyle::standardIcon(pixmap, option, widget);
}
