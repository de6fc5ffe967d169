#pragma once

#include <QCoreApplication>
#include <QFont>
#include <QRect>

class QPainter;

/// The upright line between a picture before and after its adjustment, with a grip to drag it by and the
/// two sides' names.
///
/// Where it stands is kept as a share of the width of the part of the picture that is seen, so that it is
/// always inside both the picture and the view. Areas and points are in view coordinates.
class BeforeAfterSplitter
{
    Q_DECLARE_TR_FUNCTIONS(BeforeAfterSplitter)

public:
    /// 0 at the left end, 1 at the right one.
    double Share() const { return m_share; }
    void SetShare(double share);

    /// First column of the after side.
    int Position(const QRect& visible) const;
    /// Brings the line to the column `x`, or to the end of the visible part that is nearest.
    void MoveTo(int x, const QRect& visible);

    /// Whether a press at `point` takes the line.
    bool Hits(const QPoint& point, const QRect& visible) const;

    /// All that Draw() touches.
    QRect Area(const QRect& visible, const QFont& font) const;
    void Draw(QPainter& painter, const QRect& visible, const QFont& font) const;

private:
    double m_share = 0.5;
};
