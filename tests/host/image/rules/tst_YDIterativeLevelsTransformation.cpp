#include "image/YDIterativeLevelsTransformation.h"
#include "image/YDLevelsTransformation.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace {

constexpr int Lowest = std::numeric_limits<int>::min();
constexpr int Highest = std::numeric_limits<int>::max();
constexpr double Nan = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinite = std::numeric_limits<double>::infinity();
constexpr int Full = 100;

/// The arguments for composite, red, green and blue; neutral at first.
struct Levels
{
    int input[4][2] = {{0, 255}, {0, 255}, {0, 255}, {0, 255}};
    int output[4][2] = {{0, 255}, {0, 255}, {0, 255}, {0, 255}};
    double gamma[4] = {1.0, 1.0, 1.0, 1.0};
    int strength = Full;

    YDIterativeLevelsTransformation Rule() const { return {input, output, gamma, strength}; }
};

YDRGBA32i Mapped(const Levels& levels, const YDRGBA32i& pixel)
{
    YDRGBA32i result = pixel;
    YDIterativeLevelsTransformation rule = levels.Rule();
    rule.SetProcessingBuffer(&result);
    rule.ProcessPixel(0);
    return result;
}

/// What the composite's settings make of each level.
std::array<int, 256> LevelsOf(int inLow, int inHigh, double gamma, int outLow = 0, int outHigh = 255)
{
    Levels levels;
    levels.input[0][0] = inLow;
    levels.input[0][1] = inHigh;
    levels.output[0][0] = outLow;
    levels.output[0][1] = outHigh;
    levels.gamma[0] = gamma;
    const YDIterativeLevelsTransformation rule = levels.Rule();
    std::array<int, 256> mapped;
    for (std::size_t level = 0; level < mapped.size(); ++level) {
        const auto grey = static_cast<quint8>(level);
        YDRGBA32i pixel(grey, grey, grey, 0);
        rule.Map(pixel);
        mapped[level] = pixel.b;
    }
    return mapped;
}

int Level(int level, int inLow, int inHigh, double gamma, int outLow = 0, int outHigh = 255)
{
    return LevelsOf(inLow, inHigh, gamma, outLow, outHigh)[std::size_t(level)];
}

} // namespace

class TestYDIterativeLevelsTransformation : public QObject
{
    Q_OBJECT

private slots:
    void TheRuleGivesTheLevelsOfItsFormula_data();
    void TheRuleGivesTheLevelsOfItsFormula();
    void NeutralSettingsAreTheIdentity();
    void EachColourHasItsRange();
    void TheCompositeFollowsTheRoundedColours();
    void StrengthMixesWithTheOriginal_data();
    void StrengthMixesWithTheOriginal();
    void AnInputRangeWithoutWidthIsAStep_data();
    void AnInputRangeWithoutWidthIsAStep();
    void ArgumentsOutsideCountAsTheNearestBound();
    void AnyArgumentsAreHarmless();
    void LevelsRiseWithTheirInput();
    void RowsEqualPixels();
    void TheFunctorIsTheSameRule();
};

void TestYDIterativeLevelsTransformation::TheRuleGivesTheLevelsOfItsFormula_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<QVector<int>>("ranges"); // input low and high, output low and high
    QTest::addColumn<double>("gamma");
    QTest::addColumn<int>("expected");
    const QVector<int> all{0, 255, 0, 255};
    QTest::newRow("below the input") << 50 << QVector<int>{50, 200, 0, 255} << 1.0 << 0;
    QTest::newRow("above the input") << 200 << QVector<int>{50, 200, 0, 255} << 1.0 << 255;
    // 255 * (100 - 50) / 150
    QTest::newRow("stretched") << 100 << QVector<int>{50, 200, 0, 255} << 1.0 << 85;
    // 255 * 3 / 150 = 5.1
    QTest::newRow("rounded down") << 53 << QVector<int>{50, 200, 0, 255} << 1.0 << 5;
    // 255 * 5 / 150 = 8.5
    QTest::newRow("a half is rounded up") << 55 << QVector<int>{50, 200, 0, 255} << 1.0 << 9;
    // 255 * sqrt(64 / 255) = 127.75
    QTest::newRow("brighter middle") << 64 << all << 2.0 << 128;
    // 255 * (128 / 255)^2 = 64.25
    QTest::newRow("darker middle") << 128 << all << 0.5 << 64;
    // 20 + 100 * 51 / 255
    QTest::newRow("onto an output range") << 51 << QVector<int>{0, 255, 20, 120} << 1.0 << 40;
    QTest::newRow("the output's low") << 0 << QVector<int>{0, 255, 20, 120} << 1.0 << 20;
    QTest::newRow("the output's high") << 255 << QVector<int>{0, 255, 20, 120} << 1.0 << 120;
    QTest::newRow("inverted") << 51 << QVector<int>{0, 255, 255, 0} << 1.0 << 204;
    QTest::newRow("an output of one level") << 51 << QVector<int>{0, 255, 77, 77} << 1.0 << 77;
    // 200 - 150 * sqrt(50 / 200) = 125
    QTest::newRow("all at once") << 60 << QVector<int>{10, 210, 200, 50} << 2.0 << 125;
    QTest::newRow("black stays black at the largest gamma") << 0 << all << 9.99 << 0;
    // 255 * (1 / 255)^(1 / 9.99) = 146.4
    QTest::newRow("largest gamma") << 1 << all << 9.99 << 146;
    QTest::newRow("smallest gamma") << 254 << all << 0.01 << 172; // 255 * (254 / 255)^100 = 172.1
}

