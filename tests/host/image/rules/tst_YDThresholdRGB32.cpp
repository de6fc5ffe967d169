#include "KernelCheck.h"
#include "TestPictures.h"
#include "image/YDThresholdRGB32.h"

#include <QTest>

#include <limits>

namespace {

YDThresholdRGB32 Rule(int level)
{
    YDThresholdRGB32 rule;
    rule.SetLevel(level);
    return rule;
}

YDRGBA32i Thresholded(const YDRGBA32i& pixel, int level)
{
    YDRGBA32i result = pixel;
    Rule(level)(result);
    return result;
}

} // namespace

class TestYDThresholdRGB32 : public QObject
{
    Q_OBJECT

private slots:
    void IsWhiteFromItsLevelOn_data();
    void IsWhiteFromItsLevelOn();
    void TheLevelIs128AtFirst();
    void GreysChangeAtTheirOwnLevel();
    void BlocksOfBytesAreEightPixels();
    void RowsEqualPixels_data();
    void RowsEqualPixels();
};

void TestYDThresholdRGB32::IsWhiteFromItsLevelOn_data()
{
    QTest::addColumn<unsigned>("color");
    QTest::addColumn<int>("level");
    QTest::addColumn<bool>("isWhite");
    constexpr int Most = std::numeric_limits<int>::max();
    constexpr int Least = std::numeric_limits<int>::min();
    QTest::newRow("red at its luma") << qRgb(255, 0, 0) << 54 << true; // 0.2126 * 255 = 54.2
    QTest::newRow("red above its luma") << qRgb(255, 0, 0) << 55 << false;
    QTest::newRow("green at its luma") << qRgb(0, 255, 0) << 182 << true; // 182.4
    QTest::newRow("green above its luma") << qRgb(0, 255, 0) << 183 << false;
    QTest::newRow("blue at its luma") << qRgb(0, 0, 255) << 18 << true; // 18.4
    QTest::newRow("blue above its luma") << qRgb(0, 0, 255) << 19 << false;
    QTest::newRow("mixed at its luma") << qRgb(10, 200, 30) << 147 << true; // 147.3
    QTest::newRow("mixed above its luma") << qRgb(10, 200, 30) << 148 << false;
    QTest::newRow("rounded up") << qRgb(0, 5, 0) << 4 << true; // 3.6
    QTest::newRow("black at 0") << qRgb(0, 0, 0) << 0 << true;
    QTest::newRow("black at 1") << qRgb(0, 0, 0) << 1 << false;
    QTest::newRow("white at 255") << qRgb(255, 255, 255) << 255 << true;
    QTest::newRow("white at 256") << qRgb(255, 255, 255) << 256 << false;
    QTest::newRow("white at 300") << qRgb(255, 255, 255) << 300 << false;
    QTest::newRow("black at -1") << qRgb(0, 0, 0) << -1 << true;
    QTest::newRow("white at the highest") << qRgb(255, 255, 255) << Most << false;
    QTest::newRow("black at the lowest") << qRgb(0, 0, 0) << Least << true;
}

void TestYDThresholdRGB32::IsWhiteFromItsLevelOn()
{
    QFETCH(unsigned, color);
    QFETCH(int, level);
    QFETCH(bool, isWhite);
    const quint8 grey = isWhite ? 255 : 0;
    for (const int alpha : {0, 17, 255}) {
        const YDRGBA32i pixel(qRgba(qRed(color), qGreen(color), qBlue(color), alpha));
        QCOMPARE(QRgb(Thresholded(pixel, level)), QRgb(YDRGBA32i(grey, grey, grey, quint8(alpha))));
        KernelCheck::Row row(19, pixel);
        Rule(level).ProcessRow(row.data(), int(row.size()));
        QVERIFY(row == KernelCheck::Row(19, YDRGBA32i(grey, grey, grey, quint8(alpha))));
    }
}

void TestYDThresholdRGB32::TheLevelIs128AtFirst()
{
    YDRGBA32i dark(127, 127, 127, 255);
    YDRGBA32i light(128, 128, 128, 255);
    const YDThresholdRGB32 rule;
    rule(dark);
    rule(light);
    QCOMPARE(QRgb(dark), qRgb(0, 0, 0));
    QCOMPARE(QRgb(light), qRgb(255, 255, 255));
}

void TestYDThresholdRGB32::GreysChangeAtTheirOwnLevel()
{
    for (int level = 0; level < 256; ++level)
        for (int grey = 0; grey < 256; ++grey)
            QCOMPARE(Thresholded(qRgb(grey, grey, grey), level).g, quint8(grey >= level ? 255 : 0));
}

void TestYDThresholdRGB32::BlocksOfBytesAreEightPixels()
{
    std::minstd_rand random(3);
    const KernelCheck::Row source = KernelCheck::RandomRow(20, random);
    for (int offset = 0; offset < 8; ++offset) {
        KernelCheck::Row blocks = source;
        KernelCheck::Row expected = source;
        auto* const bytes = reinterpret_cast<unsigned char*>(blocks.data() + offset);
        Rule(100)(bytes, reinterpret_cast<quintptr>(bytes) % 32 == 0);
        for (int x = offset; x < offset + 8; ++x)
            Rule(100)(expected[std::size_t(x)]);
        QVERIFY(blocks == expected);
    }
}

void TestYDThresholdRGB32::RowsEqualPixels_data()
{
    QTest::addColumn<int>("level");
    for (const int level :
         {std::numeric_limits<int>::min(), -1, 0, 1, 54, 128, 255, 256, 300, std::numeric_limits<int>::max()})
        QTest::addRow("%d", level) << level;
}

void TestYDThresholdRGB32::RowsEqualPixels()
{
    QFETCH(int, level);
    QCOMPARE(KernelCheck::Difference(VectorKernels::ThresholdRow, Rule(level)), QString());
}

QTEST_GUILESS_MAIN(TestYDThresholdRGB32)
#include "tst_YDThresholdRGB32.moc"
