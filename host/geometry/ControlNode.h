#pragma once

#include <QGraphicsObject>

/// A handle of a drawing in a graphics scene: a small disc around the item's position.
///
/// It is of the same size on the screen at any scale of the view, and a bit larger to the mouse than to the
/// eye.
/// It tells of the buttons pressed and released on it and moves nothing by itself.
class ControlNode : public QGraphicsObject
{
    Q_OBJECT

public:
    enum
    {
        Type = UserType + 1
    };

    /// Everything that is drawn is as near to the item's position, in units of the view.
    static constexpr int Reach = 8;

    explicit ControlNode(QGraphicsItem* parent = nullptr);

    /// The one that keys and buttons act upon looks sunken.
    void setSunken(bool sunken);
    bool isSunken() const { return m_isSunken; }

    int type() const override { return Type; }
    QRectF boundingRect() const override;
    /// What the mouse can grab.
    QPainterPath shape() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

signals:
    void mousePressed(ControlNode* node, Qt::MouseButton button);
    void mouseReleased(ControlNode* node, Qt::MouseButton button);

protected:
    void mousePressEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* event) override;
    void hoverEnterEvent(QGraphicsSceneHoverEvent* event) override;
    void hoverLeaveEvent(QGraphicsSceneHoverEvent* event) override;

private:
    bool m_isSunken = false;
    bool m_isHovered = false;
};
