#include "geometry/ControlNode.h"

#include <QCursor>
#include <QGraphicsSceneMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QStyleOption>

namespace {

// Radii in units of the view, whatever its scale.
constexpr double NodeRadius = 3.75;
constexpr double HoveredRadius = 4.75;
constexpr double FocusRadius = 6.75;
constexpr double GrabRadius = 5.5; ///< a larger one would cover places next to the node that have a use
constexpr double OutlineWidth = 1.25;
constexpr double HaloWidth = 3.25; ///< sets the outline off from whatever is behind the node

const QColor Outline(40, 40, 40);
const QColor Halo(255, 255, 255, 150);

QRectF Disc(double radius) { return {-radius, -radius, 2 * radius, 2 * radius}; }

} // namespace

ControlNode::ControlNode(QGraphicsItem* parent) : QGraphicsObject(parent)
{
    setFlag(ItemIgnoresTransformations);
    setFlag(ItemIsFocusable);
    setAcceptHoverEvents(true);
    setCursor(Qt::SizeAllCursor);
}

void ControlNode::setSunken(bool sunken)
{
    if (sunken == m_isSunken)
        return;
    m_isSunken = sunken;
    update();
}

QRectF ControlNode::boundingRect() const { return Disc(Reach); }

QPainterPath ControlNode::shape() const
{
    QPainterPath path;
    path.addEllipse(Disc(GrabRadius));
    return path;
}

void ControlNode::paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* /*widget*/)
{
    const QColor highlight = option->palette.color(QPalette::Highlight);
    const QRectF disc = Disc(m_isHovered ? HoveredRadius : NodeRadius);
    painter->setRenderHint(QPainter::Antialiasing);
    if (option->state & QStyle::State_HasFocus) {
        painter->setPen(QPen(highlight, OutlineWidth));
        painter->setBrush(Qt::NoBrush);
        painter->drawEllipse(Disc(FocusRadius));
    }
    painter->setPen(QPen(Halo, HaloWidth));
    painter->setBrush(Qt::NoBrush);
    painter->drawEllipse(disc);
    painter->setPen(QPen(Outline, OutlineWidth));
    painter->setBrush(m_isSunken ? highlight : QColor(Qt::white));
    painter->drawEllipse(disc);
}

void ControlNode::mousePressEvent(QGraphicsSceneMouseEvent* event)
{
    event->accept(); // the release is to come here too
    emit mousePressed(this, event->button());
}

void ControlNode::mouseReleaseEvent(QGraphicsSceneMouseEvent* event)
{
    event->accept();
    emit mouseReleased(this, event->button());
}

void ControlNode::hoverEnterEvent(QGraphicsSceneHoverEvent* /*event*/)
{
    m_isHovered = true;
    update();
}

void ControlNode::hoverLeaveEvent(QGraphicsSceneHoverEvent* /*event*/)
{
    m_isHovered = false;
    update();
}
