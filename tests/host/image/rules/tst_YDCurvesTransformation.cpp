#include "image/YDCurvesTransformation.h"

#include <QRandomGenerator>
#include <QTest>

#include <cmath>
#include <limits>

using Points = QVector<QPoint>;

Q_DECLARE_METATYPE(Points)

namespace {

constexpr int Lists = 10000;
constexpr double Tolerance = 1e-6;

/// The parts of a list, and what they give.
struct Spline
{
    explicit Spline(const Points& list) : points(list)
    {
        YDCurvesTransformation::BuildSplineParts(points, a, b, c);
    }
    double At(double x) const { return YDCurvesTransformation::SplineValue(x, points, a, b, c); }

    /// Of the cubic behind point `i`, at the distance `t` from it.
    double FirstDerivative(int i, double t) const { return (3 * a[i] * t + 2 * b[i]) * t + c[i]; }
    double SecondDerivative(int i, double t) const { return 6 * a[i] * t + 2 * b[i]; }

    Points points;
    QVector<double> a;
    QVector<double> b;
    QVector<double> c;
};

/// 2 to 16 points at random, in ascending x without equal ones.
Points RandomCurve(QRandomGenerator& random)
{
    const int count = random.bounded(2, 17);
    Points points;
    int x = random.bounded(8);
    for (int i = 0; i < count; ++i, x += random.bounded(1, 16))
        points.append({x, random.bounded(256)});
    return points;
}

/// 0 to 19 points at random, in any order, near each other or far out.
Points RandomList(QRandomGenerator& random)
{
    const int reach = 1 << random.bounded(1, 30);
    Points points(random.bounded(20));
    for (QPoint& point : points)
        point = {random.bounded(-reach, reach), random.bounded(-reach, reach)};
    return points;
}

} // namespace

class TestYDCurvesTransformation : public QObject
{
    Q_OBJECT

private slots:
    void TwoPointsGiveALine();
    void FewerThanTwoPointsGiveTheIdentity();
    void TheCurveIsFlatOutsideItsEnds();
    void ThreePointsGiveTheNaturalSpline();
    void RandomCurvesAreNaturalSplinesThroughTheirPoints();
    void PointsThatShareAnXMakeAJump();
    void TwoPointsThatShareAnXAreAStep();
    void OrderingKeepsTheOrderOfEqualX();
    void LevelsAreTheClampedSplineOfTheOrderedPoints();
    void AnyListGivesLevelsInRange_data();
    void AnyListGivesLevelsInRange();
    void RandomListsGiveLevelsInRange();
};

void TestYDCurvesTransformation::TwoPointsGiveALine()
{
    const Spline spline({{50, 10}, {150, 60}});
    QCOMPARE(spline.a, QVector<double>({0.0}));
    QCOMPARE(spline.b, QVector<double>({0.0}));
    QCOMPARE(spline.c, QVector<double>({0.5}));
    QCOMPARE(spline.At(50), 10.0);
    QCOMPARE(spline.At(101), 35.5);
    QCOMPARE(spline.At(150), 60.0);
}

void TestYDCurvesTransformation::FewerThanTwoPointsGiveTheIdentity()
{
    for (const Points& points : {Points(), Points({{100, 30}})}) {
        const Spline spline(points);
        QVERIFY(spline.a.isEmpty() && spline.b.isEmpty() && spline.c.isEmpty());
        QCOMPARE(spline.At(200), 200.0);
        const auto levels = YDCurvesTransformation::LevelsOf(points);
        for (std::size_t x = 0; x < levels.size(); ++x)
            QCOMPARE(levels[x], double(x));
    }
}

void TestYDCurvesTransformation::TheCurveIsFlatOutsideItsEnds()
{
    const Spline spline({{30, 10}, {100, 200}, {200, 240}});
    for (const double x : {-1e9, 0.0, 29.0, 30.0})
        QCOMPARE(spline.At(x), 10.0);
    for (const double x : {200.0, 201.0, 255.0, 1e9})
        QCOMPARE(spline.At(x), 240.0);
}

/// Worked out by hand for (0, 0), (1, 1), (2, 0), stretched: the one unknown second derivative solves
/// `2 * (1 + 1) * M = 6 * (-1 - 1)`, so M = -3, and the first cubic is `1.5 t - 0.5 t^3`.
void TestYDCurvesTransformation::ThreePointsGiveTheNaturalSpline()
{
    const Spline spline({{0, 0}, {100, 100}, {200, 0}});
    QCOMPARE(spline.At(50), 100 * (1.5 * 0.5 - 0.5 * 0.125));
    QCOMPARE(spline.At(100), 100.0);
    QCOMPARE(spline.At(150), spline.At(50));
    QVERIFY(std::abs(spline.SecondDerivative(1, 0) - -3.0 / 100) < Tolerance);
}

