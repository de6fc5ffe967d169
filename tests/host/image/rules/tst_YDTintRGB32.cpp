#include "KernelCheck.h"
#include "YDIterativeTintTransformation.h"
#include "image/YDTintRGB32.h"

#include <QTest>

#include <climits>

namespace {

constexpr QRgb DefaultBlack = 0xff050608;
constexpr QRgb DefaultWhite = 0xffaad1ff;

QRgb Tinted(QRgb black, QRgb white, int amount, QRgb before)
{
    YDRGBA32i pixel(before);
    YDTintRGB32(black, white, amount)(pixel);
    return pixel;
}

} // namespace

class TestYDTintRGB32 : public QObject
{
    Q_OBJECT

private slots:
    void EachChannelMovesOntoItsRamp_data();
    void EachChannelMovesOntoItsRamp();
    void AmountZeroChangesNothing();
    void BlackAndWhiteTonesOfThemselvesChangeNothing();
    void AmountsOutsideCountAsTheNearestBound();
    void RowsEqualPixelsOnEveryTarget_data();
    void RowsEqualPixelsOnEveryTarget();
};

void TestYDTintRGB32::EachChannelMovesOntoItsRamp_data()
{
    QTest::addColumn<int>("amount");
    QTest::addColumn<QRgb>("before");
    QTest::addColumn<QRgb>("after");
    // 5 + 165 * 100 / 255 = 69.71, 6 + 203 * 150 / 255 = 125.41, 8 + 247 * 200 / 255 = 201.73.
    QTest::newRow("whole") << 100 << qRgba(100, 150, 200, 9) << qRgba(70, 125, 202, 9);
    // Half way from 100 to 69.71 is 84.85, from 150 to 125.41 is 137.71, from 200 to 201.73 is 200.86.
    QTest::newRow("half") << 50 << qRgb(100, 150, 200) << qRgb(85, 138, 201);
    QTest::newRow("black") << 100 << qRgb(0, 0, 0) << DefaultBlack;
    QTest::newRow("white") << 100 << qRgb(255, 255, 255) << DefaultWhite;
}

void TestYDTintRGB32::EachChannelMovesOntoItsRamp()
{
    QFETCH(int, amount);
    QFETCH(QRgb, before);
    QFETCH(QRgb, after);
    QCOMPARE(Tinted(DefaultBlack, DefaultWhite, amount, before), after);
}

void TestYDTintRGB32::AmountZeroChangesNothing()
{
    for (const YDRGBA32i& pixel : KernelCheck::ColourCube())
        QCOMPARE(Tinted(DefaultWhite, DefaultBlack, 0, pixel), QRgb(pixel));
}

void TestYDTintRGB32::BlackAndWhiteTonesOfThemselvesChangeNothing()
{
    for (const YDRGBA32i& pixel : KernelCheck::ColourCube())
        QCOMPARE(Tinted(qRgb(0, 0, 0), qRgb(255, 255, 255), 100, pixel), QRgb(pixel));
}

void TestYDTintRGB32::AmountsOutsideCountAsTheNearestBound()
{
    const QRgb pixel = qRgb(10, 120, 250);
    QCOMPARE(Tinted(DefaultBlack, DefaultWhite, INT_MIN, pixel), pixel);
    QCOMPARE(Tinted(DefaultBlack, DefaultWhite, INT_MAX, pixel),
             Tinted(DefaultBlack, DefaultWhite, 100, pixel));
}

void TestYDTintRGB32::RowsEqualPixelsOnEveryTarget_data()
{
    QTest::addColumn<QRgb>("black");
    QTest::addColumn<QRgb>("white");
    QTest::addColumn<int>("amount");
    QTest::newRow("defaults") << DefaultBlack << DefaultWhite << 75;
    QTest::newRow("to the negative") << qRgb(255, 255, 255) << qRgb(0, 0, 0) << 100;
    QTest::newRow("a third of a colour") << qRgb(200, 0, 100) << qRgb(1, 254, 33) << 33;
}

void TestYDTintRGB32::RowsEqualPixelsOnEveryTarget()
{
    QFETCH(QRgb, black);
    QFETCH(QRgb, white);
    QFETCH(int, amount);
    const YDIterativeTintTransformation<YDTintRGB32> rule(YDTintRGB32(black, white, amount));
    QCOMPARE(KernelCheck::Difference(VectorKernels::MapChannelsRow, rule, 200000), QString());
}

QTEST_GUILESS_MAIN(TestYDTintRGB32)
#include "tst_YDTintRGB32.moc"
