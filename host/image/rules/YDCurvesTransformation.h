#pragma once

#include <QPoint>
#include <QVector>

#include <array>

/// The tone curve through a list of points, x being the input and y the output level.
///
/// Between its end points the curve is a natural cubic spline, outside them it is flat; two points give a
/// straight line. Points that share an x make the curve jump there: it is a spline of its own on either
/// side, and at that x the last of them counts. Source of the spline: de Boor, "A Practical Guide to
/// Splines", chapter IV.
///
/// Every function takes any list at all, of any length, order and range, in time proportional to its length
/// (but for the sorting). All of them are pure.
class YDCurvesTransformation
{
public:
    using Levels = std::array<double, 256>;

    /// Both ends of the levels.
    static constexpr int MinLevel = 0;
    static constexpr int MaxLevel = 255;

    /// `points` in ascending x; those that share an x keep their order.
    static QVector<QPoint> Ordered(const QVector<QPoint>& points);

    /// The cubic of each interval: with `t` the distance from point i, the curve between the points i and
    /// i + 1 is `((a[i] * t + b[i]) * t + c[i]) * t + points[i].y`. `points` must be ordered. The vectors are
    /// replaced, each by one entry less than there are points; an interval without width has zeros.
    static void BuildSplineParts(const QVector<QPoint>& points, QVector<double>& a, QVector<double>& b,
                                 QVector<double>& c);

    /// The curve at `x`, not clamped, for the `points` that the parts were built from; `x` itself where there
    /// are fewer than two.
    static double SplineValue(double x, const QVector<QPoint>& points, const QVector<double>& a,
                              const QVector<double>& b, const QVector<double>& c);

    /// The curve at each of the 256 input levels, clamped to the levels but not rounded, for points in any
    /// order. What is drawn and what is applied both come from here. The identity where there are fewer than
    /// two points.
    static Levels LevelsOf(const QVector<QPoint>& points);
};
