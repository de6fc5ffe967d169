#include "RuleKit.h"
#include "image/YDIterativePosterizeTransformation.h"

#include <QTest>

#include <algorithm>
#include <array>
#include <limits>

namespace {

quint8 Level(int levels, quint8 level)
{
    return RuleKit::LevelOf(YDIterativePosterizeTransformation(levels), level);
}

} // namespace

class TestYDIterativePosterizeTransformation : public QObject
{
    Q_OBJECT

private slots:
    void TheRuleGivesTheLevelsOfItsFormula_data();
    void TheRuleGivesTheLevelsOfItsFormula();
    void NeutralSettingsAreTheIdentity();
    void AlphaIsCarriedThrough();
    void LevelsRiseWithTheirInput();
    void SettingsOutsideCountAsTheNearestBound();
    void ThereAreAsManyLevelsAsAskedFor();
    void RowsEqualPixels();
};

void TestYDIterativePosterizeTransformation::TheRuleGivesTheLevelsOfItsFormula_data()
{
    QTest::addColumn<int>("levels");
    QTest::addColumn<int>("level");
    QTest::addColumn<int>("expected");
    QTest::newRow("4, end of the first band") << 4 << 63 << 0;
    QTest::newRow("4, second band") << 4 << 64 << 85;
    QTest::newRow("4, end of the second band") << 4 << 127 << 85;
    QTest::newRow("4, third band") << 4 << 128 << 170;
    QTest::newRow("4, last band") << 4 << 192 << 255;
    QTest::newRow("2, dark half") << 2 << 127 << 0;
    QTest::newRow("2, light half") << 2 << 128 << 255;
    // 85 * 3 = 255 and 86 * 3 = 258; the middle level is 127.5
    QTest::newRow("3, end of the first band") << 3 << 85 << 0;
    QTest::newRow("3, the middle is rounded away from zero") << 3 << 86 << 128;
    QTest::newRow("3, end of the second band") << 3 << 170 << 128;
    QTest::newRow("3, last band") << 3 << 171 << 255;
    // 2 * 255 / 256 is in band 1, 255 / 254 of a level
    QTest::newRow("255, the first two levels share a band") << 255 << 1 << 0;
    QTest::newRow("255, second band") << 255 << 2 << 1;
    QTest::newRow("255, white") << 255 << 255 << 255;
}

void TestYDIterativePosterizeTransformation::TheRuleGivesTheLevelsOfItsFormula()
{
    QFETCH(int, levels);
    QFETCH(int, level);
    QFETCH(int, expected);
    QCOMPARE(int(Level(levels, quint8(level))), expected);
}

void TestYDIterativePosterizeTransformation::NeutralSettingsAreTheIdentity()
{
    for (int v = 0; v < 256; ++v)
        QCOMPARE(int(Level(256, quint8(v))), v);
}

void TestYDIterativePosterizeTransformation::AlphaIsCarriedThrough()
{
    RuleKit::CheckThatAlphaStays(YDIterativePosterizeTransformation(5));
}

void TestYDIterativePosterizeTransformation::LevelsRiseWithTheirInput()
{
    for (int levels = 2; levels <= 256; ++levels)
        for (int v = 1; v < 256; ++v)
            QVERIFY(Level(levels, quint8(v)) >= Level(levels, quint8(v - 1)));
}

void TestYDIterativePosterizeTransformation::SettingsOutsideCountAsTheNearestBound()
{
    for (int v = 0; v < 256; ++v) {
        for (const int low : {1, 0, -1, std::numeric_limits<int>::min()})
            QCOMPARE(Level(low, quint8(v)), Level(2, quint8(v)));
        for (const int high : {257, std::numeric_limits<int>::max()})
            QCOMPARE(int(Level(high, quint8(v))), v);
    }
}

void TestYDIterativePosterizeTransformation::ThereAreAsManyLevelsAsAskedFor()
{
    for (int levels = 2; levels <= 256; ++levels) {
        std::array<bool, 256> isUsed{};
        for (int v = 0; v < 256; ++v)
            isUsed[Level(levels, quint8(v))] = true;
        QCOMPARE(int(std::count(isUsed.begin(), isUsed.end(), true)), levels);
        QVERIFY(isUsed[0] && isUsed[255]);
    }
}

void TestYDIterativePosterizeTransformation::RowsEqualPixels()
{
    RuleKit::CheckThatRowsEqualPixels(YDIterativePosterizeTransformation(5));
}

QTEST_APPLESS_MAIN(TestYDIterativePosterizeTransformation)
#include "tst_YDIterativePosterizeTransformation.moc"
