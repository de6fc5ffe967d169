#include "YDCurvePoints.h"

#include "image/YDCurvesTransformation.h"

#include <algorithm>
#include <limits>

namespace {

using namespace YDCurvePoints;

constexpr int GrayLevel = 128;

/// Levels in x from `p` to `q`, which may be as far apart as integers get.
qint64 Distance(const QPoint& p, const QPoint& q) { return qint64(q.x()) - p.x(); }

bool IsLevel(int value) { return value >= 0 && value <= MaxLevel; }

int Bounded(int value) { return std::clamp(value, 0, MaxLevel); }

bool IsInside(const QPoint& point) { return IsLevel(point.x()) && IsLevel(point.y()); }

/// The lists of red, green and blue, with the colour's level in each.
template <class Rule>
void ForEachColor(Curves& curves, const YDRGBA32i& color, const Rule& rule)
{
    const std::array<int, 3> levels{color.r, color.g, color.b};
    for (std::size_t i = 0; i < levels.size(); ++i) {
        Points& points = curves[i + 1];
        rule(points, levels[i]);
        points = YDCurvesTransformation::Ordered(points); // a picked level may lie beyond its neighbour's
    }
}

/// Whether the curve falls from its first to its last point.
bool IsInverted(const Points& points) { return points.first().y() > points.last().y(); }

} // namespace

bool YDCurvePoints::IsEditable(const Points& points)
{
    return points.size() >= 2 && points.size() <= MostEditable;
}

QPoint YDCurvePoints::Flipped(const QPoint& point)
{
    const qint64 y = qint64(MaxLevel) - point.y();
    return {point.x(), int(std::min(y, qint64(std::numeric_limits<int>::max())))};
}

int YDCurvePoints::IndexForInsert(const Points& points, const QPoint& point)
{
    if (points.size() < 2 || !IsLevel(point.y()))
        return -1;
    for (int i = 1; i < points.size(); ++i)
        if (Distance(points[i - 1], point) > MinDistance && Distance(point, points[i]) > MinDistance)
            return i;
    return -1;
}

bool YDCurvePoints::MayMove(const Points& points, int index, const QPoint& point)
{
    if (index < 0 || index >= points.size() || point == points[index])
        return false;
    const bool isFarFromLeft = index == 0 || Distance(points[index - 1], point) >= MinDistance;
    const bool isFarFromRight =
        index == points.size() - 1 || Distance(point, points[index + 1]) >= MinDistance;
    return isFarFromLeft && isFarFromRight;
}

QPainterPath YDCurvePoints::PathOf(const Points& points)
{
    if (points.size() < 2)
        return {};
    const Points ordered = YDCurvesTransformation::Ordered(points);
    const YDCurvesTransformation::Levels levels = YDCurvesTransformation::LevelsOf(ordered);
    const QPoint first = ordered.first();
    const QPoint last = ordered.last();
    const double start = first.x() < 0 ? levels.front() : Bounded(first.y());
    const double end = last.x() > MaxLevel ? levels.back() : Bounded(last.y());
    QPainterPath path;
    path.moveTo(0, MaxLevel - start);
    path.lineTo(Bounded(first.x()), MaxLevel - start);
    if (ordered.size() == 2 && IsInside(first) && IsInside(last)) {
        path.lineTo(last.x(), MaxLevel - last.y());
    } else {
        for (int x = std::max(first.x(), 0); x <= std::min(last.x(), MaxLevel); ++x)
            path.lineTo(x, MaxLevel - levels[std::size_t(x)]);
    }
    path.lineTo(MaxLevel, MaxLevel - end);
    return path;
}

void YDCurvePoints::PickBlack(Curves& curves, const YDRGBA32i& color)
{
    ForEachColor(curves, color, [](Points& points, int level) {
        if (points.size() >= 2)
            (IsInverted(points) ? points.last() : points.first()) = {level, 0};
    });
}

void YDCurvePoints::PickWhite(Curves& curves, const YDRGBA32i& color)
{
    ForEachColor(curves, color, [](Points& points, int level) {
        if (points.size() >= 2)
            (IsInverted(points) ? points.first() : points.last()) = {level, MaxLevel};
    });
}

void YDCurvePoints::PickGray(Curves& curves, const YDRGBA32i& color)
{
    ForEachColor(curves, color, [](Points& points, int level) {
        const Points ends = points.size() >= 2 ? points : Straight();
        points = {ends.first(), {level, GrayLevel}, ends.last()};
    });
}