void TestYDIterativeLevelsTransformation::TheRuleGivesTheLevelsOfItsFormula()
{
    QFETCH(int, level);
    QFETCH(QVector<int>, ranges);
    QFETCH(double, gamma);
    QFETCH(int, expected);
    QCOMPARE(Level(level, ranges[0], ranges[1], gamma, ranges[2], ranges[3]), expected);
}

void TestYDIterativeLevelsTransformation::NeutralSettingsAreTheIdentity()
{
    for (int v = 0; v < 256; ++v) {
        const YDRGBA32i pixel(quint8(v), quint8(255 - v), quint8(v / 2), quint8(v));
        QVERIFY(Mapped(Levels(), pixel) == pixel);
    }
}

void TestYDIterativeLevelsTransformation::EachColourHasItsRange()
{
    Levels levels;
    for (int channel = 1; channel <= 3; ++channel)
        levels.output[channel][0] = levels.output[channel][1] = 10 * channel;
    QVERIFY(Mapped(levels, YDRGBA32i(1, 2, 3, 4)) == YDRGBA32i(30, 20, 10, 4));
}

void TestYDIterativeLevelsTransformation::TheCompositeFollowsTheRoundedColours()
{
    Levels levels;
    levels.output[1][1] = 100; // red 4 becomes 1.57, which is 2 as a level
    levels.input[0][1] = 100;  // and that 5.1
    QCOMPARE(int(Mapped(levels, YDRGBA32i(0, 0, 4, 0)).r), 5);
    QCOMPARE(int(Mapped(levels, YDRGBA32i(4, 0, 0, 0)).b), 10); // 10.2 by the composite alone
}

void TestYDIterativeLevelsTransformation::StrengthMixesWithTheOriginal_data()
{
    QTest::addColumn<int>("strength");
    QTest::addColumn<int>("expected"); // of level 100, which the levels take to 200
    QTest::newRow("none") << 0 << 100;
    QTest::newRow("half") << 50 << 150;
    QTest::newRow("all") << 100 << 200;
    QTest::newRow("below") << Lowest << 100;
    QTest::newRow("above") << Highest << 200;
}

void TestYDIterativeLevelsTransformation::StrengthMixesWithTheOriginal()
{
    QFETCH(int, strength);
    QFETCH(int, expected);
    Levels levels;
    levels.output[0][0] = levels.output[0][1] = 200;
    levels.strength = strength;
    QCOMPARE(int(Mapped(levels, YDRGBA32i(100, 100, 100, 0)).g), expected);
}

void TestYDIterativeLevelsTransformation::AnInputRangeWithoutWidthIsAStep_data()
{
    QTest::addColumn<int>("low");
    QTest::addColumn<int>("high");
    QTest::newRow("empty") << 100 << 100;
    QTest::newRow("inverted") << 100 << 60;
    QTest::newRow("far inverted") << 100 << Lowest;
}

void TestYDIterativeLevelsTransformation::AnInputRangeWithoutWidthIsAStep()
{
    QFETCH(int, low);
    QFETCH(int, high);
    for (const double gamma : {0.01, 1.0, 9.99, Nan}) {
        QCOMPARE(Level(99, low, high, gamma, 30, 190), 30);
        QCOMPARE(Level(100, low, high, gamma, 30, 190), 190);
    }
    QCOMPARE(Level(0, 0, 0, 1.0), 255); // all of it, as with a threshold of 0
    QCOMPARE(Level(254, 255, 255, 1.0), 0);
    QCOMPARE(Level(255, 255, 255, 1.0), 255);
}

