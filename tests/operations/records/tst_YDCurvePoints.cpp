#include "YDCurvePoints.h"
#include "image/YDCurvesTransformation.h"

#include <QPainterPath>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace YDCurvePoints;

Q_DECLARE_METATYPE(Points)

namespace {

constexpr int Lists = 10000;
constexpr int Lowest = std::numeric_limits<int>::min();
constexpr int Highest = std::numeric_limits<int>::max();
constexpr YDRGBA32i Color(60, 50, 40, 255); // red 40, green 50, blue 60

/// The path from point to point. Qt leaves out a line to where the path is already.
QPainterPath Polyline(const QVector<QPointF>& points)
{
    QPainterPath path(points.first());
    for (const QPointF& point : points)
        path.lineTo(point);
    return path;
}

/// The y that a path goes through last at `x`.
double LastYAt(const QPainterPath& path, double x)
{
    double y = std::nan("");
    for (int i = 1; i < path.elementCount(); ++i) {
        const QPointF from = path.elementAt(i - 1);
        const QPointF to = path.elementAt(i);
        if (x < std::min(from.x(), to.x()) || x > std::max(from.x(), to.x()))
            continue;
        const double width = to.x() - from.x();
        y = width == 0.0 ? to.y() : from.y() + (to.y() - from.y()) * (x - from.x()) / width;
    }
    return y;
}

Points RandomList(QRandomGenerator& random)
{
    Points points(random.bounded(2, 18));
    for (QPoint& point : points)
        point = {random.bounded(-20, 280), random.bounded(-20, 280)};
    if (random.bounded(2) == 0)
        std::sort(points.begin(), points.end(),
                  [](const QPoint& p, const QPoint& q) { return p.x() < q.x(); });
    return points;
}

Curves All(const Points& points) { return {Straight(), points, points, points}; }

} // namespace

class TestYDCurvePoints : public QObject
{
    Q_OBJECT

private slots:
    void FlippingIsItsOwnInverse();
    void InsertionKeepsMoreThanFourFromTheNeighbours_data();
    void InsertionKeepsMoreThanFourFromTheNeighbours();
    void MovingKeepsFourFromTheNeighbours_data();
    void MovingKeepsFourFromTheNeighbours();
    void TheStraightCurveIsADiagonal();
    void TwoPointsAreALineBetweenFlatEnds();
    void FewerThanTwoPointsHaveNoPath();
    void MorePointsAreSampledAtEveryLevel();
    void DrawnAndAppliedCurvesAgreeAtEveryInput();
    void PathsOfAnyListStayInTheScene_data();
    void PathsOfAnyListStayInTheScene();
    void BlackMovesTheLowerEnd_data();
    void BlackMovesTheLowerEnd();
    void WhiteMovesTheHigherEnd_data();
    void WhiteMovesTheHigherEnd();
    void GrayLeavesTheEndsAndOnePoint_data();
    void GrayLeavesTheEndsAndOnePoint();
    void PicksTakeEachColoursLevelAndLeaveTheComposite();
};

void TestYDCurvePoints::FlippingIsItsOwnInverse()
{
    QCOMPARE(Flipped({30, 10}), QPoint(30, 245));
    for (const QPoint& point : {QPoint(0, 0), QPoint(255, 255), QPoint(3, -7), QPoint(9, 1000)})
        QCOMPARE(Flipped(Flipped(point)), point);
    QCOMPARE(Flipped({Lowest, Lowest}), QPoint(Lowest, Highest));
    QCOMPARE(Flipped({Highest, Highest}), QPoint(Highest, 255 - Highest));
}

