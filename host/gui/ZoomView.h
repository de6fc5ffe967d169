#pragma once

#include <QCursor>
#include <QGraphicsView>

#include <optional>

class QGestureEvent;
class QNativeGestureEvent;

/// A graphics view that zooms and pans over its scene rectangle.
///
/// The wheel scrolls, with Shift sideways; with Ctrl it zooms about the mouse, as pinching does. The
/// middle button, and the left one while space is held, pan. The keys +, - and 0 zoom in, out and to fit,
/// 1 to the actual size; arrows and page keys scroll. At 100 % a scene unit is a device pixel, on a screen
/// with two device pixels to the view unit as well.
class ZoomView : public QGraphicsView
{
    Q_OBJECT

public:
    explicit ZoomView(QWidget* parent = nullptr);

    /// Device pixels per scene unit, 0.01 to 64.
    double Zoom() const { return m_zoom; }
    /// Zooms about the middle of the view; a factor out of range is bounded.
    void SetZoom(double zoom);
    /// Whether the zoom follows the view's size.
    bool IsZoomedToFit() const { return m_isFit; }

    /// A cursor for the whole view, before those of panning and of the tools; an arrow gives them back.
    void SetOverrideCursor(const QCursor& cursor);

public slots:
    void ZoomIn();
    void ZoomOut();
    /// Shows the whole scene rectangle as large as it fits, and goes on so when the view's size or the
    /// scene rectangle changes, until another zoom is chosen.
    void ZoomToFit();
    void ZoomActual();

signals:
    void ZoomChanged(double zoom);

protected:
    /// The cursor over a place of the viewport where nothing overrides it and nobody pans.
    virtual QCursor CursorAt(const QPoint& mouse) const;
    /// To be called when CursorAt() may answer otherwise.
    void UpdateCursor();
    void UpdateCursor(const QPoint& mouse);
    bool HasOverrideCursor() const { return m_overrideCursor.has_value(); }

    bool IsPanning() const { return m_panButton != Qt::NoButton; }
    /// Whether a press begins to pan.
    bool IsPanPress(const QMouseEvent& event) const;

    /// View units per scene unit.
    double Scale() const;
    QPointF ToView(const QPointF& scenePoint) const { return viewportTransform().map(scenePoint); }
    QPointF ToScene(const QPointF& viewPoint) const { return viewportTransform().inverted().map(viewPoint); }

    bool viewportEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void ApplyZoom(double zoom, const QPointF& anchor);
    void ApplyFit();
    void FollowDeviceRatio();
    void ZoomWithWheel(const QWheelEvent& event);
    void ScrollSideways(const QWheelEvent& event);
    bool ZoomWithPinch(const QGestureEvent& event);
    bool ZoomWithPinch(const QNativeGestureEvent& event);
    bool ZoomWithKey(int key);
    void BeginPan(const QMouseEvent& event);
    void PanTo(const QPoint& mouse);
    void EndPan();

    double m_zoom = 1.0;
    double m_deviceRatio = 1.0; ///< what the transformation was made for
    bool m_isFit = true;
    int m_wheelRemainder = 0;                   ///< eighths of a degree that make no step yet
    Qt::MouseButton m_panButton = Qt::NoButton; ///< the one that pans; none when nobody pans
    QPoint m_panPosition;
    bool m_isSpaceHeld = false;
    std::optional<QCursor> m_overrideCursor;
};
