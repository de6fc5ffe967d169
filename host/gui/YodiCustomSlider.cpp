#include "gui/YodiCustomSlider.h"

#include "gui/ControlLook.h"
#include "gui/YodiCustomSliderAccessible.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLocale>
#include <QPainter>
#include <QToolTip>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <optional>

namespace {

// Screen units.
constexpr double HandleHalfWidth = 6.0;
constexpr double HandleHeight = 11.0;
constexpr double HandleTop = 3.0;
constexpr double ScaleThickness = 1.0;
constexpr int UsualHeight = 16;
constexpr int UsualScale = 256;
constexpr int SmallestScale = 64;
constexpr double FocusLine = 2.0;

constexpr double LineOpacity = 0.5;
constexpr double HoverOpacity = 0.35;

constexpr int PageStep = 10;
constexpr int WheelNotch = 120; ///< eighths of a degree
constexpr qint64 Farthest = qint64(1) << 40;

/// `x` moved to the middle of a pixel of the screen, so that what is drawn there is symmetric.
double MiddleOfPixel(double x, double pixelRatio) { return (std::floor(x * pixelRatio) + 0.5) / pixelRatio; }

/// How far a key moves a handle; nothing for a key that moves none.
std::optional<qint64> DistanceOf(int key)
{
    switch (key) {
    case Qt::Key_Left:
    case Qt::Key_Down:
        return -1;
    case Qt::Key_Right:
    case Qt::Key_Up:
        return 1;
    case Qt::Key_PageDown:
        return -PageStep;
    case Qt::Key_PageUp:
        return PageStep;
    case Qt::Key_Home:
        return -Farthest;
    case Qt::Key_End:
        return Farthest;
    default:
        return std::nullopt;
    }
}

} // namespace

YodiCustomSlider::YodiCustomSlider(QWidget* parent) : QWidget(parent)
{
    YodiCustomSliderAccessible::InstallFactory();
    setFocusPolicy(Qt::StrongFocus); // not by the wheel
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setMouseTracking(true);
}

void YodiCustomSlider::SetRange(int minimum, int maximum)
{
    m_minimum = minimum;
    m_maximum = std::max(minimum, maximum);
    for (uint handle = 0; handle < ControlCount(); ++handle)
        ChangeValue(handle, Value(handle));
    update();
}

uint YodiCustomSlider::AddControl(int minimum, int maximum, int value)
{
    Control control{minimum, maximum, value, palette().button(), QString()};
    control.value = Bounded(control, value);
    m_controls.push_back(control);
    update();
    return ControlCount() - 1;
}

void YodiCustomSlider::SetControlMin(uint handle, int minimum)
{
    if (!IsControl(handle))
        return;
    m_controls[handle].minimum = minimum;
    ChangeValue(handle, Value(handle));
}

void YodiCustomSlider::SetControlMax(uint handle, int maximum)
{
    if (!IsControl(handle))
        return;
    m_controls[handle].maximum = maximum;
    ChangeValue(handle, Value(handle));
}

int YodiCustomSlider::LowestValue(uint handle) const
{
    return IsControl(handle) ? Bounded(m_controls[handle], -Farthest) : 0;
}

int YodiCustomSlider::HighestValue(uint handle) const
{
    return IsControl(handle) ? Bounded(m_controls[handle], Farthest) : 0;
}

void YodiCustomSlider::ChangeValue(uint handle, int value)
{
    if (!IsControl(handle))
        return;
    const int bounded = Bounded(m_controls[handle], value);
    if (bounded == m_controls[handle].value)
        return;
    m_controls[handle].value = bounded;
    update();
    QAccessibleValueChangeEvent change(this, bounded);
    change.setChild(int(handle));
    QAccessible::updateAccessibility(&change);
    emit ValueChanged(handle, bounded);
}

int YodiCustomSlider::Value(uint handle) const { return IsControl(handle) ? m_controls[handle].value : 0; }

void YodiCustomSlider::SetBrush(uint handle, const QBrush& brush)
{
    if (!IsControl(handle))
        return;
    m_controls[handle].brush = brush;
    update();
}

QBrush YodiCustomSlider::Brush(uint handle) const
{
    return IsControl(handle) ? m_controls[handle].brush : QBrush();
}

void YodiCustomSlider::SetControlName(uint handle, const QString& name)
{
    if (IsControl(handle))
        m_controls[handle].name = name;
}

QString YodiCustomSlider::ControlName(uint handle) const
{
    return IsControl(handle) ? m_controls[handle].name : QString();
}

double YodiCustomSlider::PositionOf(int value) const
{
    const double columns = double(m_maximum) - m_minimum + 1.0;
    const double column = double(value) - m_minimum + 0.5;
    return ScaleMargin + column / columns * std::max(width() - 2 * ScaleMargin, 1);
}