void TestYDCurvePoints::InsertionKeepsMoreThanFourFromTheNeighbours_data()
{
    QTest::addColumn<Points>("points");
    QTest::addColumn<QPoint>("point");
    QTest::addColumn<int>("index");
    const Points two = Straight();
    const Points three{{0, 0}, {100, 30}, {255, 255}};
    QTest::newRow("two from the first") << two << QPoint(2, 9) << -1;
    QTest::newRow("four from the first") << two << QPoint(4, 9) << -1;
    QTest::newRow("five from the first") << two << QPoint(5, 9) << 1;
    QTest::newRow("four from the last") << two << QPoint(251, 9) << -1;
    QTest::newRow("five from the last") << two << QPoint(250, 9) << 1;
    QTest::newRow("first interval") << three << QPoint(95, 9) << 1;
    QTest::newRow("at a point") << three << QPoint(100, 9) << -1;
    QTest::newRow("second interval") << three << QPoint(105, 9) << 2;
    QTest::newRow("lowest level") << two << QPoint(50, 0) << 1;
    QTest::newRow("highest level") << two << QPoint(50, 255) << 1;
    QTest::newRow("below all levels") << two << QPoint(50, -1) << -1;
    QTest::newRow("above all levels") << two << QPoint(50, 256) << -1;
    QTest::newRow("no list") << Points() << QPoint(50, 50) << -1;
    QTest::newRow("one point") << Points({{0, 0}}) << QPoint(50, 50) << -1;
    QTest::newRow("out of order") << Points({{255, 0}, {0, 255}}) << QPoint(50, 50) << -1;
    QTest::newRow("far apart") << Points({{Lowest, 0}, {Highest, 0}}) << QPoint(50, 50) << 1;
}

void TestYDCurvePoints::InsertionKeepsMoreThanFourFromTheNeighbours()
{
    QFETCH(Points, points);
    QFETCH(QPoint, point);
    QFETCH(int, index);
    QCOMPARE(IndexForInsert(points, point), index);
}

void TestYDCurvePoints::MovingKeepsFourFromTheNeighbours_data()
{
    QTest::addColumn<Points>("points");
    QTest::addColumn<int>("index");
    QTest::addColumn<QPoint>("point");
    QTest::addColumn<bool>("may");
    const Points points{{10, 0}, {100, 30}, {200, 255}};
    QTest::newRow("within three of the left") << points << 1 << QPoint(13, 30) << false;
    QTest::newRow("within four of the left") << points << 1 << QPoint(14, 30) << true;
    QTest::newRow("within three of the right") << points << 1 << QPoint(197, 30) << false;
    QTest::newRow("within four of the right") << points << 1 << QPoint(196, 30) << true;
    QTest::newRow("first to the left") << points << 0 << QPoint(0, 0) << true;
    QTest::newRow("first, four off") << points << 0 << QPoint(96, 0) << true;
    QTest::newRow("first, three off") << points << 0 << QPoint(97, 0) << false;
    QTest::newRow("last to the right") << points << 2 << QPoint(255, 0) << true;
    QTest::newRow("last, four off") << points << 2 << QPoint(104, 0) << true;
    QTest::newRow("last, three off") << points << 2 << QPoint(103, 0) << false;
    QTest::newRow("up") << points << 1 << QPoint(100, 31) << true;
    QTest::newRow("to where it is") << points << 1 << QPoint(100, 30) << false;
    QTest::newRow("before the list") << points << -1 << QPoint(100, 31) << false;
    QTest::newRow("behind the list") << points << 3 << QPoint(100, 31) << false;
    QTest::newRow("no list") << Points() << 0 << QPoint(100, 31) << false;
    QTest::newRow("far out") << Points({{Lowest, 0}, {Highest, 0}}) << 0 << QPoint(Highest, 1) << false;
}

void TestYDCurvePoints::MovingKeepsFourFromTheNeighbours()
{
    QFETCH(Points, points);
    QFETCH(int, index);
    QFETCH(QPoint, point);
    QFETCH(bool, may);
    QCOMPARE(MayMove(points, index, point), may);
}

