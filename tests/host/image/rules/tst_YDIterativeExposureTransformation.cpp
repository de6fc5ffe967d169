#include "RuleKit.h"
#include "image/YDIterativeExposureTransformation.h"

#include <QTest>

#include <limits>

namespace {

quint8 Level(double exposure, double offset, quint8 level)
{
    return RuleKit::LevelOf(YDIterativeExposureTransformation(exposure, offset), level);
}

} // namespace

class TestYDIterativeExposureTransformation : public QObject
{
    Q_OBJECT

private slots:
    void TheRuleGivesTheLevelsOfItsFormula_data();
    void TheRuleGivesTheLevelsOfItsFormula();
    void NeutralSettingsAreTheIdentity();
    void AlphaIsCarriedThrough();
    void LevelsRiseWithTheirInput();
    void SettingsOutsideCountAsTheNearestBound();
    void WhatIsNotANumberIsNeutral();
    void RowsEqualPixels();
};

void TestYDIterativeExposureTransformation::TheRuleGivesTheLevelsOfItsFormula_data()
{
    QTest::addColumn<double>("exposure");
    QTest::addColumn<double>("offset");
    QTest::addColumn<int>("level");
    QTest::addColumn<int>("expected");
    QTest::newRow("neutral, black") << 0.0 << 0.0 << 0 << 0;
    QTest::newRow("neutral, white") << 0.0 << 0.0 << 255 << 255;
    // light 5 / 255 / 12.92, doubled, is still on the straight part
    QTest::newRow("a stop doubles levels near black") << 1.0 << 0.0 << 5 << 10;
    // light 0.21586, doubled 0.43172; 255 * (1.055 * 0.43172^(1/2.4) - 0.055) = 175.56
    QTest::newRow("a stop brighter") << 1.0 << 0.0 << 128 << 176;
    // light 0.21586, halved 0.10793; 255 * (1.055 * 0.10793^(1/2.4) - 0.055) = 92.37
    QTest::newRow("a stop darker") << -1.0 << 0.0 << 128 << 92;
    // 255 * (1.055 * 0.5^(1/2.4) - 0.055) = 187.52
    QTest::newRow("white a stop darker") << -1.0 << 0.0 << 255 << 188;
    QTest::newRow("offset on black") << 0.0 << 0.5 << 0 << 188;
    QTest::newRow("offset from white") << 0.0 << -0.5 << 255 << 188;
    QTest::newRow("offset below black is clamped") << 0.0 << -0.5 << 128 << 0;
    QTest::newRow("above white is clamped") << 3.0 << 0.0 << 200 << 255;
    QTest::newRow("the gain comes before the offset") << -1.0 << 0.5 << 255 << 255;
    QTest::newRow("full exposure leaves black") << 20.0 << 0.0 << 0 << 0;
    QTest::newRow("full exposure takes the next level to white") << 20.0 << 0.0 << 1 << 255;
}

void TestYDIterativeExposureTransformation::TheRuleGivesTheLevelsOfItsFormula()
{
    QFETCH(double, exposure);
    QFETCH(double, offset);
    QFETCH(int, level);
    QFETCH(int, expected);
    QCOMPARE(int(Level(exposure, offset, quint8(level))), expected);
}

void TestYDIterativeExposureTransformation::NeutralSettingsAreTheIdentity()
{
    for (int v = 0; v < 256; ++v)
        QCOMPARE(int(Level(0.0, 0.0, quint8(v))), v);
}

void TestYDIterativeExposureTransformation::AlphaIsCarriedThrough()
{
    RuleKit::CheckThatAlphaStays(YDIterativeExposureTransformation(0.7, -0.03));
}

void TestYDIterativeExposureTransformation::LevelsRiseWithTheirInput()
{
    for (int exposure = -20; exposure <= 20; ++exposure)
        for (const double offset : {-0.5, -0.1, 0.0, 0.1, 0.5})
            for (int v = 1; v < 256; ++v)
                QVERIFY(Level(exposure, offset, quint8(v)) >= Level(exposure, offset, quint8(v - 1)));
}

void TestYDIterativeExposureTransformation::SettingsOutsideCountAsTheNearestBound()
{
    constexpr double Infinite = std::numeric_limits<double>::infinity();
    constexpr double Highest = std::numeric_limits<double>::max();
    for (int v = 0; v < 256; ++v) {
        for (const double far : {20.5, Highest, Infinite}) {
            QCOMPARE(Level(far, 0.0, quint8(v)), Level(20.0, 0.0, quint8(v)));
            QCOMPARE(Level(-far, 0.0, quint8(v)), Level(-20.0, 0.0, quint8(v)));
            QCOMPARE(Level(0.0, far, quint8(v)), Level(0.0, 0.5, quint8(v)));
            QCOMPARE(Level(0.0, -far, quint8(v)), Level(0.0, -0.5, quint8(v)));
        }
    }
}

void TestYDIterativeExposureTransformation::WhatIsNotANumberIsNeutral()
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (int v = 0; v < 256; ++v) {
        QCOMPARE(int(Level(nan, nan, quint8(v))), v);
        QCOMPARE(Level(nan, 0.25, quint8(v)), Level(0.0, 0.25, quint8(v)));
        QCOMPARE(Level(1.0, nan, quint8(v)), Level(1.0, 0.0, quint8(v)));
    }
}

void TestYDIterativeExposureTransformation::RowsEqualPixels()
{
    RuleKit::CheckThatRowsEqualPixels(YDIterativeExposureTransformation(0.7, -0.03));
}

QTEST_APPLESS_MAIN(TestYDIterativeExposureTransformation)
#include "tst_YDIterativeExposureTransformation.moc"
