#include "gui/ZoomView.h"

#include "gui/ZoomSteps.h"

#include <QApplication>
#include <QGestureEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPinchGesture>
#include <QScrollBar>

#include <algorithm>
#include <cmath>

namespace {

constexpr int FitMargin = 12;  ///< view units around a scene that fits
constexpr int WheelStep = 120; ///< eighths of a degree: one notch of a common mouse

} // namespace

ZoomView::ZoomView(QWidget* parent) : QGraphicsView(parent)
{
    setTransformationAnchor(NoAnchor); // ApplyZoom() keeps its own
    setResizeAnchor(AnchorViewCenter);
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setMouseTracking(true); // for the cursor
    viewport()->grabGesture(Qt::PinchGesture);
    connect(this, &QGraphicsView::rubberBandChanged, this, [this] { UpdateCursor(); });
}

void ZoomView::SetZoom(double zoom)
{
    m_isFit = false;
    ApplyZoom(zoom, QRectF(viewport()->rect()).center());
}

void ZoomView::SetOverrideCursor(const QCursor& cursor)
{
    if (cursor.shape() == Qt::ArrowCursor)
        m_overrideCursor.reset();
    else
        m_overrideCursor = cursor;
    UpdateCursor();
}

void ZoomView::ZoomIn() { SetZoom(ZoomSteps::Above(m_zoom)); }

void ZoomView::ZoomOut() { SetZoom(ZoomSteps::Below(m_zoom)); }

void ZoomView::ZoomToFit()
{
    m_isFit = true;
    ApplyFit();
}

void ZoomView::ZoomActual() { SetZoom(1.0); }

QCursor ZoomView::CursorAt(const QPoint& /*mouse*/) const { return Qt::ArrowCursor; }

void ZoomView::UpdateCursor() { UpdateCursor(viewport()->mapFromGlobal(QCursor::pos())); }

void ZoomView::UpdateCursor(const QPoint& mouse)
{
    if (m_overrideCursor)
        viewport()->setCursor(*m_overrideCursor);
    else if (IsPanning())
        viewport()->setCursor(Qt::ClosedHandCursor);
    else if (m_isSpaceHeld)
        viewport()->setCursor(Qt::OpenHandCursor);
    else
        viewport()->setCursor(CursorAt(mouse));
}

bool ZoomView::IsPanPress(const QMouseEvent& event) const
{
    return event.button() == Qt::MiddleButton || (event.button() == Qt::LeftButton && m_isSpaceHeld);
}

double ZoomView::Scale() const { return m_zoom / m_deviceRatio; }

bool ZoomView::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::Gesture && ZoomWithPinch(*static_cast<QGestureEvent*>(event)))
        return true;
    if (event->type() == QEvent::NativeGesture && ZoomWithPinch(*static_cast<QNativeGestureEvent*>(event)))
        return true;
    return QGraphicsView::viewportEvent(event);
}

void ZoomView::paintEvent(QPaintEvent* event)
{
    if (m_deviceRatio != devicePixelRatioF()) // the window moved to another screen; painting must not scroll
        QMetaObject::invokeMethod(this, &ZoomView::FollowDeviceRatio, Qt::QueuedConnection);
    QGraphicsView::paintEvent(event);
}

void ZoomView::resizeEvent(QResizeEvent* event)
{
    QGraphicsView::resizeEvent(event);
    FollowDeviceRatio();
}

void ZoomView::hideEvent(QHideEvent* event)
{
    QGraphicsView::hideEvent(event);
    EndPan();
}

void ZoomView::mousePressEvent(QMouseEvent* event)
{
    if (!IsPanning() && IsPanPress(*event))
        BeginPan(*event);
    else if (!IsPanning())
        QGraphicsView::mousePressEvent(event);
}

void ZoomView::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (!IsPanning() && IsPanPress(*event))
        BeginPan(*event);
    else if (!IsPanning())
        QGraphicsView::mouseDoubleClickEvent(event);
}

void ZoomView::mouseMoveEvent(QMouseEvent* event)
{
    if (IsPanning() && !(event->buttons() & m_panButton))
        EndPan(); // the release went elsewhere, to a dialog perhaps
    if (IsPanning()) {
        PanTo(event->pos());
        return;
    }
    UpdateCursor(event->pos());
    QGraphicsView::mouseMoveEvent(event);
}

void ZoomView::mouseReleaseEvent(QMouseEvent* event)
{
    if (!IsPanning()) {
        QGraphicsView::mouseReleaseEvent(event);
    } else if (event->button() == m_panButton) {
        PanTo(event->pos());
        EndPan();
    }
}

void ZoomView::wheelEvent(QWheelEvent* event)
{
    if (event->modifiers() & Qt::ControlModifier)
        ZoomWithWheel(*event);
    else if (event->modifiers() & Qt::ShiftModifier)
        ScrollSideways(*event);
    else
        QGraphicsView::wheelEvent(event);
}

