#include "AutomaticInputRange.h"

#include <QTest>

#include <array>
#include <numeric>

namespace {

using Counts = std::array<qint64, 256>;

LevelRange Automatic(const Counts& counts)
{
    LevelRange occupied{255, 0};
    for (int level = 0; level < 256; ++level)
        if (counts[std::size_t(level)] > 0) {
            occupied.low = std::min(occupied.low, level);
            occupied.high = level;
        }
    const double pixels = double(std::accumulate(counts.begin(), counts.end(), qint64(0)));
    return AutomaticInputRange(
        occupied, [&](int level) { return counts[std::size_t(level)]; }, pixels);
}

/// A thousand pixels spread evenly over the levels 100..199, ten in each, after the given changes.
Counts Plateau()
{
    Counts counts{};
    std::fill(counts.begin() + 100, counts.begin() + 200, 10);
    return counts;
}

} // namespace

class TestAutomaticInputRange : public QObject
{
    Q_OBJECT

private slots:
    void EndsThatCountEnoughStay();
    void TheLowEndIsTheLastLevelUnderTwoPerMille();
    void TheHighEndIsTheFirstLevelThatReachesTheRest();
    void ExactlyTwoPerMilleIsNotUnderTheLimit();
    void ExactlyTheRestReachesTheLimit();
    void EvenlyFilledLevelsAllStay();
    void TheRangeIsWideEnough_data();
    void TheRangeIsWideEnough();
    void WithoutPixelsTheRangeIsDefined();
};

void TestAutomaticInputRange::EndsThatCountEnoughStay()
{
    const LevelRange range = Automatic(Plateau()); // the first level alone makes ten per mille
    QCOMPARE(range.low, 100);
    QCOMPARE(range.high, 199);
}

void TestAutomaticInputRange::TheLowEndIsTheLastLevelUnderTwoPerMille()
{
    Counts counts = Plateau();
    counts[20] = 1;
    counts[60] = 1;                      // 2 of 1002 pixels: 0.1996 per cent
    QCOMPARE(Automatic(counts).low, 99); // the empty levels up to the plateau are under it too
    counts[61] = 1;                      // 3 of 1003
    QCOMPARE(Automatic(counts).low, 60);
    counts[20] = 3; // alone 3 of 1005
    QCOMPARE(Automatic(counts).low, 20);
}

void TestAutomaticInputRange::TheHighEndIsTheFirstLevelThatReachesTheRest()
{
    Counts counts = Plateau();
    counts[230] = 1;
    counts[250] = 1; // up to 199 there are 1000 of 1002: 99.8004 per cent
    QCOMPARE(Automatic(counts).high, 199);
    counts[250] = 2; // 1000 of 1003: 99.7 per cent, with level 230 99.8006
    QCOMPARE(Automatic(counts).high, 230);
    counts[250] = 5; // 1001 of 1006: 99.5 per cent
    QCOMPARE(Automatic(counts).high, 250);
}

void TestAutomaticInputRange::ExactlyTwoPerMilleIsNotUnderTheLimit()
{
    Counts counts = Plateau();
    counts[20] = 1;
    counts[60] = 1;
    counts[199] = 8; // 1000 in all, and 2 * (1.0 / 1000) is 0.002 without any rounding
    QCOMPARE(Automatic(counts).low, 59);
    counts[199] = 9; // 2 of 1001
    QCOMPARE(Automatic(counts).low, 99);
}

void TestAutomaticInputRange::ExactlyTheRestReachesTheLimit()
{
    Counts counts = Plateau();
    counts[100] = 7;
    counts[220] = 1;
    counts[240] = 2; // 1000 in all, up to 220 there are 998, and 998 * (1.0 / 1000) is the number 0.998
    QCOMPARE(Automatic(counts).high, 220);
    counts[240] = 3; // 998 of 1001
    QCOMPARE(Automatic(counts).high, 240);
}

void TestAutomaticInputRange::EvenlyFilledLevelsAllStay()
{
    Counts counts;
    counts.fill(10); // each level makes 3.9 per mille: the first is not under the limit,
    const LevelRange range = Automatic(counts);
    QCOMPARE(range.low, 0);
    QCOMPARE(range.high, 255); // and up to 254 they make 99.6 per cent
}

void TestAutomaticInputRange::TheRangeIsWideEnough_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("last");
    QTest::addColumn<int>("low");
    QTest::addColumn<int>("high");
    QTest::newRow("one level") << 100 << 100 << 92 << 108;
    QTest::newRow("one level at the lower end") << 0 << 0 << 0 << 16;
    QTest::newRow("one level near the lower end") << 7 << 7 << 0 << 16;
    QTest::newRow("one level at the upper end") << 255 << 255 << 239 << 255;
    QTest::newRow("one level near the upper end") << 248 << 248 << 239 << 255;
    QTest::newRow("just not too near") << 247 << 247 << 239 << 255;
    QTest::newRow("too narrow by one") << 100 << 115 << 99 << 115; // (100 + 115) / 2 - 8
    QTest::newRow("wide enough") << 100 << 116 << 100 << 116;
}

void TestAutomaticInputRange::TheRangeIsWideEnough()
{
    QFETCH(int, first);
    QFETCH(int, last);
    QFETCH(int, low);
    QFETCH(int, high);
    Counts counts{};
    counts[std::size_t(first)] += 10;
    counts[std::size_t(last)] += 10;
    const LevelRange range = Automatic(counts);
    QCOMPARE(range.low, low);
    QCOMPARE(range.high, high);
}

void TestAutomaticInputRange::WithoutPixelsTheRangeIsDefined()
{
    const auto none = [](int) { return qint64(0); };
    const LevelRange empty = AutomaticInputRange({255, 0}, none, 0.0);
    QCOMPARE(empty.low, 119); // (255 + 0) / 2 - 8
    QCOMPARE(empty.high, 135);
    const LevelRange uncounted = AutomaticInputRange({10, 200}, none, 0.0); // every share is 0 / 0
    QCOMPARE(uncounted.low, 192); // 200 counted as under the limit, then widened
    QCOMPARE(uncounted.high, 208);
}

QTEST_APPLESS_MAIN(TestAutomaticInputRange)
#include "tst_AutomaticInputRange.moc"
