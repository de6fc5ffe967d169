#include "gui/BeforeAfterSplitter.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

// View units.
constexpr int HalfLine = 1;
constexpr int ShadeBesideLine = 1;
constexpr int GripRadius = 13;
constexpr int ArrowLength = 4;
constexpr int ArrowDistance = 3;
constexpr int HitDistance = 5;
constexpr int LabelGap = 8;
constexpr int LabelPadding = 6;
constexpr int LabelTop = 10;

const QColor LineColor(255, 255, 255);
const QColor ShadeColor(0, 0, 0, 110);
const QColor LabelColor(0, 0, 0, 130);

QSize LabelSize(const QString& text, const QFont& font)
{
    const QFontMetrics metrics(font);
    return {metrics.horizontalAdvance(text) + 2 * LabelPadding, metrics.height() + LabelPadding};
}

QPoint GripCenter(int x, const QRect& visible) { return {x, visible.center().y()}; }

/// A label that does not fit on its side is left out.
void DrawLabel(QPainter& painter, const QRect& place, const QRect& side, const QString& text)
{
    if (!side.contains(place))
        return;
    painter.setPen(Qt::NoPen);
    painter.setBrush(LabelColor);
    painter.drawRoundedRect(place, LabelPadding / 2.0, LabelPadding / 2.0);
    painter.setPen(LineColor);
    painter.drawText(place, Qt::AlignCenter, text);
}

void DrawGrip(QPainter& painter, const QPoint& center)
{
    painter.setPen(QPen(ShadeColor, 1));
    painter.setBrush(LineColor);
    painter.drawEllipse(QPointF(center), GripRadius, GripRadius);
    painter.setPen(QPen(QColor(70, 70, 70), 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    for (const int side : {-1, 1}) {
        const QPointF tip = center + QPointF(side * (ArrowDistance + ArrowLength), 0);
        const QPointF back(-side * ArrowLength, ArrowLength);
        painter.drawPolyline(QPolygonF{{tip + back, tip, tip + QPointF(back.x(), -back.y())}});
    }
}

} // namespace

void BeforeAfterSplitter::SetShare(double share)
{
    m_share = std::isnan(share) ? 0.5 : std::clamp(share, 0.0, 1.0);
}

int BeforeAfterSplitter::Position(const QRect& visible) const
{
    return visible.left() + static_cast<int>(std::lround(m_share * visible.width()));
}

void BeforeAfterSplitter::MoveTo(int x, const QRect& visible)
{
    if (visible.width() > 0)
        SetShare((double(x) - visible.left()) / visible.width());
}

bool BeforeAfterSplitter::Hits(const QPoint& point, const QRect& visible) const
{
    if (visible.isEmpty())
        return false;
    const int x = Position(visible);
    const QPoint fromGrip = point - GripCenter(x, visible);
    if (QPoint::dotProduct(fromGrip, fromGrip) <= GripRadius * GripRadius)
        return true;
    return std::abs(point.x() - x) <= HitDistance && point.y() >= visible.top() &&
           point.y() <= visible.bottom();
}

QRect BeforeAfterSplitter::Area(const QRect& visible, const QFont& font) const
{
    const int reach = std::max({LabelGap + LabelSize(tr("Before"), font).width(),
                                LabelGap + LabelSize(tr("After"), font).width(), GripRadius}) +
                      2;
    const QRect line(Position(visible) - reach, visible.top(), 2 * reach, visible.height());
    return line.adjusted(0, -GripRadius - 1, 0, GripRadius + 1); // a grip may be taller than a flat picture
}

void BeforeAfterSplitter::Draw(QPainter& painter, const QRect& visible, const QFont& font) const
{
    if (visible.isEmpty())
        return;
    const int x = Position(visible);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const QRect line(x - HalfLine, visible.top(), 2 * HalfLine, visible.height());
    painter.fillRect(line.adjusted(-ShadeBesideLine, 0, ShadeBesideLine, 0), ShadeColor);
    painter.fillRect(line, LineColor);
    DrawGrip(painter, GripCenter(x, visible));

    painter.setFont(font);
    const QSize before = LabelSize(tr("Before"), font);
    const QSize after = LabelSize(tr("After"), font);
    const int top = visible.top() + LabelTop;
    const QRect left(visible.topLeft(), QPoint(x - 1, visible.bottom() - 2 * GripRadius));
    const QRect right(QPoint(x, visible.top()), QPoint(visible.right(), left.bottom()));
    DrawLabel(painter, QRect(QPoint(x - LabelGap - before.width(), top), before), left, tr("Before"));
    DrawLabel(painter, QRect(QPoint(x + LabelGap, top), after), right, tr("After"));
    painter.restore();
}
