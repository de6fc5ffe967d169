#include "gui/YDAngleSlider.h"

#include "gui/ControlLook.h"

#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

constexpr int FullTurn = 360; ///< degrees
constexpr double HalfTurn = 180;
constexpr int QuarterTurn = 90; ///< degrees
constexpr int WheelNotch = 120; ///< eighths of a degree of the wheel
constexpr double Pi = 3.14159265358979323846;

// Screen units.
constexpr int UsualDiameter = 48;
constexpr int SmallestDiameter = 32;
constexpr double TickLength = 4.0;
constexpr double NeedleWidth = 2.0;
constexpr double HubRadius = 2.5;
constexpr double FocusLine = 2.0;

constexpr double LineOpacity = 0.5;

double Radians(double degrees) { return degrees * Pi / HalfTurn; }

QPointF Towards(const QPointF& center, double degrees, double distance)
{
    return center + distance * QPointF(std::cos(Radians(degrees)), std::sin(Radians(degrees)));
}

/// How far a key turns the needle; nothing for a key that does not.
std::optional<int> TurnOf(int key)
{
    switch (key) {
    case Qt::Key_Left:
    case Qt::Key_Down:
        return -1;
    case Qt::Key_Right:
    case Qt::Key_Up:
        return 1;
    case Qt::Key_PageDown:
        return -YDAngleSlider::PageStep;
    case Qt::Key_PageUp:
        return YDAngleSlider::PageStep;
    default:
        return std::nullopt;
    }
}

} // namespace

YDAngleSlider::YDAngleSlider(QWidget* parent) : QDial(parent)
{
    setRange(1 - FullTurn / 2, FullTurn / 2);
    setPageStep(PageStep);
    setFocusPolicy(Qt::StrongFocus); // not by the wheel
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize YDAngleSlider::sizeHint() const { return {UsualDiameter, UsualDiameter}; }

QSize YDAngleSlider::minimumSizeHint() const { return {SmallestDiameter, SmallestDiameter}; }

void YDAngleSlider::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (!isEnabled())
        painter.setOpacity(DisabledOpacity);
    const Face face = DialFace();
    DrawFace(painter, face);
    DrawNeedle(painter, face);
}

void YDAngleSlider::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    setSliderDown(true);
    TurnTo(*event);
}

void YDAngleSlider::mouseMoveEvent(QMouseEvent* event)
{
    if (isSliderDown() && (event->buttons() & Qt::LeftButton)) // another window may have had the release
        TurnTo(*event);
    else
        event->ignore();
}

void YDAngleSlider::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        setSliderDown(false);
    else
        event->ignore();
}

void YDAngleSlider::wheelEvent(QWheelEvent* event)
{
    if (!hasFocus()) {
        event->ignore();
        return;
    }
    event->accept();
    const QPoint turned = event->angleDelta();
    m_wheelRemainder += turned.y() != 0 ? turned.y() : turned.x();
    const int notches = m_wheelRemainder / WheelNotch;
    m_wheelRemainder %= WheelNotch;
    const bool isPage = event->modifiers() & (Qt::ControlModifier | Qt::ShiftModifier);
    TurnBy(notches * (isPage ? pageStep() : singleStep()));
}

void YDAngleSlider::keyPressEvent(QKeyEvent* event)
{
    const auto turn = TurnOf(event->key());
    const bool isPlain = !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
    if (turn && isPlain)
        TurnBy(*turn);
    else
        QDial::keyPressEvent(event);
}

void YDAngleSlider::focusInEvent(QFocusEvent* event)
{
    m_wheelRemainder = 0;
    QDial::focusInEvent(event);
}

/// A circle inside that leaves room for its line.
YDAngleSlider::Face YDAngleSlider::DialFace() const
{
    const int side = std::min(width(), height());
    return {QRectF(rect()).center(), side / 2.0 - FocusLine};
}

/// The middle of the dial is no direction. The mouse is at the middle of the unit that it is told to be at.
void YDAngleSlider::TurnTo(const QMouseEvent& event)
{
    const QPointF arm = event.localPos() + QPointF(0.5, 0.5) - DialFace().center;
    if (arm.isNull())
        return;
    const double degrees = std::atan2(arm.y(), arm.x()) * HalfTurn / Pi;
    const int step = event.modifiers() & Qt::ShiftModifier ? pageStep() : 1;
    setSliderPosition(InRange(std::lround(degrees / step) * step));
}

void YDAngleSlider::TurnBy(int degrees)
{
    if (degrees != 0)
        setValue(InRange(qint64(value()) + degrees));
}

/// The angle or its equal by full turns if the range has it, else the nearest end of the range.
int YDAngleSlider::InRange(qint64 angle) const
{
    const qint64 turned = angle < minimum() ? angle + FullTurn : angle > maximum() ? angle - FullTurn : angle;
    const bool isThere = turned >= minimum() && turned <= maximum();
    return int(std::clamp<qint64>(isThere ? turned : angle, minimum(), maximum()));
}

void YDAngleSlider::DrawFace(QPainter& painter, const Face& face) const
{
    QColor line = palette().color(QPalette::WindowText);
    line.setAlphaF(LineOpacity);
    painter.setPen(hasFocus() ? QPen(palette().color(QPalette::Highlight), FocusLine) : QPen(line, 1.0));
    painter.setBrush(palette().base());
    painter.drawEllipse(face.center, face.radius, face.radius);
    painter.setPen(QPen(line, 1.0));
    for (int degrees = 0; degrees < FullTurn; degrees += QuarterTurn)
        painter.drawLine(Towards(face.center, degrees, face.radius - TickLength),
                         Towards(face.center, degrees, face.radius));
}

void YDAngleSlider::DrawNeedle(QPainter& painter, const Face& face) const
{
    const QColor ink = palette().color(QPalette::Text);
    QPen pen(ink, NeedleWidth);
    pen.setCapStyle(Qt::RoundCap);
    painter.setPen(pen);
    painter.drawLine(face.center,
                     Towards(face.center, sliderPosition(), face.radius - TickLength - NeedleWidth));
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink);
    painter.drawEllipse(face.center, HubRadius, HubRadius);
}
