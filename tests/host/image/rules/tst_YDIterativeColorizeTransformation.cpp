#include "KernelCheck.h"
#include "image/Luma709.h"
#include "image/YDIterativeColorizeTransformation.h"

#include <QTest>

#include <climits>
#include <cmath>

namespace {

constexpr QRgb Default = 0xffffd2ff;

QRgb Colorized(QRgb color, int amount, QRgb before)
{
    YDRGBA32i pixel(before);
    YDIterativeColorizeTransformation rule(color, amount);
    rule.SetProcessingBuffer(&pixel);
    rule.ProcessPixel(0);
    return pixel;
}

double Luma(const YDRGBA32i& pixel)
{
    return (Luma709::Red * pixel.r + Luma709::Green * pixel.g + Luma709::Blue * pixel.b) / 32768.0;
}

/// What the rule is before any rounding.
double Exact(int channel, double luma, int tint, double luminance, int amount)
{
    const double tinted = luma <= luminance
                              ? tint * luma / luminance
                              : tint + (255.0 - tint) * (luma - luminance) / (255.0 - luminance);
    return channel + (tinted - channel) * amount / 100.0;
}

void AddColours()
{
    QTest::addColumn<QRgb>("color");
    QTest::newRow("the panel's") << Default;
    QTest::newRow("black") << qRgb(0, 0, 0);
    QTest::newRow("white") << qRgb(255, 255, 255);
    QTest::newRow("the darkest blue") << qRgb(0, 0, 1);
    QTest::newRow("the lightest yellow") << qRgb(255, 255, 254);
    QTest::newRow("blue") << qRgb(0, 0, 255);
    QTest::newRow("yellow") << qRgb(255, 255, 0);
    QTest::newRow("sepia") << qRgb(112, 66, 20);
    QTest::newRow("no alpha") << qRgba(112, 200, 20, 0);
}

} // namespace

class TestYDIterativeColorizeTransformation : public QObject
{
    Q_OBJECT

private slots:
    void APixelTakesTheColour_data();
    void APixelTakesTheColour();
    void AmountZeroChangesNothing();
    void AGreyColourTakesTheColourAway();
    void TheLumaIsKept_data() { AddColours(); }
    void TheLumaIsKept();
    void TheResultIsTheFormulaRounded_data() { AddColours(); }
    void TheResultIsTheFormulaRounded();
    void GreysRiseWithoutAStep_data() { AddColours(); }
    void GreysRiseWithoutAStep();
    void AmountsOutsideCountAsTheNearestBound();
    void RowsEqualPixelsOnEveryTarget_data() { AddColours(); }
    void RowsEqualPixelsOnEveryTarget();
};

void TestYDIterativeColorizeTransformation::APixelTakesTheColour_data()
{
    QTest::addColumn<int>("amount");
    QTest::addColumn<QRgb>("before");
    QTest::addColumn<QRgb>("after");
    // The colour's luma is (6966 * 255 + 23436 * 210 + 2366 * 255) / 32768 = 222.816.
    // 255 * 120 / 222.816 = 137.33, 210 * 120 / 222.816 = 113.10.
    QTest::newRow("a grey below its luma") << 100 << qRgb(120, 120, 120) << qRgb(137, 113, 137);
    // 210 + 45 * (240 - 222.816) / (255 - 222.816) = 234.03.
    QTest::newRow("a grey above its luma") << 100 << qRgb(240, 240, 240) << qRgb(255, 234, 255);
    // 120 + 0.25 * (137.33 - 120) = 124.33, 120 + 0.25 * (113.10 - 120) = 118.27.
    QTest::newRow("a quarter") << 25 << qRgb(120, 120, 120) << qRgb(124, 118, 124);
    // Luma 117.648 becomes 134.64, 110.88, 134.64; half of that and half of the pixel.
    QTest::newRow("half of an orange") << 50 << qRgba(200, 100, 50, 7) << qRgba(167, 105, 92, 7);
    QTest::newRow("black") << 100 << qRgba(0, 0, 0, 90) << qRgba(0, 0, 0, 90);
    QTest::newRow("white") << 100 << qRgb(255, 255, 255) << qRgb(255, 255, 255);
}

