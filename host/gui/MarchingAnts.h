#pragma once

#include "gui/PictureLayer.h"

#include <QObject>
#include <QPainterPath>
#include <QPolygonF>
#include <QRegion>
#include <QTimer>
#include <QVector>

class QPainter;

/// The outline of a selection, as dashes of black and white that wander along it.
///
/// Their length and width are the same at every zoom. They wander only while Start() allows it.
class MarchingAnts : public QObject
{
    Q_OBJECT

public:
    explicit MarchingAnts(QObject* parent = nullptr);

    /// In picture coordinates; an empty path shows nothing.
    void SetOutline(const QPainterPath& outline);
    const QPainterPath& Outline() const { return m_outline; }

    /// The view's state: whether anybody sees the dashes wander.
    void SetVisible(bool visible);

    /// What Draw() touches inside `area`, in view coordinates.
    QRegion Area(const PictureLayer::Placement& placement, const QRect& area);
    void Draw(QPainter& painter, const PictureLayer::Placement& placement, const QRect& area);

signals:
    /// The dashes went a step further and wait to be drawn.
    void Stepped();

private:
    void Scale(double scale);
    void UpdateTimer();

    QPainterPath m_outline;
    QVector<QPolygonF> m_polygons; ///< the outline in view units, from the picture's origin
    double m_scale = 0;            ///< what m_polygons are scaled by; 0 when they are outdated
    bool m_isVisible = false;
    int m_phase = 0;
    QTimer m_timer;
};
