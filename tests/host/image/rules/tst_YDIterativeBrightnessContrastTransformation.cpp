#include "RuleKit.h"
#include "image/YDIterativeBrightnessContrastTransformation.h"

#include <QTest>

#include <limits>

namespace {

quint8 Level(int brightness, int contrast, quint8 level)
{
    return RuleKit::LevelOf(YDIterativeBrightnessContrastTransformation(brightness, contrast), level);
}

} // namespace

class TestYDIterativeBrightnessContrastTransformation : public QObject
{
    Q_OBJECT

private slots:
    void TheRuleGivesTheLevelsOfItsFormula_data();
    void TheRuleGivesTheLevelsOfItsFormula();
    void NeutralSettingsAreTheIdentity();
    void AlphaIsCarriedThrough();
    void LevelsRiseWithTheirInput();
    void SettingsOutsideCountAsTheNearestBound();
    void RowsEqualPixels();
};

void TestYDIterativeBrightnessContrastTransformation::TheRuleGivesTheLevelsOfItsFormula_data()
{
    QTest::addColumn<int>("brightness");
    QTest::addColumn<int>("contrast");
    QTest::addColumn<int>("level");
    QTest::addColumn<int>("expected");
    QTest::newRow("neutral, black") << 0 << 0 << 0 << 0;
    QTest::newRow("neutral, white") << 0 << 0 << 255 << 255;
    QTest::newRow("brighter") << 30 << 0 << 100 << 130;
    QTest::newRow("brighter is clamped") << 30 << 0 << 240 << 255;
    QTest::newRow("darker is clamped") << -30 << 0 << 20 << 0;
    // (200 - 127.5) * 117 / 127 + 127.5 = 194.29
    QTest::newRow("less contrast") << 0 << -10 << 200 << 194;
    // (200 - 127.5) * 127 / 117 + 127.5 = 206.197
    QTest::newRow("more contrast") << 0 << 10 << 200 << 206;
    // (50 + 30 - 127.5) * 117 / 127 + 127.5 = 83.74
    QTest::newRow("brightness before contrast") << 30 << -10 << 50 << 84;
    QTest::newRow("no contrast at all is mid grey") << 0 << -127 << 3 << 128;
    QTest::newRow("full contrast, below mid grey") << 0 << 127 << 127 << 0;
    QTest::newRow("full contrast, above mid grey") << 0 << 127 << 128 << 255;
}

void TestYDIterativeBrightnessContrastTransformation::TheRuleGivesTheLevelsOfItsFormula()
{
    QFETCH(int, brightness);
    QFETCH(int, contrast);
    QFETCH(int, level);
    QFETCH(int, expected);
    QCOMPARE(int(Level(brightness, contrast, quint8(level))), expected);
}

void TestYDIterativeBrightnessContrastTransformation::NeutralSettingsAreTheIdentity()
{
    for (int v = 0; v < 256; ++v)
        QCOMPARE(int(Level(0, 0, quint8(v))), v);
}

void TestYDIterativeBrightnessContrastTransformation::AlphaIsCarriedThrough()
{
    RuleKit::CheckThatAlphaStays(YDIterativeBrightnessContrastTransformation(50, -50));
}

void TestYDIterativeBrightnessContrastTransformation::LevelsRiseWithTheirInput()
{
    for (int contrast = -127; contrast <= 127; ++contrast)
        for (int v = 1; v < 256; ++v)
            QVERIFY(Level(13, contrast, quint8(v)) >= Level(13, contrast, quint8(v - 1)));
}

void TestYDIterativeBrightnessContrastTransformation::SettingsOutsideCountAsTheNearestBound()
{
    constexpr int Lowest = std::numeric_limits<int>::min();
    constexpr int Highest = std::numeric_limits<int>::max();
    for (int v = 0; v < 256; ++v) {
        QCOMPARE(Level(Lowest, Highest, quint8(v)), Level(-127, 127, quint8(v)));
        QCOMPARE(Level(Highest, Lowest, quint8(v)), Level(127, -127, quint8(v)));
    }
}

void TestYDIterativeBrightnessContrastTransformation::RowsEqualPixels()
{
    RuleKit::CheckThatRowsEqualPixels(YDIterativeBrightnessContrastTransformation(-20, 60));
}

QTEST_APPLESS_MAIN(TestYDIterativeBrightnessContrastTransformation)
#include "tst_YDIterativeBrightnessContrastTransformation.moc"
