#pragma once

#include <QSlider>

class QStyleOptionSlider;

/// A slider for pages that scroll and for values that are picked by eye.
///
/// The wheel moves it only while it has the focus; otherwise the page around it scrolls. A left press
/// beside the handle brings the handle there and goes on as a drag, with the signals of a drag. A double
/// click is two presses and nothing more. Under a style sheet that gives the groove a look and forgets the
/// handle, which then has no size in Qt, the slider keeps the handle of the application's style,
/// and both are dimmed while it is disabled.
class KVSlider : public QSlider
{
    Q_OBJECT

public:
    explicit KVSlider(QWidget* parent = nullptr);
    explicit KVSlider(Qt::Orientation orientation, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    QStyleOptionSlider Option() const;
    QRect StyleHandle() const;
    bool LacksHandle() const { return StyleHandle().isEmpty(); }
    QRect OwnHandle() const;
    int Along(const QPoint& point) const { return orientation() == Qt::Horizontal ? point.x() : point.y(); }
    void DrawWithOwnHandle(QPainter& painter);
    void BeginOwnDrag(const QMouseEvent& event);
    void DragOwnHandleTo(const QPoint& mouse);

    bool m_isOwnDrag = false;
    int m_grabOffset = 0; ///< from the middle of the handle to the mouse that drags it
};
