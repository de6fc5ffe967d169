#include "KernelCheck.h"
#include "image/Luma709.h"
#include "image/YDIterativePhotoFilterTransformation.h"

#include <QTest>

#include <climits>
#include <cmath>

namespace {

QRgb Filtered(QRgb color, int density, QRgb before)
{
    YDRGBA32i pixel(before);
    YDIterativePhotoFilterTransformation rule(color, density);
    rule.SetProcessingBuffer(&pixel);
    rule.ProcessPixel(0);
    return pixel;
}

double Luma(const YDRGBA32i& pixel)
{
    return (Luma709::Red * pixel.r + Luma709::Green * pixel.g + Luma709::Blue * pixel.b) / 32768.0;
}

void AddColours()
{
    QTest::addColumn<QRgb>("color");
    QTest::newRow("warming") << qRgb(0xEB, 0xB1, 0x13);
    QTest::newRow("cooling") << qRgb(0x00, 0x6D, 0xFF);
    QTest::newRow("deep red") << qRgb(255, 0, 0);
    QTest::newRow("green") << qRgb(0, 255, 0);
    QTest::newRow("blue") << qRgb(0, 0, 255);
    QTest::newRow("yellow") << qRgb(255, 255, 0);
    QTest::newRow("black") << qRgb(0, 0, 0);
    QTest::newRow("almost black") << qRgb(0, 1, 0);
    QTest::newRow("white") << qRgb(255, 255, 255);
}

} // namespace

class TestYDIterativePhotoFilterTransformation : public QObject
{
    Q_OBJECT

private slots:
    void APixelIsSeenThroughTheFilter_data();
    void APixelIsSeenThroughTheFilter();
    void DensityZeroChangesNothing_data() { AddColours(); }
    void DensityZeroChangesNothing();
    void GreyFiltersChangeNothing();
    void TheBrightnessOfAFilterDoesNotMatter();
    void TheLumaIsRestored_data() { AddColours(); }
    void TheLumaIsRestored();
    void DensitiesOutsideCountAsTheNearestBound();
    void RowsEqualPixelsOnEveryTarget_data() { AddColours(); }
    void RowsEqualPixelsOnEveryTarget();
};

void TestYDIterativePhotoFilterTransformation::APixelIsSeenThroughTheFilter_data()
{
    QTest::addColumn<QRgb>("color");
    QTest::addColumn<int>("density");
    QTest::addColumn<QRgb>("before");
    QTest::addColumn<QRgb>("after");
    const QRgb warming = qRgb(235, 177, 19);
    const QRgb red = qRgb(255, 0, 0);
    // 128, 128 * (0.5 + 0.5 * 177 / 235) = 112.20, 128 * (0.5 + 0.5 * 19 / 235) = 69.17 have the luma
    // 112.456; 255 - (255 - 128) * (255 - 128) / (255 - 112.456) = 141.85, and so 127.78 and 89.44.
    QTest::newRow("warming a grey") << warming << 50 << qRgba(128, 128, 128, 3) << qRgba(142, 128, 89, 3);
    // 128, 0, 0 has the luma 27.21; 127 / 227.79 = 0.5575; 255 - 127 * 0.5575 = 184.2, 255 - 255 * 0.5575 =
    // 112.8.
    QTest::newRow("red on a grey") << red << 100 << qRgb(128, 128, 128) << qRgb(184, 113, 113);
    QTest::newRow("black stays") << red << 100 << qRgba(0, 0, 0, 200) << qRgba(0, 0, 0, 200);
    QTest::newRow("white stays") << red << 100 << qRgb(255, 255, 255) << qRgb(255, 255, 255);
    QTest::newRow("red passes a red filter") << red << 100 << qRgb(200, 0, 0) << qRgb(200, 0, 0);
    // 0, 0, 0 is left of a blue by a red filter: its luma 0.0722 * 200 = 14.44 as a grey.
    QTest::newRow("blue behind a red filter") << red << 100 << qRgb(0, 0, 200) << qRgb(14, 14, 14);
}

void TestYDIterativePhotoFilterTransformation::APixelIsSeenThroughTheFilter()
{
    QFETCH(QRgb, color);
    QFETCH(int, density);
    QFETCH(QRgb, before);
    QFETCH(QRgb, after);
    QCOMPARE(Filtered(color, density, before), after);
}

void TestYDIterativePhotoFilterTransformation::DensityZeroChangesNothing()
{
    QFETCH(QRgb, color);
    for (const YDRGBA32i& pixel : KernelCheck::ColourCube())
        QCOMPARE(Filtered(color, 0, pixel), QRgb(pixel));
}

void TestYDIterativePhotoFilterTransformation::GreyFiltersChangeNothing()
{
    for (const int level : {0, 1, 127, 254, 255})
        for (const YDRGBA32i& pixel : KernelCheck::ColourCube())
            QCOMPARE(Filtered(qRgb(level, level, level), 100, pixel), QRgb(pixel));
}

void TestYDIterativePhotoFilterTransformation::TheBrightnessOfAFilterDoesNotMatter()
{
    for (const YDRGBA32i& pixel : KernelCheck::ColourCube())
        QCOMPARE(Filtered(qRgb(100, 50, 20), 80, pixel), Filtered(qRgb(200, 100, 40), 80, pixel));
}

void TestYDIterativePhotoFilterTransformation::TheLumaIsRestored()
{
    QFETCH(QRgb, color);
    for (const int density : {25, 100})
        for (const YDRGBA32i& pixel : KernelCheck::ColourCube())
            QVERIFY(std::abs(Luma(Filtered(color, density, pixel)) - Luma(pixel)) <= 0.6);
}

void TestYDIterativePhotoFilterTransformation::DensitiesOutsideCountAsTheNearestBound()
{
    const QRgb color = qRgb(0, 109, 255);
    const QRgb pixel = qRgb(210, 120, 50);
    QCOMPARE(Filtered(color, INT_MIN, pixel), pixel);
    QCOMPARE(Filtered(color, INT_MAX, pixel), Filtered(color, 100, pixel));
}

void TestYDIterativePhotoFilterTransformation::RowsEqualPixelsOnEveryTarget()
{
    QFETCH(QRgb, color);
    for (const int density : {0, 1, 50, 100})
        QCOMPARE(KernelCheck::Difference(VectorKernels::PhotoFilterRow,
                                         YDIterativePhotoFilterTransformation(color, density), 200000),
                 QString());
}

QTEST_GUILESS_MAIN(TestYDIterativePhotoFilterTransformation)
#include "tst_YDIterativePhotoFilterTransformation.moc"