void ZoomView::keyPressEvent(QKeyEvent* event)
{
    const bool isPlain = !(event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier));
    if (isPlain && event->key() == Qt::Key_Space) {
        m_isSpaceHeld = true;
        UpdateCursor();
    } else if (!isPlain || !ZoomWithKey(event->key())) {
        QGraphicsView::keyPressEvent(event);
    }
}

void ZoomView::keyReleaseEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Space && !event->isAutoRepeat()) {
        m_isSpaceHeld = false;
        UpdateCursor();
    }
    QGraphicsView::keyReleaseEvent(event);
}

void ZoomView::focusOutEvent(QFocusEvent* event)
{
    QGraphicsView::focusOutEvent(event);
    m_isSpaceHeld = false; // its release will go elsewhere
    UpdateCursor();
}

/// Keeps the scene point under `anchor`, in view coordinates, where it is as far as scrolling allows.
void ZoomView::ApplyZoom(double zoom, const QPointF& anchor)
{
    const QPointF point = ToScene(anchor);
    const double oldZoom = m_zoom;
    m_zoom = ZoomSteps::Bounded(zoom);
    m_deviceRatio = devicePixelRatioF();
    setTransform(QTransform::fromScale(Scale(), Scale()));
    const QPointF shift = ToView(point) - anchor;
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() + qRound(shift.x()));
    verticalScrollBar()->setValue(verticalScrollBar()->value() + qRound(shift.y()));
    viewport()->update();
    if (m_zoom != oldZoom)
        emit ZoomChanged(m_zoom);
}

void ZoomView::ApplyFit()
{
    const QSizeF scene = sceneRect().size();
    const QSize room = maximumViewportSize() - QSize(2 * FitMargin, 2 * FitMargin);
    if (scene.isEmpty() || room.isEmpty())
        return;
    const double scale = std::min(room.width() / scene.width(), room.height() / scene.height());
    ApplyZoom(scale * devicePixelRatioF(), QRectF(viewport()->rect()).center());
}

void ZoomView::FollowDeviceRatio()
{
    if (m_isFit)
        ApplyFit();
    else if (m_deviceRatio != devicePixelRatioF())
        ApplyZoom(m_zoom, QRectF(viewport()->rect()).center());
}

void ZoomView::ZoomWithWheel(const QWheelEvent& event)
{
    m_isFit = false;
    m_wheelRemainder += event.angleDelta().y();
    double zoom = m_zoom;
    for (; m_wheelRemainder >= WheelStep; m_wheelRemainder -= WheelStep)
        zoom = ZoomSteps::Above(zoom);
    for (; m_wheelRemainder <= -WheelStep; m_wheelRemainder += WheelStep)
        zoom = ZoomSteps::Below(zoom);
    if (zoom != m_zoom)
        ApplyZoom(zoom, event.position());
}

void ZoomView::ScrollSideways(const QWheelEvent& event)
{
    // Some systems turn the wheel's axis themselves while Shift is held.
    const QPoint angle = event.angleDelta();
    const int delta = angle.y() != 0 ? angle.y() : angle.x();
    QScrollBar* const bar = horizontalScrollBar();
    bar->setValue(bar->value() - delta * QApplication::wheelScrollLines() * bar->singleStep() / WheelStep);
}

bool ZoomView::ZoomWithPinch(const QGestureEvent& event)
{
    const auto* const pinch = static_cast<const QPinchGesture*>(event.gesture(Qt::PinchGesture));
    if (!pinch)
        return false;
    if (pinch->changeFlags() & QPinchGesture::ScaleFactorChanged) {
        m_isFit = false;
        ApplyZoom(m_zoom * pinch->scaleFactor(), viewport()->mapFromGlobal(pinch->hotSpot().toPoint()));
    }
    return true;
}

bool ZoomView::ZoomWithPinch(const QNativeGestureEvent& event)
{
    if (event.gestureType() != Qt::ZoomNativeGesture)
        return false;
    m_isFit = false;
    ApplyZoom(m_zoom * (1 + event.value()), event.localPos());
    return true;
}

bool ZoomView::ZoomWithKey(int key)
{
    switch (key) {
    case Qt::Key_Plus:
    case Qt::Key_Equal: // the same key without Shift on many keyboards
        ZoomIn();
        return true;
    case Qt::Key_Minus:
        ZoomOut();
        return true;
    case Qt::Key_0:
        ZoomToFit();
        return true;
    case Qt::Key_1:
        ZoomActual();
        return true;
    default:
        return false;
    }
}

void ZoomView::BeginPan(const QMouseEvent& event)
{
    m_panButton = event.button();
    m_panPosition = event.pos();
    UpdateCursor(event.pos());
}

void ZoomView::PanTo(const QPoint& mouse)
{
    const QPoint shift = mouse - m_panPosition;
    m_panPosition = mouse;
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() - shift.x());
    verticalScrollBar()->setValue(verticalScrollBar()->value() - shift.y());
}

void ZoomView::EndPan()
{
    m_panButton = Qt::NoButton;
    UpdateCursor();
}
