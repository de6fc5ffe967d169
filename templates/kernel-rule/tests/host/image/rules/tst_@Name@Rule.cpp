#include "KernelCheck.h"
#include "image/@Name@Rule.h"
#include "image/PixelRuleTransformation.h"

#include <QTest>

#include <climits>

namespace {

/// The rule for one pixel, by the pixel form.
QRgb Changed(int amount, QRgb before)
{
    YDRGBA32i pixel(before);
    @Name@Rule rule(amount);
    rule(pixel);
    return pixel;
}

} // namespace

class Test@Name@Rule : public QObject
{
    Q_OBJECT

private slots:
    void APixelBecomesWhatTheFormulaSays_data();
    void APixelBecomesWhatTheFormulaSays();
    void AmountZeroChangesNothing();
    void AmountsOutsideCountAsTheNearestBound();
    void RowsEqualPixelsOnEveryTarget_data();
    void RowsEqualPixelsOnEveryTarget();
};

void Test@Name@Rule::APixelBecomesWhatTheFormulaSays_data()
{
    QTest::addColumn<int>("amount");
    QTest::addColumn<QRgb>("before");
    QTest::addColumn<QRgb>("after");
    QTest::newRow("black") << 100 << qRgba(0, 0, 0, 90) << qRgba(0, 0, 0, 90);
    QTest::newRow("a grey") << 70 << qRgb(120, 120, 120) << qRgb(120, 120, 120);
    // (6966 * 200 + 23436 * 100 + 2366 * 50) / 32768 = 117.648
    QTest::newRow("an orange, whole") << 100 << qRgba(200, 100, 50, 7) << qRgba(118, 118, 118, 7);
    QTest::newRow("an orange, half") << 50 << qRgb(200, 100, 50) << qRgb(159, 109, 84);
}

void Test@Name@Rule::APixelBecomesWhatTheFormulaSays()
{
    QFETCH(int, amount);
    QFETCH(QRgb, before);
    QFETCH(QRgb, after);
    QCOMPARE(Changed(amount, before), after);
}

void Test@Name@Rule::AmountZeroChangesNothing()
{
    for (const YDRGBA32i& pixel : KernelCheck::ColourCube())
        QCOMPARE(Changed(0, pixel), QRgb(pixel));
}

void Test@Name@Rule::AmountsOutsideCountAsTheNearestBound()
{
    const QRgb pixel = qRgb(10, 120, 250);
    QCOMPARE(Changed(INT_MIN, pixel), pixel);
    QCOMPARE(Changed(INT_MAX, pixel), Changed(100, pixel));
}

void Test@Name@Rule::RowsEqualPixelsOnEveryTarget_data()
{
    QTest::addColumn<int>("amount");
    for (const int amount : {0, 1, 33, 100})
        QTest::addRow("%d", amount) << amount;
}

void Test@Name@Rule::RowsEqualPixelsOnEveryTarget()
{
    QFETCH(int, amount);
    const PixelRuleTransformation transformation{@Name@Rule(amount)};
    QCOMPARE(KernelCheck::Difference(VectorKernels::@Name@Row, transformation, 200000), QString());
}

QTEST_GUILESS_MAIN(Test@Name@Rule)
#include "tst_@Name@Rule.moc"