void TestYDCurvesTransformation::RandomCurvesAreNaturalSplinesThroughTheirPoints()
{
    QRandomGenerator random(1);
    for (int list = 0; list < Lists; ++list) {
        const Spline spline(RandomCurve(random));
        const int last = spline.points.size() - 1;
        const double scale = 256.0 * spline.points.size();
        for (const QPoint& point : spline.points)
            QVERIFY(std::abs(spline.At(point.x()) - point.y()) < Tolerance * scale);
        QVERIFY(std::abs(spline.SecondDerivative(0, 0)) < Tolerance * scale);
        for (int i = 0; i < last; ++i) {
            const double width = spline.points[i + 1].x() - spline.points[i].x();
            const double value =
                ((spline.a[i] * width + spline.b[i]) * width + spline.c[i]) * width + spline.points[i].y();
            QVERIFY(std::abs(value - spline.points[i + 1].y()) < Tolerance * scale);
            const double slope = i + 1 < last ? spline.FirstDerivative(i + 1, 0) : 0.0;
            const double bend = i + 1 < last ? spline.SecondDerivative(i + 1, 0) : 0.0;
            if (i + 1 < last)
                QVERIFY(std::abs(spline.FirstDerivative(i, width) - slope) < Tolerance * scale);
            QVERIFY(std::abs(spline.SecondDerivative(i, width) - bend) < Tolerance * scale);
        }
    }
}

void TestYDCurvesTransformation::PointsThatShareAnXMakeAJump()
{
    const Spline spline({{0, 0}, {100, 50}, {100, 70}, {100, 200}, {200, 100}});
    QCOMPARE(spline.At(50), 25.0); // a line up to the jump
    QVERIFY(std::abs(spline.At(99.999) - 50) < 0.01);
    QCOMPARE(spline.At(100), 200.0);
    QCOMPARE(spline.At(150), 150.0); // and a line behind it
}

void TestYDCurvesTransformation::TwoPointsThatShareAnXAreAStep()
{
    const auto levels = YDCurvesTransformation::LevelsOf({{128, 20}, {128, 230}});
    QCOMPARE(levels[127], 20.0);
    QCOMPARE(levels[128], 230.0);
}

void TestYDCurvesTransformation::OrderingKeepsTheOrderOfEqualX()
{
    const Points points{{9, 1}, {5, 2}, {9, 3}, {-4, 4}, {5, 5}};
    QCOMPARE(YDCurvesTransformation::Ordered(points), Points({{-4, 4}, {5, 2}, {5, 5}, {9, 1}, {9, 3}}));
}

void TestYDCurvesTransformation::LevelsAreTheClampedSplineOfTheOrderedPoints()
{
    QRandomGenerator random(2);
    for (int list = 0; list < Lists; ++list) {
        Points points = RandomCurve(random);
        const Spline spline(points);
        std::swap(points.first(), points.last());
        const auto levels = YDCurvesTransformation::LevelsOf(points);
        for (std::size_t x = 0; x < levels.size(); ++x)
            QCOMPARE(levels[x], std::clamp(spline.At(double(x)), 0.0, 255.0));
    }
}

void TestYDCurvesTransformation::AnyListGivesLevelsInRange_data()
{
    constexpr int Lowest = std::numeric_limits<int>::min();
    constexpr int Highest = std::numeric_limits<int>::max();
    QTest::addColumn<Points>("points");
    QTest::newRow("the same point twice") << Points({{7, 7}, {7, 7}});
    QTest::newRow("the same point many times") << Points(1000, QPoint(100, 100));
    QTest::newRow("descending") << Points({{255, 0}, {128, 200}, {0, 255}});
    QTest::newRow("far apart") << Points({{Lowest, Lowest}, {0, Highest}, {1, Lowest}, {Highest, Highest}});
    QTest::newRow("far left") << Points({{Lowest, 3}, {Lowest + 1, Highest}, {-5, 9}});
    QTest::newRow("far right") << Points({{256, 3}, {300, -9}, {Highest, 9}});
    Points many(1000000);
    QRandomGenerator random(3);
    for (QPoint& point : many)
        point = {random.bounded(-1000, 1000), random.bounded(-1000, 1000)};
    QTest::newRow("a million") << many;
    for (int i = 0; i < many.size(); ++i)
        many[i] = {i - 500000, i % 256};
    QTest::newRow("a million in order") << many;
}

void TestYDCurvesTransformation::AnyListGivesLevelsInRange()
{
    QFETCH(Points, points);
    for (const double level : YDCurvesTransformation::LevelsOf(points))
        QVERIFY(level >= 0.0 && level <= 255.0);
}

void TestYDCurvesTransformation::RandomListsGiveLevelsInRange()
{
    QRandomGenerator random(4);
    for (int list = 0; list < Lists; ++list) {
        const Points points = RandomList(random);
        for (const double level : YDCurvesTransformation::LevelsOf(points))
            QVERIFY(level >= 0.0 && level <= 255.0);
        const Spline unordered(points); // not what it is made for, but nothing bad comes of it
        for (const double x : {-1e10, 0.0, 100.0, 255.0, 1e10})
            QVERIFY(std::isfinite(unordered.At(x)));
    }
}

QTEST_APPLESS_MAIN(TestYDCurvesTransformation)
#include "tst_YDCurvesTransformation.moc"