int YodiCustomSlider::ValueAt(double x) const
{
    const double columns = double(m_maximum) - m_minimum + 1.0;
    const double column = (x - ScaleMargin) / std::max(width() - 2 * ScaleMargin, 1) * columns;
    const double value = m_minimum + std::floor(column);
    return int(std::clamp(value, double(m_minimum), double(m_maximum)));
}

QRect YodiCustomSlider::ControlRect(uint handle) const
{
    return IsControl(handle) ? ShapeOf(handle).boundingRect().toAlignedRect() : QRect();
}

QSize YodiCustomSlider::sizeHint() const { return {UsualScale + 2 * ScaleMargin, UsualHeight}; }

QSize YodiCustomSlider::minimumSizeHint() const { return {SmallestScale + 2 * ScaleMargin, UsualHeight}; }

bool YodiCustomSlider::event(QEvent* event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto* const help = static_cast<QHelpEvent*>(event);
        const int handle = TopmostAt(help->pos().x());
        if (handle != NoControl) {
            ShowToolTip(*help, uint(handle));
            return true;
        }
    }
    return QWidget::event(event);
}

void YodiCustomSlider::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (!isEnabled())
        painter.setOpacity(DisabledOpacity);
    DrawScale(painter);
    for (uint handle = 0; handle < ControlCount(); ++handle)
        if (handle != m_current)
            DrawControl(painter, handle);
    if (IsControl(m_current))
        DrawControl(painter, m_current);
}

void YodiCustomSlider::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    m_pressX = event->localPos().x();
    const std::vector<uint> there = ControlsAt(m_pressX);
    if (!there.empty()) {
        m_grab = Grab::Undecided;
        SetCurrent(uint(TopmostAt(m_pressX)));
        return;
    }
    const int nearest = NearestMovable(AllControls(), m_pressX, 0);
    if (nearest == NoControl)
        return;
    Hold(uint(nearest), 0.0);
    DragTo(m_pressX);
    SetHovered(nearest);
}

void YodiCustomSlider::mouseMoveEvent(QMouseEvent* event)
{
    const double x = event->localPos().x();
    if (!(event->buttons() & Qt::LeftButton) || m_grab == Grab::None) {
        m_grab = Grab::None; // a release that another window had
        SetHovered(TopmostAt(x));
        return;
    }
    if (m_grab == Grab::Undecided) {
        if (x == m_pressX)
            return;
        const int handle = NearestMovable(ControlsAt(m_pressX), m_pressX, x > m_pressX ? 1 : -1);
        if (handle == NoControl)
            return;
        Hold(uint(handle), m_pressX - TipOf(uint(handle)));
    }
    DragTo(x);
}

void YodiCustomSlider::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || m_grab == Grab::None)
        return;
    m_grab = Grab::None;
    SetHovered(TopmostAt(event->localPos().x()));
    emit NodeReleased();
}

void YodiCustomSlider::wheelEvent(QWheelEvent* event)
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
    Step(qint64(notches) * (isPage ? PageStep : 1));
}

void YodiCustomSlider::keyPressEvent(QKeyEvent* event)
{
    const auto distance = DistanceOf(event->key());
    const bool isPlain = !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
    if (distance && isPlain)
        Step(*distance);
    else
        QWidget::keyPressEvent(event);
}

void YodiCustomSlider::focusInEvent(QFocusEvent* event)
{
    if (event->reason() == Qt::TabFocusReason)
        SetCurrent(0);
    else if (event->reason() == Qt::BacktabFocusReason && ControlCount() > 0)
        SetCurrent(ControlCount() - 1);
    m_wheelRemainder = 0;
    QWidget::focusInEvent(event);
    AnnounceFocus();
}

void YodiCustomSlider::leaveEvent(QEvent* event)
{
    SetHovered(NoControl);
    QWidget::leaveEvent(event);
}

bool YodiCustomSlider::focusNextPrevChild(bool next)
{
    const bool hasAnother = next ? qint64(m_current) + 1 < qint64(ControlCount()) : m_current > 0;
    if (!hasFocus() || !hasAnother)
        return QWidget::focusNextPrevChild(next);
    SetCurrent(next ? m_current + 1 : m_current - 1);
    AnnounceFocus();
    return true;
}

int YodiCustomSlider::Bounded(const Control& control, qint64 value) const
{
    const qint64 own = std::max<qint64>(control.minimum, std::min<qint64>(value, control.maximum));
    return int(std::clamp<qint64>(own, m_minimum, m_maximum));
}

void YodiCustomSlider::Step(qint64 distance)
{
    if (IsControl(m_current))
        ChangeValue(m_current, Bounded(m_controls[m_current], Value(m_current) + distance));
}

void YodiCustomSlider::SetCurrent(uint handle)
{
    if (handle == m_current)
        return;
    m_current = handle;
    update();
}

