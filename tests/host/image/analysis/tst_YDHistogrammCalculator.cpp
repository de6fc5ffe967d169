#include "TestPictures.h"
#include "image/YDHistogrammCalculator.h"

#include <QTest>

#include <array>

namespace {

using Table = std::array<int, 256>;

} // namespace

class TestYDHistogrammCalculator : public QObject
{
    Q_OBJECT

private slots:
    void CountsRedGreenBlueAndLuma();
    void CountsAsTheWholePictureIsCounted();
    void LeavesHalfAPerCentOnEachSide();
    void KeepsSixteenLevels_data();
    void KeepsSixteenLevels();
    void AnEmptyTableHasAllLevels();
};

void TestYDHistogrammCalculator::CountsRedGreenBlueAndLuma()
{
    Table r{}, g{}, b{}, luma{};
    YDHistogrammCalculator calculator;
    calculator.SetOutput(r.data(), g.data(), b.data(), luma.data());
    calculator(YDRGBA32i(30, 200, 10, 255)); // luma 0.2126 * 10 + 0.7152 * 200 + 0.0722 * 30 = 147.3
    calculator(YDRGBA32i(30, 30, 30, 0));
    QCOMPARE(r[10] + 10 * r[30], 11);
    QCOMPARE(g[200] + 10 * g[30], 11);
    QCOMPARE(b[30], 2);
    QCOMPARE(luma[147] + 10 * luma[30], 11);
}

void TestYDHistogrammCalculator::CountsAsTheWholePictureIsCounted()
{
    const RGBA32iImage picture = TestPictures::Noise(99, 57);
    std::array<Table, 4> tables{};
    YDHistogrammCalculator calculator;
    calculator.SetOutput(tables[0].data(), tables[1].data(), tables[2].data(), tables[3].data());
    for (int y = 0; y < picture.Height(); ++y)
        for (int x = 0; x < picture.Width(); ++x)
            calculator(picture.Row(y)[x]);
    const auto counts = ChannelHistograms::Of(picture, QRect(0, 0, 99, 57));
    QVERIFY(counts);
    const std::array<const ChannelHistograms::Table*, 4> expected{&counts->red, &counts->green, &counts->blue,
                                                                  &counts->luma};
    for (std::size_t channel = 0; channel < expected.size(); ++channel)
        QVERIFY(std::equal(tables[channel].begin(), tables[channel].end(), expected[channel]->begin()));
}

void TestYDHistogrammCalculator::LeavesHalfAPerCentOnEachSide()
{
    Table table{};
    table[0] = 2;
    table[10] = 3; // up to here 5 of 1000: half a per cent, and no more
    table[40] = 100;
    table[100] = 790;
    table[200] = 100;
    table[220] = 4;
    table[255] = 1;
    QCOMPARE(YDHistogrammCalculator::Threshold(table.data()), (std::vector<int>{40, 200}));
    table[10] = 4; // one more at the dark end is no outlier any more
    table[100] = 789;
    QCOMPARE(YDHistogrammCalculator::Threshold(table.data()), (std::vector<int>{10, 200}));
}

void TestYDHistogrammCalculator::KeepsSixteenLevels_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<int>("low");
    QTest::addColumn<int>("high");
    QTest::newRow("black") << 0 << 0 << 16;
    QTest::newRow("dark") << 5 << 0 << 16;
    QTest::newRow("middle") << 100 << 92 << 108;
    QTest::newRow("bright") << 250 << 239 << 255;
    QTest::newRow("white") << 255 << 239 << 255;
}

void TestYDHistogrammCalculator::KeepsSixteenLevels()
{
    QFETCH(int, level);
    QFETCH(int, low);
    QFETCH(int, high);
    Table table{};
    table[std::size_t(level)] = 1000;
    QCOMPARE(YDHistogrammCalculator::Threshold(table.data()), (std::vector<int>{low, high}));
}

void TestYDHistogrammCalculator::AnEmptyTableHasAllLevels()
{
    QCOMPARE(YDHistogrammCalculator::Threshold(Table{}.data()), (std::vector<int>{0, 255}));
}

QTEST_GUILESS_MAIN(TestYDHistogrammCalculator)
#include "tst_YDHistogrammCalculator.moc"
