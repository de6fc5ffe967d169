#include "KernelCheck.h"
#include "image/YDIterative@Name@Transformation.h"

#include <QTest>

#include <climits>

namespace {

/// The rule for one pixel, by the pixel form.
QRgb Changed(int amount, QRgb before)
{
    YDRGBA32i pixel(before);
    YDIterative@Name@Transformation rule(amount);
    KernelCheck::ApplyToPixel(rule, pixel);
    return pixel;
}

} // namespace

class TestYDIterative@Name@Transformation : public QObject
{
    Q_OBJECT

private slots:
    void APixelBecomesWhatTheFormulaSays_data();
    void APixelBecomesWhatTheFormulaSays();
    void AmountZeroChangesNothing();
    void AmountsOutsideCountAsTheNearestBound();
    void RowsEqualPixelsOnEveryTarget();
};

void TestYDIterative@Name@Transformation::APixelBecomesWhatTheFormulaSays_data()
{
    QTest::addColumn<int>("amount");
    QTest::addColumn<QRgb>("before");
    QTest::addColumn<QRgb>("after");
    QTest::newRow("black") << 100 << qRgb(0, 0, 0) << qRgb(255, 255, 255);
    QTest::newRow("a colour, translucent") << 100 << qRgba(10, 100, 250, 7) << qRgba(245, 155, 5, 7);
    // 100 + 55 / 4 = 113.75, 200 - 145 / 4 = 163.75, 10 + 235 / 4 = 68.75
    QTest::newRow("a quarter") << 25 << qRgb(100, 200, 10) << qRgb(114, 164, 69);
    QTest::newRow("half is grey, away from zero") << 50 << qRgb(0, 100, 255) << qRgb(128, 128, 128);
}

void TestYDIterative@Name@Transformation::APixelBecomesWhatTheFormulaSays()
{
    QFETCH(int, amount);
    QFETCH(QRgb, before);
    QFETCH(QRgb, after);
    QCOMPARE(Changed(amount, before), after);
}

void TestYDIterative@Name@Transformation::AmountZeroChangesNothing()
{
    for (const YDRGBA32i& pixel : KernelCheck::ColourCube())
        QCOMPARE(Changed(0, pixel), QRgb(pixel));
}

void TestYDIterative@Name@Transformation::AmountsOutsideCountAsTheNearestBound()
{
    const QRgb pixel = qRgb(10, 120, 250);
    QCOMPARE(Changed(INT_MIN, pixel), pixel);
    QCOMPARE(Changed(INT_MAX, pixel), Changed(100, pixel));
}

void TestYDIterative@Name@Transformation::RowsEqualPixelsOnEveryTarget()
{
    const YDIterative@Name@Transformation rule(30);
    QCOMPARE(KernelCheck::Difference(VectorKernels::MapChannelsRow, rule, 100000), QString());
}

QTEST_APPLESS_MAIN(TestYDIterative@Name@Transformation)
#include "tst_YDIterative@Name@Transformation.moc"
