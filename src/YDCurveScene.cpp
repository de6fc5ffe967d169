#include "YDCurveScene.h"

#include <QGraphicsPathItem>
#include <QPainterPathStroker>
#include <QPen>

namespace {

constexpr double Side = 255.0;
constexpr double StrokeWidth = 4.0; ///< levels; a press inside of it is on the curve

const QColor GridColor(128, 128, 128, 80);

enum Layer
{
    GridLayer,
    CurveLayer,
    NodeLayer
};

QPen CosmeticPen(const QBrush& brush) { return {brush, 0.0, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin}; }

} // namespace

YDCurveScene::YDCurveScene(QObject* parent)
    : QGraphicsScene(0, 0, Side, Side, parent), m_curve(addPath(QPainterPath(), CosmeticPen(Qt::gray)))
{
    // There are few items, and they move all the time.
    setItemIndexMethod(NoIndex);
    m_curve->setZValue(CurveLayer);
}

void YDCurveScene::AddGrid()
{
    QPainterPath grid;
    for (int quarter = 1; quarter < 4; ++quarter) {
        const double at = Side * quarter / 4;
        grid.moveTo(0, at);
        grid.lineTo(Side, at);
        grid.moveTo(at, 0);
        grid.lineTo(at, Side);
    }
    addPath(grid, CosmeticPen(GridColor))->setZValue(GridLayer);
}

void YDCurveScene::SetCurve(const QPainterPath& curve) { m_curve->setPath(curve); }

bool YDCurveScene::IsOnCurve(const QPointF& position) const
{
    QPainterPathStroker stroker;
    stroker.setWidth(StrokeWidth);
    return stroker.createStroke(m_curve->path()).contains(position);
}

void YDCurveScene::InsertNode(int index, const QPoint& position)
{
    auto* const node = new ControlNode;
    node->setPos(position);
    node->setZValue(NodeLayer);
    node->setFlag(QGraphicsItem::ItemIsMovable, false);
    node->setFlag(QGraphicsItem::ItemIsFocusable);
    addItem(node);
    connect(node, &ControlNode::mousePressed, this, &YDCurveScene::NodePressed);
    connect(node, &ControlNode::mouseReleased, this, &YDCurveScene::NodeReleased);
    m_nodes.insert(index, node);
}

void YDCurveScene::MoveNode(int index, const QPoint& position) { m_nodes[index]->setPos(position); }

void YDCurveScene::RemoveNode(int index)
{
    ControlNode* const node = m_nodes.takeAt(index);
    if (node == m_current)
        m_current = nullptr;
    delete node;
}

void YDCurveScene::RemoveAllNodes()
{
    m_current = nullptr;
    QVector<ControlNode*> nodes;
    nodes.swap(m_nodes); // deleting one may move the focus, and somebody may ask for a node then
    qDeleteAll(nodes);
}

int YDCurveScene::IndexOf(const ControlNode* node) const
{
    return node ? m_nodes.indexOf(const_cast<ControlNode*>(node)) : -1;
}

void YDCurveScene::SetCurrentIndex(int index)
{
    ControlNode* const node = index >= 0 && index < m_nodes.size() ? m_nodes[index] : nullptr;
    if (node == m_current)
        return;
    if (m_current)
        m_current->setSunken(false);
    m_current = node;
    if (m_current)
        m_current->setSunken(true);
}
