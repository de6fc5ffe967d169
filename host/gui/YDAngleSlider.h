#pragma once

#include <QDial>

/// A dial for an angle in degrees, -179..180 at first.
///
/// Its needle points to the right at 0 and turns clockwise as the angle grows, as a text turned by
/// QPainter::rotate() does. A press or a drag turns it to the mouse, with Shift in steps of PageStep. Arrows
/// and wheel turn by one, the page keys and the wheel with Control or Shift by PageStep, on round the circle
/// where the range goes all round; Home and End go to the range's ends. The wheel turns it only while it has
/// the focus.
class YDAngleSlider : public QDial
{
    Q_OBJECT

public:
    static constexpr int PageStep = 15; ///< degrees

    explicit YDAngleSlider(QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;

private:
    struct Face
    {
        QPointF center;
        double radius;
    };

    Face DialFace() const;
    void TurnTo(const QMouseEvent& event);
    void TurnBy(int degrees);
    int InRange(qint64 angle) const;
    void DrawFace(QPainter& painter, const Face& face) const;
    void DrawNeedle(QPainter& painter, const Face& face) const;

    int m_wheelRemainder = 0; ///< eighths of a degree that make no step yet
};