void YodiCustomSlider::SetHovered(int handle)
{
    if (handle == m_hovered)
        return;
    m_hovered = handle;
    update();
}

bool YodiCustomSlider::CanMove(uint handle, int direction) const
{
    return direction > 0 ? Value(handle) < HighestValue(handle) : Value(handle) > LowestValue(handle);
}

QPolygonF YodiCustomSlider::ShapeOf(uint handle) const
{
    const double ratio = devicePixelRatioF();
    const double tip = MiddleOfPixel(TipOf(handle), ratio);
    const double base = MiddleOfPixel(HandleTop + HandleHeight, ratio);
    return QPolygonF({QPointF(tip, HandleTop), QPointF(tip + HandleHalfWidth, base),
                      QPointF(tip - HandleHalfWidth, base)});
}

std::vector<uint> YodiCustomSlider::AllControls() const
{
    std::vector<uint> handles(m_controls.size());
    std::iota(handles.begin(), handles.end(), 0U);
    return handles;
}

/// The handles in reach of the mouse, over the whole height of the widget.
std::vector<uint> YodiCustomSlider::ControlsAt(double x) const
{
    std::vector<uint> handles = AllControls();
    const auto isFar = [&](uint handle) { return std::abs(x - TipOf(handle)) > HandleHalfWidth; };
    handles.erase(std::remove_if(handles.begin(), handles.end(), isFar), handles.end());
    return handles;
}

/// The one in reach that the user sees there: the current one, which lies over the others, or the nearest.
int YodiCustomSlider::TopmostAt(double x) const
{
    const std::vector<uint> there = ControlsAt(x);
    if (there.empty())
        return NoControl;
    if (std::find(there.begin(), there.end(), m_current) != there.end())
        return int(m_current);
    return int(*std::min_element(there.begin(), there.end(), [&](uint a, uint b) {
        return std::abs(x - TipOf(a)) < std::abs(x - TipOf(b));
    }));
}

/// The nearest to `x` of those that can move in `direction`, where 0 stands for the way to `x`. Of several in
/// one place it is the one whose way is not barred by the others: the last upwards, the first downwards.
int YodiCustomSlider::NearestMovable(const std::vector<uint>& handles, double x, int direction) const
{
    int nearest = NoControl;
    double nearestDistance = std::numeric_limits<double>::max();
    for (const uint handle : handles) {
        const int way = direction != 0 ? direction : x > TipOf(handle) ? 1 : -1;
        const double distance = std::abs(x - TipOf(handle));
        if (!CanMove(handle, way) || distance > nearestDistance)
            continue;
        if (distance == nearestDistance && way < 0)
            continue;
        nearest = int(handle);
        nearestDistance = distance;
    }
    return nearest;
}

void YodiCustomSlider::Hold(uint handle, double grabOffset)
{
    m_grab = Grab::Held;
    m_grabOffset = grabOffset;
    SetCurrent(handle);
    AnnounceFocus();
}

void YodiCustomSlider::DragTo(double x) { ChangeValue(m_current, ValueAt(x - m_grabOffset)); }

void YodiCustomSlider::DrawScale(QPainter& painter) const
{
    QColor line = palette().color(QPalette::WindowText);
    line.setAlphaF(LineOpacity);
    painter.fillRect(QRectF(ScaleMargin, 0.0, width() - 2.0 * ScaleMargin, ScaleThickness), line);
}

void YodiCustomSlider::DrawControl(QPainter& painter, uint handle) const
{
    const QPolygonF shape = ShapeOf(handle);
    const bool isFocused = hasFocus() && handle == m_current;
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_controls[handle].brush);
    painter.drawPolygon(shape);
    if (isEnabled() && int(handle) == m_hovered) {
        QColor glow = palette().color(QPalette::Highlight);
        glow.setAlphaF(HoverOpacity);
        painter.setBrush(glow);
        painter.drawPolygon(shape);
    }
    QPen outline(palette().color(isFocused ? QPalette::Highlight : QPalette::WindowText),
                 isFocused ? FocusLine : 1.0);
    outline.setJoinStyle(Qt::RoundJoin);
    painter.setPen(outline);
    painter.setBrush(Qt::NoBrush);
    painter.drawPolygon(shape);
}

void YodiCustomSlider::ShowToolTip(const QHelpEvent& event, uint handle)
{
    const QString value = QLocale().toString(Value(handle));
    const QString name = ControlName(handle);
    QToolTip::showText(event.globalPos(), name.isEmpty() ? value : tr("%1: %2").arg(name, value), this);
}

void YodiCustomSlider::AnnounceFocus()
{
    if (!hasFocus() || !IsControl(m_current))
        return;
    QAccessibleEvent focus(this, QAccessible::Focus);
    focus.setChild(int(m_current));
    QAccessible::updateAccessibility(&focus);
}
