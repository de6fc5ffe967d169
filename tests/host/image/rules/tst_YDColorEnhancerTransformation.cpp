#include "KernelCheck.h"
#include "image/YDColorEnhancerTransformation.h"

#include <QTest>

#include <cstdlib>
#include <limits>

namespace {

constexpr int Neutral[4][2] = {{0, 255}, {0, 255}, {0, 255}, {0, 255}};
constexpr int Narrow[4][2] = {{0, 255}, {10, 200}, {20, 220}, {0, 150}};
constexpr double NoGamma[4] = {1, 1, 1, 1};

YDColorEnhancerTransformation Enhancer(int amount, const int (*input)[2] = Neutral)
{
    YDColorEnhancerTransformation enhancer;
    enhancer.SetLevels(YDLevelsTransformation(input, Neutral, NoGamma, 100));
    enhancer.SetAmountData(amount);
    return enhancer;
}

QRgb Enhanced(QRgb color, int amount, const int (*input)[2] = Neutral)
{
    YDRGBA32i pixel(color);
    Enhancer(amount, input)(pixel);
    return pixel;
}

} // namespace

class TestYDColorEnhancerTransformation : public QObject
{
    Q_OBJECT

private slots:
    void NoAmountChangesNothing_data();
    void NoAmountChangesNothing();
    void GreysKeepToTheirLevels();
    void DullColoursGainMore();
    void LumaStays();
    void LevelsComeFirst();
    void AmountMixes();
    void WithoutLevelsOnlyColourChanges();
    void AlphaStays();
    void RowsEqualPixels_data();
    void RowsEqualPixels();
};

void TestYDColorEnhancerTransformation::NoAmountChangesNothing_data()
{
    QTest::addColumn<int>("amount");
    for (const int amount : {0, -1, std::numeric_limits<int>::min()})
        QTest::addRow("%d", amount) << amount;
}

void TestYDColorEnhancerTransformation::NoAmountChangesNothing()
{
    QFETCH(int, amount);
    for (const YDRGBA32i& pixel : KernelCheck::ColourCube())
        QCOMPARE(Enhanced(QRgb(pixel), amount, Narrow), QRgb(pixel));
}

void TestYDColorEnhancerTransformation::GreysKeepToTheirLevels()
{
    for (int v = 0; v < 256; ++v)
        QCOMPARE(Enhanced(qRgb(v, v, v), 100), qRgb(v, v, v));
}

void TestYDColorEnhancerTransformation::DullColoursGainMore()
{
    const auto rangeOf = [](QRgb color) {
        return std::max({qRed(color), qGreen(color), qBlue(color)}) -
               std::min({qRed(color), qGreen(color), qBlue(color)});
    };
    // half of what a range of 20 lacks of 255, and of what one of 200 does: 1.46 and 1.11 times
    QCOMPARE(rangeOf(Enhanced(qRgb(140, 130, 120), 100)), 29);
    const int strong = rangeOf(Enhanced(qRgb(220, 100, 20), 100));
    QVERIFY2(strong > 205 && strong < 225, qPrintable(QString::number(strong)));
}

void TestYDColorEnhancerTransformation::LumaStays()
{
    for (const QRgb color : {qRgb(140, 130, 120), qRgb(90, 120, 100), qRgb(100, 100, 140)})
        QVERIFY(std::abs(Luma709::Of(YDRGBA32i(Enhanced(color, 100))) - Luma709::Of(YDRGBA32i(color))) <= 1);
}

void TestYDColorEnhancerTransformation::LevelsComeFirst()
{
    // 105 of 10..200, 120 of 20..220 and 75 of 0..150 are all in the middle
    QCOMPARE(Enhanced(qRgb(105, 120, 75), 100, Narrow), qRgb(128, 128, 128));
}

void TestYDColorEnhancerTransformation::AmountMixes()
{
    QCOMPARE(Enhanced(qRgb(105, 120, 75), 50, Narrow), qRgb(117, 124, 102)); // half way to the middle
    QCOMPARE(Enhanced(qRgb(10, 20, 0), 1000, Narrow), qRgb(0, 0, 0));
}

void TestYDColorEnhancerTransformation::WithoutLevelsOnlyColourChanges()
{
    YDColorEnhancerTransformation enhancer;
    enhancer.SetAmountData(100);
    YDRGBA32i pixel(qRgb(140, 130, 120));
    enhancer(pixel);
    QCOMPARE(QRgb(pixel), Enhanced(qRgb(140, 130, 120), 100));
}

void TestYDColorEnhancerTransformation::AlphaStays()
{
    QCOMPARE(qAlpha(Enhanced(qRgba(140, 130, 120, 7), 100, Narrow)), 7);
}

void TestYDColorEnhancerTransformation::RowsEqualPixels_data()
{
    QTest::addColumn<int>("amount");
    for (const int amount : {0, 1, 37, 50, 99, 100})
        QTest::addRow("%d", amount) << amount;
}

void TestYDColorEnhancerTransformation::RowsEqualPixels()
{
    QFETCH(int, amount);
    QCOMPARE(KernelCheck::Difference(VectorKernels::EnhanceColorsRow, Enhancer(amount, Narrow), 200000),
             QString());
}

QTEST_GUILESS_MAIN(TestYDColorEnhancerTransformation)
#include "tst_YDColorEnhancerTransformation.moc"
