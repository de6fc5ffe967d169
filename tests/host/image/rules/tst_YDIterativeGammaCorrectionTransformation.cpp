#include "RuleKit.h"
#include "image/YDIterativeGammaCorrectionTransformation.h"

#include <QTest>

#include <limits>

namespace {

quint8 Level(double gamma, quint8 level)
{
    return RuleKit::LevelOf(YDIterativeGammaCorrectionTransformation(gamma), level);
}

} // namespace

class TestYDIterativeGammaCorrectionTransformation : public QObject
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

void TestYDIterativeGammaCorrectionTransformation::TheRuleGivesTheLevelsOfItsFormula_data()
{
    QTest::addColumn<double>("gamma");
    QTest::addColumn<int>("level");
    QTest::addColumn<int>("expected");
    QTest::newRow("black stays") << 2.0 << 0 << 0;
    QTest::newRow("white stays") << 2.0 << 255 << 255;
    // 255 * (64 / 255)^(1/2) = 127.75
    QTest::newRow("2 is the square root") << 2.0 << 64 << 128;
    // 255 * (128 / 255)^2 = 64.25
    QTest::newRow("a half is the square") << 0.5 << 128 << 64;
    // 255 * (1 / 255)^(1/5) = 84.18
    QTest::newRow("the highest") << 5.0 << 1 << 84;
    // 255 * (254 / 255)^100 = 172.14
    QTest::newRow("the lowest") << 0.01 << 254 << 172;
    QTest::newRow("the lowest, far below white") << 0.01 << 200 << 0;
}

void TestYDIterativeGammaCorrectionTransformation::TheRuleGivesTheLevelsOfItsFormula()
{
    QFETCH(double, gamma);
    QFETCH(int, level);
    QFETCH(int, expected);
    QCOMPARE(int(Level(gamma, quint8(level))), expected);
}

void TestYDIterativeGammaCorrectionTransformation::NeutralSettingsAreTheIdentity()
{
    for (int v = 0; v < 256; ++v)
        QCOMPARE(int(Level(1.0, quint8(v))), v);
}

void TestYDIterativeGammaCorrectionTransformation::AlphaIsCarriedThrough()
{
    RuleKit::CheckThatAlphaStays(YDIterativeGammaCorrectionTransformation(1.7));
}

void TestYDIterativeGammaCorrectionTransformation::LevelsRiseWithTheirInput()
{
    for (int hundredths = 1; hundredths <= 500; ++hundredths)
        for (int v = 1; v < 256; ++v)
            QVERIFY(Level(hundredths / 100.0, quint8(v)) >= Level(hundredths / 100.0, quint8(v - 1)));
}

void TestYDIterativeGammaCorrectionTransformation::SettingsOutsideCountAsTheNearestBound()
{
    constexpr double Infinite = std::numeric_limits<double>::infinity();
    for (int v = 0; v < 256; ++v) {
        for (const double low : {0.009, 0.0, -0.0, -1.0, -Infinite})
            QCOMPARE(Level(low, quint8(v)), Level(0.01, quint8(v)));
        for (const double high : {5.1, std::numeric_limits<double>::max(), Infinite})
            QCOMPARE(Level(high, quint8(v)), Level(5.0, quint8(v)));
    }
}

void TestYDIterativeGammaCorrectionTransformation::WhatIsNotANumberIsNeutral()
{
    for (int v = 0; v < 256; ++v)
        QCOMPARE(int(Level(std::numeric_limits<double>::quiet_NaN(), quint8(v))), v);
}

void TestYDIterativeGammaCorrectionTransformation::RowsEqualPixels()
{
    RuleKit::CheckThatRowsEqualPixels(YDIterativeGammaCorrectionTransformation(1.7));
}

QTEST_APPLESS_MAIN(TestYDIterativeGammaCorrectionTransformation)
#include "tst_YDIterativeGammaCorrectionTransformation.moc"