void TestYDIterativeColorizeTransformation::APixelTakesTheColour()
{
    QFETCH(int, amount);
    QFETCH(QRgb, before);
    QFETCH(QRgb, after);
    QCOMPARE(Colorized(Default, amount, before), after);
}

void TestYDIterativeColorizeTransformation::AmountZeroChangesNothing()
{
    for (const YDRGBA32i& pixel : KernelCheck::ColourCube())
        QCOMPARE(Colorized(qRgb(0, 0, 255), 0, pixel), QRgb(pixel));
}

void TestYDIterativeColorizeTransformation::AGreyColourTakesTheColourAway()
{
    for (const int level : {0, 1, 100, 254, 255}) {
        for (const YDRGBA32i& pixel : KernelCheck::ColourCube()) {
            const YDRGBA32i grey = Colorized(qRgb(level, level, level), 100, pixel);
            const int luma = int(std::lround(Luma(pixel)));
            QVERIFY(grey.r == grey.g && grey.g == grey.b && std::abs(grey.g - luma) <= 1);
        }
    }
}

void TestYDIterativeColorizeTransformation::TheLumaIsKept()
{
    QFETCH(QRgb, color);
    for (const YDRGBA32i& pixel : KernelCheck::ColourCube())
        for (const int amount : {30, 100})
            QVERIFY(std::abs(Luma(Colorized(color, amount, pixel)) - Luma(pixel)) <= 0.75);
}

void TestYDIterativeColorizeTransformation::TheResultIsTheFormulaRounded()
{
    constexpr double Rounding = 0.5;
    constexpr double Constants = 0.25; // each of three factors is off by up to 1/4096, times up to 255
    QFETCH(QRgb, color);
    const YDRGBA32i tint(color);
    for (const YDRGBA32i& pixel : KernelCheck::ColourCube()) {
        for (const int amount : {25, 100}) {
            const YDRGBA32i actual = Colorized(color, amount, pixel);
            const double luma = Luma(pixel);
            const double off = std::max(
                {std::abs(actual.r - Exact(pixel.r, luma, tint.r, std::max(Luma(tint), 1e-9), amount)),
                 std::abs(actual.g - Exact(pixel.g, luma, tint.g, std::max(Luma(tint), 1e-9), amount)),
                 std::abs(actual.b - Exact(pixel.b, luma, tint.b, std::max(Luma(tint), 1e-9), amount))});
            QVERIFY2(off <= Rounding + Constants, qPrintable(QString::number(QRgb(pixel), 16)));
        }
    }
}

void TestYDIterativeColorizeTransformation::GreysRiseWithoutAStep()
{
    QFETCH(QRgb, color);
    for (int v = 1; v < 256; ++v) {
        const YDRGBA32i darker = Colorized(color, 100, qRgb(v - 1, v - 1, v - 1));
        const YDRGBA32i lighter = Colorized(color, 100, qRgb(v, v, v));
        // The steepest line is that of blue: 1 / 0.0722 = 13.85 levels for each of luma.
        QVERIFY(lighter.r >= darker.r && lighter.r - darker.r <= 14);
        QVERIFY(lighter.g >= darker.g && lighter.g - darker.g <= 14);
        QVERIFY(lighter.b >= darker.b && lighter.b - darker.b <= 14);
    }
}

void TestYDIterativeColorizeTransformation::AmountsOutsideCountAsTheNearestBound()
{
    const QRgb pixel = qRgb(10, 120, 250);
    QCOMPARE(Colorized(Default, INT_MIN, pixel), pixel);
    QCOMPARE(Colorized(Default, INT_MAX, pixel), Colorized(Default, 100, pixel));
}

void TestYDIterativeColorizeTransformation::RowsEqualPixelsOnEveryTarget()
{
    QFETCH(QRgb, color);
    for (const int amount : {0, 1, 33, 100})
        QCOMPARE(KernelCheck::Difference(VectorKernels::ColorizeRow,
                                         YDIterativeColorizeTransformation(color, amount), 200000),
                 QString());
}

QTEST_GUILESS_MAIN(TestYDIterativeColorizeTransformation)
#include "tst_YDIterativeColorizeTransformation.moc"