void TestYDCurvePoints::TheStraightCurveIsADiagonal()
{
    QCOMPARE(PathOf(Straight()), Polyline({{0, 255}, {0, 255}, {255, 0}, {255, 0}}));
}

void TestYDCurvePoints::TwoPointsAreALineBetweenFlatEnds()
{
    QCOMPARE(PathOf({{30, 10}, {200, 240}}), Polyline({{0, 245}, {30, 245}, {200, 15}, {255, 15}}));
}

void TestYDCurvePoints::FewerThanTwoPointsHaveNoPath()
{
    QVERIFY(PathOf({}).isEmpty());
    QVERIFY(PathOf({{128, 128}}).isEmpty());
}

void TestYDCurvePoints::MorePointsAreSampledAtEveryLevel()
{
    const Points points{{10, 250}, {100, 20}, {240, 240}};
    QVector<double> a;
    QVector<double> b;
    QVector<double> c;
    YDCurvesTransformation::BuildSplineParts(points, a, b, c);
    QVector<QPointF> expected{{0, 5}, {10, 5}};
    for (int x = 10; x <= 240; ++x)
        expected.append({double(x), 255 - std::clamp(YDCurvesTransformation::SplineValue(x, points, a, b, c),
                                                     0.0, 255.0)});
    expected.append({255, 15});
    QCOMPARE(PathOf(points), Polyline(expected));
}

void TestYDCurvePoints::DrawnAndAppliedCurvesAgreeAtEveryInput()
{
    QRandomGenerator random(1);
    for (int list = 0; list < Lists; ++list) {
        const Points points = RandomList(random);
        const QPainterPath path = PathOf(points);
        const auto levels = YDCurvesTransformation::LevelsOf(points);
        for (int x = 0; x <= MaxLevel; ++x)
            QVERIFY2(std::abs(255 - LastYAt(path, x) - levels[std::size_t(x)]) < 1e-9,
                     qPrintable(QStringLiteral("list %1, input %2").arg(list).arg(x)));
    }
}

void TestYDCurvePoints::PathsOfAnyListStayInTheScene_data()
{
    QTest::addColumn<Points>("points");
    QTest::newRow("out of range") << Points({{-50, 300}, {300, -50}});
    QTest::newRow("out of order") << Points({{200, 10}, {100, 20}, {0, 30}});
    QTest::newRow("left of all levels") << Points({{Lowest, 10}, {-1, 200}});
    QTest::newRow("right of all levels") << Points({{256, 10}, {Highest, 200}});
    QTest::newRow("far out") << Points({{Lowest, Lowest}, {5, Highest}, {Highest, Highest}});
    QTest::newRow("one point many times") << Points(100, QPoint(40, 40));
    Points many(2000);
    for (int i = 0; i < many.size(); ++i)
        many[i] = {i, i % 300};
    QTest::newRow("two thousand") << many;
}

void TestYDCurvePoints::PathsOfAnyListStayInTheScene()
{
    QFETCH(Points, points);
    const QPainterPath path = PathOf(points);
    QVERIFY(path.elementCount() <= 259);
    const QRectF bounds = path.boundingRect();
    QVERIFY(bounds.left() >= 0 && bounds.top() >= 0 && bounds.right() <= 255 && bounds.bottom() <= 255);
    QCOMPARE(path.elementAt(0).x, 0.0);
    QCOMPARE(path.currentPosition().x(), 255.0);
}

void TestYDCurvePoints::BlackMovesTheLowerEnd_data()
{
    QTest::addColumn<Points>("points");
    QTest::addColumn<Points>("expected");
    QTest::newRow("straight") << Straight() << Points({{40, 0}, {255, 255}});
    QTest::newRow("inverted") << Points({{0, 255}, {255, 0}}) << Points({{0, 255}, {40, 0}});
    QTest::newRow("level") << Points({{0, 9}, {255, 9}}) << Points({{40, 0}, {255, 9}});
    QTest::newRow("beyond a neighbour")
        << Points({{0, 9}, {30, 90}, {255, 255}}) << Points({{30, 90}, {40, 0}, {255, 255}});
    QTest::newRow("on a neighbour") << Points({{0, 9}, {40, 90}, {255, 255}})
                                    << Points({{40, 0}, {40, 90}, {255, 255}});
    QTest::newRow("one point") << Points({{7, 7}}) << Points({{7, 7}});
    QTest::newRow("no point") << Points() << Points();
}

