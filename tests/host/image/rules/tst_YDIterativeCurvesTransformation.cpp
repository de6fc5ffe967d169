#include "image/YDCurvesTransformation.h"
#include "image/YDIterativeCurvesTransformation.h"

#include <QRandomGenerator>
#include <QTest>

#include <array>
#include <cmath>
#include <limits>

namespace {

constexpr int Lists = 10000;
constexpr int Full = 100;

using Points = QVector<QPoint>;
using Curves = std::array<Points, 4>;

const Points Straight{{0, 0}, {255, 255}};

YDRGBA32i Mapped(const Curves& curves, int strength, const YDRGBA32i& pixel)
{
    YDRGBA32i result = pixel;
    YDIterativeCurvesTransformation rule(curves.data(), strength);
    rule.SetProcessingBuffer(&result);
    rule.ProcessPixel(0);
    return result;
}

/// All levels in all three channels, with alphas.
std::array<YDRGBA32i, 256> Ramp()
{
    std::array<YDRGBA32i, 256> row;
    for (std::size_t v = 0; v < row.size(); ++v)
        row[v] = YDRGBA32i(quint8(v), quint8(v), quint8(v), quint8(255 - v));
    return row;
}

Points RandomList(QRandomGenerator& random)
{
    Points points(random.bounded(18));
    for (QPoint& point : points)
        point = {random.bounded(-20, 280), random.bounded(-20, 280)};
    return points;
}

} // namespace

class TestYDIterativeCurvesTransformation : public QObject
{
    Q_OBJECT

private slots:
    void StraightCurvesAreTheIdentity();
    void ListsWithFewerThanTwoPointsAreTheIdentity();
    void EachColourHasItsCurve();
    void TheCompositeCurveFollowsTheColours();
    void StrengthMixesWithTheOriginal_data();
    void StrengthMixesWithTheOriginal();
    void AppliedLevelsAreTheRoundedCurve();
    void RowsEqualPixels();
};

void TestYDIterativeCurvesTransformation::StraightCurvesAreTheIdentity()
{
    const Curves curves{Straight, Straight, Straight, Straight};
    auto row = Ramp();
    YDIterativeCurvesTransformation(curves.data(), Full).ProcessRow(row.data(), int(row.size()));
    QVERIFY(row == Ramp());
}

void TestYDIterativeCurvesTransformation::ListsWithFewerThanTwoPointsAreTheIdentity()
{
    const Curves curves{Points(), Points({{9, 200}}), Points(), Points({{255, 0}})};
    auto row = Ramp();
    YDIterativeCurvesTransformation(curves.data(), Full).ProcessRow(row.data(), int(row.size()));
    QVERIFY(row == Ramp());
}

void TestYDIterativeCurvesTransformation::EachColourHasItsCurve()
{
    const Curves curves{Straight, Points({{0, 10}, {255, 10}}), Points({{0, 20}, {255, 20}}),
                        Points({{0, 30}, {255, 30}})};
    QVERIFY(Mapped(curves, Full, YDRGBA32i(1, 2, 3, 4)) == YDRGBA32i(30, 20, 10, 4));
}

void TestYDIterativeCurvesTransformation::TheCompositeCurveFollowsTheColours()
{
    // Red is inverted, then everything halved.
    const Curves curves{Points({{0, 0}, {250, 125}}), Points({{0, 255}, {255, 0}}), Straight, Straight};
    QVERIFY(Mapped(curves, Full, YDRGBA32i(40, 60, 155, 9)) == YDRGBA32i(20, 30, 50, 9));
}

void TestYDIterativeCurvesTransformation::StrengthMixesWithTheOriginal_data()
{
    QTest::addColumn<int>("strength");
    QTest::addColumn<int>("expected"); // of level 100, which the curve takes to 200
    QTest::newRow("none") << 0 << 100;
    QTest::newRow("a quarter") << 25 << 125;
    QTest::newRow("one per cent") << 1 << 101;
    QTest::newRow("all") << 100 << 200;
    QTest::newRow("below") << std::numeric_limits<int>::min() << 100;
    QTest::newRow("above") << std::numeric_limits<int>::max() << 200;
}

void TestYDIterativeCurvesTransformation::StrengthMixesWithTheOriginal()
{
    QFETCH(int, strength);
    QFETCH(int, expected);
    const Curves curves{Points({{0, 200}, {255, 200}}), Straight, Straight, Straight};
    QCOMPARE(int(Mapped(curves, strength, YDRGBA32i(100, 100, 100, 0)).r), expected);
}

void TestYDIterativeCurvesTransformation::AppliedLevelsAreTheRoundedCurve()
{
    QRandomGenerator random(1);
    for (int list = 0; list < Lists; ++list) {
        const Curves curves{RandomList(random), Straight, Straight, Straight};
        const auto levels = YDCurvesTransformation::LevelsOf(curves[0]);
        auto row = Ramp();
        YDIterativeCurvesTransformation(curves.data(), Full).ProcessRow(row.data(), int(row.size()));
        for (std::size_t v = 0; v < row.size(); ++v) {
            const auto expected = quint8(std::lround(levels[v]));
            QVERIFY(row[v] == YDRGBA32i(expected, expected, expected, quint8(255 - v)));
        }
    }
}

void TestYDIterativeCurvesTransformation::RowsEqualPixels()
{
    const Curves curves{Points({{0, 30}, {90, 60}, {255, 240}}), Points({{10, 0}, {128, 190}, {255, 255}}),
                        Points({{0, 255}, {100, 40}, {255, 0}}), Points({{40, 0}, {41, 255}})};
    auto row = Ramp();
    auto pixels = row;
    YDIterativeCurvesTransformation rule(curves.data(), 70);
    rule.ProcessRow(row.data(), int(row.size()));
    rule.SetProcessingBuffer(pixels.data());
    for (qsizetype i = 0; i < qsizetype(pixels.size()); ++i)
        rule.ProcessPixel(i);
    QVERIFY(row == pixels);
    QVERIFY(row != Ramp());
}

QTEST_APPLESS_MAIN(TestYDIterativeCurvesTransformation)
#include "tst_YDIterativeCurvesTransformation.moc"
