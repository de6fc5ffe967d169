#pragma once

#include "geometry/ControlNode.h"

#include <QGraphicsScene>
#include <QVector>

class QGraphicsPathItem;

/// What the curve editor shows: a grid of quarters, the curve, and a node for each of its points.
///
/// Scene coordinates are levels: x the input, 255 - y the output. The scene knows nothing of curves; nodes
/// are numbered as the points that they stand for.
class YDCurveScene : public QGraphicsScene
{
    Q_OBJECT

public:
    explicit YDCurveScene(QObject* parent);

    /// Lines at the quarters of the levels.
    void AddGrid();

    void SetCurve(const QPainterPath& curve);
    /// Whether `position` is on the curve or next to it.
    bool IsOnCurve(const QPointF& position) const;

    /// Nodes from `index` on move up by one.
    void InsertNode(int index, const QPoint& position);
    void MoveNode(int index, const QPoint& position);
    void RemoveNode(int index);
    void RemoveAllNodes();
    int NodeCount() const { return m_nodes.size(); }
    /// -1 for what is none of the nodes.
    int IndexOf(const ControlNode* node) const;

    /// The node that is edited, the only sunken one; -1 for none.
    int CurrentIndex() const { return IndexOf(m_current); }
    void SetCurrentIndex(int index);

signals:
    void NodePressed(ControlNode* node, Qt::MouseButton button);
    void NodeReleased(ControlNode* node, Qt::MouseButton button);

private:
    QGraphicsPathItem* const m_curve;
    QVector<ControlNode*> m_nodes;
    ControlNode* m_current = nullptr;
};
