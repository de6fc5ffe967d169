#include "image/YDCurvesTransformation.h"

#include <algorithm>
#include <vector>

namespace {

bool IsLeftOf(const QPoint& p, const QPoint& q) { return p.x() < q.x(); }

/// Width of the interval behind point `i`, in doubles because the ends may be as far apart as integers get.
double Width(const QVector<QPoint>& points, int i) { return double(points[i + 1].x()) - points[i].x(); }

double Slope(const QVector<QPoint>& points, int i)
{
    return (double(points[i + 1].y()) - points[i].y()) / Width(points, i);
}

/// Second derivatives at the points: zero at both ends and at jumps, where a spline ends and another begins,
/// elsewhere such that the first derivatives of neighbouring cubics agree. That is a tridiagonal system,
/// diagonally dominant, so elimination without pivoting is stable.
std::vector<double> SecondDerivatives(const QVector<QPoint>& points)
{
    std::vector<double> second(static_cast<std::size_t>(points.size()), 0.0);
    std::vector<double> upper(second.size(), 0.0); // of the row, divided by its diagonal
    for (int i = 1; i + 1 < points.size(); ++i) {
        const double left = Width(points, i - 1);
        const double right = Width(points, i);
        if (left <= 0.0 || right <= 0.0)
            continue;
        const auto row = static_cast<std::size_t>(i);
        const double diagonal = 2.0 * (left + right) - left * upper[row - 1];
        upper[row] = right / diagonal;
        second[row] = (6.0 * (Slope(points, i) - Slope(points, i - 1)) - left * second[row - 1]) / diagonal;
    }
    for (std::size_t row = second.size(); row-- > 1;)
        second[row - 1] -= upper[row - 1] * second[row];
    return second;
}

/// The last point whose x is not above `x`. There must be one.
int IntervalOf(double x, const QVector<QPoint>& points)
{
    const auto above = std::upper_bound(points.begin(), points.end(), x,
                                        [](double value, const QPoint& point) { return value < point.x(); });
    return static_cast<int>(above - points.begin()) - 1;
}

} // namespace

QVector<QPoint> YDCurvesTransformation::Ordered(const QVector<QPoint>& points)
{
    if (std::is_sorted(points.begin(), points.end(), IsLeftOf))
        return points;
    QVector<QPoint> ordered = points;
    std::stable_sort(ordered.begin(), ordered.end(), IsLeftOf);
    return ordered;
}

void YDCurvesTransformation::BuildSplineParts(const QVector<QPoint>& points, QVector<double>& a,
                                              QVector<double>& b, QVector<double>& c)
{
    const int intervals = std::max(points.size() - 1, 0);
    for (QVector<double>* const part : {&a, &b, &c})
        part->fill(0.0, intervals);
    const std::vector<double> second = SecondDerivatives(points);
    for (int i = 0; i < intervals; ++i) {
        const double width = Width(points, i);
        if (width <= 0.0)
            continue;
        const double from = second[static_cast<std::size_t>(i)];
        const double to = second[static_cast<std::size_t>(i) + 1];
        a[i] = (to - from) / (6.0 * width);
        b[i] = from / 2.0;
        c[i] = Slope(points, i) - width * (2.0 * from + to) / 6.0;
    }
}

double YDCurvesTransformation::SplineValue(double x, const QVector<QPoint>& points, const QVector<double>& a,
                                           const QVector<double>& b, const QVector<double>& c)
{
    Q_ASSERT(a.size() == std::max(points.size() - 1, 0) && b.size() == a.size() && c.size() == a.size());
    if (points.size() < 2)
        return x;
    if (x < points.first().x())
        return points.first().y();
    if (!(x < points.last().x()))
        return points.last().y();
    const int i = IntervalOf(x, points);
    const double t = x - points[i].x();
    return ((a[i] * t + b[i]) * t + c[i]) * t + points[i].y();
}

YDCurvesTransformation::Levels YDCurvesTransformation::LevelsOf(const QVector<QPoint>& points)
{
    const QVector<QPoint> ordered = Ordered(points);
    QVector<double> a;
    QVector<double> b;
    QVector<double> c;
    BuildSplineParts(ordered, a, b, c);
    Levels levels{};
    for (std::size_t x = 0; x < levels.size(); ++x)
        levels[x] = std::clamp(SplineValue(double(x), ordered, a, b, c), double(MinLevel), double(MaxLevel));
    return levels;
}
