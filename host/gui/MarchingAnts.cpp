#include "gui/MarchingAnts.h"

#include <QPainter>

#include <cmath>

namespace {

constexpr int StepMs = 120;
constexpr int DashLength = 4; ///< view units
/// Outlines of more sides are updated as a whole.
constexpr int MostSidesUpdatedAlone = 64;
constexpr int LineReach = 2; ///< view units that a line may touch beside it

/// The polygon without the points that lie within a pixel of the one before.
QPolygonF Thinned(const QPolygonF& polygon)
{
    constexpr double NearestDistance = 1.0;
    QPolygonF result;
    for (const QPointF& point : polygon) {
        const bool isLast = &point == &polygon.last();
        if (result.isEmpty() || isLast || (point - result.last()).manhattanLength() >= NearestDistance)
            result.append(point);
    }
    return result;
}

QRect Around(const QRectF& bounds)
{
    return bounds.normalized().toAlignedRect().adjusted(-LineReach, -LineReach, LineReach, LineReach);
}

} // namespace

MarchingAnts::MarchingAnts(QObject* parent) : QObject(parent), m_timer(this)
{
    m_timer.setObjectName(QStringLiteral("marchingAnts"));
    m_timer.setInterval(StepMs);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        m_phase = (m_phase + 1) % (2 * DashLength);
        emit Stepped();
    });
}

void MarchingAnts::SetOutline(const QPainterPath& outline)
{
    m_outline = outline;
    m_scale = 0;
    UpdateTimer();
}

void MarchingAnts::SetVisible(bool visible)
{
    m_isVisible = visible;
    UpdateTimer();
}

QRegion MarchingAnts::Area(const PictureLayer::Placement& placement, const QRect& area)
{
    Scale(placement.scale);
    QRegion sides;
    QRect whole;
    int count = 0;
    for (const QPolygonF& polygon : qAsConst(m_polygons)) {
        whole |= Around(polygon.boundingRect().translated(placement.origin)) & area;
        for (int i = 1; i < polygon.size() && count <= MostSidesUpdatedAlone; ++i, ++count)
            sides += Around(QRectF(polygon[i - 1], polygon[i]).translated(placement.origin)) & area;
    }
    return count <= MostSidesUpdatedAlone ? sides : QRegion(whole);
}

void MarchingAnts::Draw(QPainter& painter, const PictureLayer::Placement& placement, const QRect& area)
{
    Scale(placement.scale);
    if (m_polygons.isEmpty())
        return;
    painter.save();
    painter.translate(placement.origin);
    QPen ants(Qt::black, 1, Qt::CustomDashLine, Qt::FlatCap);
    ants.setDashPattern({DashLength, DashLength});
    ants.setDashOffset(-m_phase);
    for (const QPolygonF& polygon : qAsConst(m_polygons)) {
        if (!Around(polygon.boundingRect().translated(placement.origin)).intersects(area))
            continue;
        painter.setPen(QPen(Qt::white, 1));
        painter.drawPolyline(polygon);
        painter.setPen(ants);
        painter.drawPolyline(polygon);
    }
    painter.restore();
}

void MarchingAnts::Scale(double scale)
{
    if (scale == m_scale)
        return;
    m_scale = scale;
    m_polygons.clear();
    for (const QPolygonF& polygon : m_outline.toSubpathPolygons(QTransform::fromScale(scale, scale)))
        m_polygons.append(Thinned(polygon));
}

void MarchingAnts::UpdateTimer()
{
    const bool runs = m_isVisible && !m_outline.isEmpty();
    if (runs && !m_timer.isActive())
        m_timer.start();
    else if (!runs)
        m_timer.stop();
}