void TestYDIterativeLevelsTransformation::ArgumentsOutsideCountAsTheNearestBound()
{
    const auto neutral = LevelsOf(0, 255, 1.0);
    QVERIFY(LevelsOf(Lowest, Highest, 1.0, Lowest, Highest) == neutral);
    QVERIFY(LevelsOf(0, 255, Nan) == neutral);
    for (const double gamma : {0.0, -0.0, -1.0, -Infinite, 1e-300})
        QVERIFY(LevelsOf(0, 255, gamma) == LevelsOf(0, 255, 0.01));
    for (const double gamma : {10.0, 1e300, Infinite})
        QVERIFY(LevelsOf(0, 255, gamma) == LevelsOf(0, 255, 9.99));
}

void TestYDIterativeLevelsTransformation::AnyArgumentsAreHarmless()
{
    QRandomGenerator random(5);
    const auto any = [&random] {
        const int few[] = {Lowest, Highest, -1, 0, 1, 255, 256};
        return random.bounded(2) ? few[random.bounded(7)] : int(random.generate());
    };
    for (int round = 0; round < 2000; ++round) {
        Levels levels;
        for (int channel = 0; channel < 4; ++channel) {
            for (int end = 0; end < 2; ++end) {
                levels.input[channel][end] = any();
                levels.output[channel][end] = any();
            }
            levels.gamma[channel] = std::ldexp(random.generateDouble() - 0.5, random.bounded(-1000, 1000));
        }
        levels.strength = any();
        const quint8 level = quint8(random.bounded(256));
        QCOMPARE(int(Mapped(levels, YDRGBA32i(level, level, level, 9)).a), 9);
    }
}

void TestYDIterativeLevelsTransformation::LevelsRiseWithTheirInput()
{
    for (const double gamma : {0.01, 0.4, 1.0, 2.3, 9.99})
        for (int low = 0; low < 256; low += 15)
            for (int high = 0; high < 256; high += 15) {
                const auto rising = LevelsOf(low, high, gamma, 5, 250);
                QVERIFY(std::is_sorted(rising.begin(), rising.end()));
                const auto falling = LevelsOf(low, high, gamma, 250, 5);
                QVERIFY(std::is_sorted(falling.rbegin(), falling.rend()));
            }
}

namespace {

/// A different setting for each channel.
Levels OfAllChannels()
{
    Levels levels;
    for (int channel = 0; channel < 4; ++channel) {
        levels.input[channel][0] = 10 + 5 * channel;
        levels.input[channel][1] = 240 - 7 * channel;
        levels.output[channel][0] = channel == 2 ? 250 : 3 * channel;
        levels.output[channel][1] = channel == 2 ? 4 : 255 - channel;
        levels.gamma[channel] = 0.6 + 0.4 * channel;
    }
    return levels;
}

std::array<YDRGBA32i, 256> Ramp()
{
    std::array<YDRGBA32i, 256> row;
    for (std::size_t v = 0; v < row.size(); ++v)
        row[v] = YDRGBA32i(quint8(v), quint8(255 - v), quint8(v + 90), quint8(v));
    return row;
}

} // namespace

void TestYDIterativeLevelsTransformation::RowsEqualPixels()
{
    const Levels levels = OfAllChannels();
    auto row = Ramp();
    levels.Rule().ProcessRow(row.data(), int(row.size()));
    const auto source = Ramp();
    for (std::size_t i = 0; i < row.size(); ++i)
        QVERIFY(row[i] == Mapped(levels, source[i]));
    QVERIFY(row != source);
}

void TestYDIterativeLevelsTransformation::TheFunctorIsTheSameRule()
{
    const Levels levels = OfAllChannels();
    const YDLevelsTransformation functor(levels.input, levels.output, levels.gamma, levels.strength);
    auto row = Ramp();
    functor.ProcessRow(row.data(), int(row.size()));
    const auto source = Ramp();
    for (std::size_t i = 0; i < row.size(); ++i) {
        YDRGBA32i pixel = source[i];
        functor(pixel);
        QVERIFY(pixel == Mapped(levels, source[i]));
        QVERIFY(pixel == row[i]);
    }
}

QTEST_APPLESS_MAIN(TestYDIterativeLevelsTransformation)
#include "tst_YDIterativeLevelsTransformation.moc"
