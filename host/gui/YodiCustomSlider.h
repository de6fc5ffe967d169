#pragma once

#include <QBrush>
#include <QPolygonF>
#include <QString>
#include <QWidget>

#include <vector>

class QHelpEvent;

/// Several handles on one horizontal scale, each with bounds of its own inside the scale's range.
///
/// The scale has a column of the same width for each of its values, from left to right in every layout
/// direction, and leaves ScaleMargin free at both ends: a histogram or gradient above it that is inset by as
/// much shows each level over the tip of the handle that stands there.
///
/// With the mouse a handle is taken and dragged; a press beside all handles brings the nearest one there.
/// Where handles lie over one another the drag takes one that can go its way. With the keyboard Tab goes
/// from handle to handle, arrows move by one, the page keys by ten, Home and End to the handle's bounds; so
/// does the wheel while the slider has the focus.
///
/// Handles are numbered from 0 in the order in which they were added; a call with another number does
/// nothing.
class YodiCustomSlider : public QWidget
{
    Q_OBJECT

public:
    static constexpr int ScaleMargin = 7; ///< screen units from the widget's sides to the scale's ends

    explicit YodiCustomSlider(QWidget* parent = nullptr);

    /// The values of the scale, 0..255 at first. A maximum below the minimum counts as the minimum.
    void SetRange(int minimum, int maximum);
    int Minimum() const { return m_minimum; }
    int Maximum() const { return m_maximum; }

    /// Adds a handle with its bounds and gives its number.
    uint AddControl(int minimum, int maximum, int value);
    uint ControlCount() const { return uint(m_controls.size()); }

    /// A value that the new bound leaves outside is moved inside, with ValueChanged(). Where bounds cross,
    /// the lower one counts.
    void SetControlMin(uint handle, int minimum);
    void SetControlMax(uint handle, int maximum);

    /// The lowest and the highest value that the handle can take now, within the scale; 0 for no handle.
    int LowestValue(uint handle) const;
    int HighestValue(uint handle) const;

    /// Moves a handle, to the nearest value within its bounds.
    void ChangeValue(uint handle, int value);
    /// 0 for no handle.
    int Value(uint handle) const;

    /// What the handle is filled with; at first the palette's button colour.
    void SetBrush(uint handle, const QBrush& brush);
    /// Qt::NoBrush for no handle.
    QBrush Brush(uint handle) const;

    /// What the handle sets, for tooltip and assistive technology.
    void SetControlName(uint handle, const QString& name);
    QString ControlName(uint handle) const;

    /// The handle that keyboard and wheel move.
    uint CurrentControl() const { return m_current; }

    /// Where the middle of a value's column is, in the widget's coordinates.
    double PositionOf(int value) const;
    /// The value whose column is at `x`, the nearest one outside of the scale.
    int ValueAt(double x) const;
    /// What a handle covers, in the widget's coordinates.
    QRect ControlRect(uint handle) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    void ValueChanged(uint handle, int value);
    /// The mouse let go of a handle, moved or not.
    void NodeReleased();

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void leaveEvent(QEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    struct Control
    {
        int minimum;
        int maximum;
        int value;
        QBrush brush;
        QString name;
    };
    enum class Grab
    {
        None,
        Undecided, ///< pressed on handles, and the first move tells which of them is meant
        Held
    };

    static constexpr int NoControl = -1;

    bool IsControl(uint handle) const { return handle < m_controls.size(); }
    int Bounded(const Control& control, qint64 value) const;
    void Step(qint64 distance);
    void SetCurrent(uint handle);
    void SetHovered(int handle);
    bool CanMove(uint handle, int direction) const;

    double TipOf(uint handle) const { return PositionOf(Value(handle)); }
    QPolygonF ShapeOf(uint handle) const;
    std::vector<uint> AllControls() const;
    std::vector<uint> ControlsAt(double x) const;
    int TopmostAt(double x) const;
    int NearestMovable(const std::vector<uint>& handles, double x, int direction) const;
    void Hold(uint handle, double grabOffset);
    void DragTo(double x);

    void DrawScale(QPainter& painter) const;
    void DrawControl(QPainter& painter, uint handle) const;
    void ShowToolTip(const QHelpEvent& event, uint handle);
    void AnnounceFocus();

    int m_minimum = 0;
    int m_maximum = 255;
    std::vector<Control> m_controls;
    uint m_current = 0;
    int m_hovered = NoControl;
    Grab m_grab = Grab::None;
    double m_pressX = 0.0;     ///< where the mouse took the handle
    double m_grabOffset = 0.0; ///< from the handle's tip to the mouse
    int m_wheelRemainder = 0;  ///< eighths of a degree that make no step yet
};