void TestYDCurvePoints::BlackMovesTheLowerEnd()
{
    QFETCH(Points, points);
    QFETCH(Points, expected);
    Curves curves = All(points);
    PickBlack(curves, Color);
    QCOMPARE(curves[1], expected);
}

void TestYDCurvePoints::WhiteMovesTheHigherEnd_data()
{
    QTest::addColumn<Points>("points");
    QTest::addColumn<Points>("expected");
    QTest::newRow("straight") << Straight() << Points({{0, 0}, {40, 255}});
    QTest::newRow("inverted") << Points({{0, 255}, {255, 0}}) << Points({{40, 255}, {255, 0}});
    QTest::newRow("level") << Points({{0, 9}, {255, 9}}) << Points({{0, 9}, {40, 255}});
    QTest::newRow("beyond a neighbour")
        << Points({{0, 9}, {60, 90}, {255, 255}}) << Points({{0, 9}, {40, 255}, {60, 90}});
    QTest::newRow("one point") << Points({{7, 7}}) << Points({{7, 7}});
    QTest::newRow("no point") << Points() << Points();
}

void TestYDCurvePoints::WhiteMovesTheHigherEnd()
{
    QFETCH(Points, points);
    QFETCH(Points, expected);
    Curves curves = All(points);
    PickWhite(curves, Color);
    QCOMPARE(curves[1], expected);
}

void TestYDCurvePoints::GrayLeavesTheEndsAndOnePoint_data()
{
    QTest::addColumn<Points>("points");
    QTest::addColumn<Points>("expected");
    const Points middle{{0, 0}, {40, 128}, {255, 255}};
    QTest::newRow("straight") << Straight() << middle;
    QTest::newRow("five points") << Points({{0, 0}, {20, 3}, {90, 4}, {200, 5}, {255, 255}}) << middle;
    QTest::newRow("left of the first")
        << Points({{50, 0}, {255, 255}}) << Points({{40, 128}, {50, 0}, {255, 255}});
    QTest::newRow("one point") << Points({{7, 7}}) << middle;
    QTest::newRow("no point") << Points() << middle;
}

void TestYDCurvePoints::GrayLeavesTheEndsAndOnePoint()
{
    QFETCH(Points, points);
    QFETCH(Points, expected);
    Curves curves = All(points);
    PickGray(curves, Color);
    QCOMPARE(curves[1], expected);
}

void TestYDCurvePoints::PicksTakeEachColoursLevelAndLeaveTheComposite()
{
    Curves curves = All(Straight());
    PickBlack(curves, Color);
    QCOMPARE(curves, Curves({Straight(), Points({{40, 0}, {255, 255}}), Points({{50, 0}, {255, 255}}),
                             Points({{60, 0}, {255, 255}})}));
    curves = All(Straight());
    PickWhite(curves, Color);
    QCOMPARE(curves, Curves({Straight(), Points({{0, 0}, {40, 255}}), Points({{0, 0}, {50, 255}}),
                             Points({{0, 0}, {60, 255}})}));
    curves = All(Straight());
    PickGray(curves, Color);
    QCOMPARE(curves,
             Curves({Straight(), Points({{0, 0}, {40, 128}, {255, 255}}),
                     Points({{0, 0}, {50, 128}, {255, 255}}), Points({{0, 0}, {60, 128}, {255, 255}})}));
}

QTEST_APPLESS_MAIN(TestYDCurvePoints)
#include "tst_YDCurvePoints.moc"
