#include "overlay/OverlayArea.h"

#include <QTest>

#include <limits>

namespace {

constexpr int Lowest = std::numeric_limits<int>::min();
constexpr int Highest = std::numeric_limits<int>::max();

QRect Margins(int left, int top, int right, int bottom) { return {QPoint(left, top), QPoint(right, bottom)}; }

} // namespace

class TestOverlayArea : public QObject
{
    Q_OBJECT

private slots:
    void MarginsAreFourNumbers_data();
    void MarginsAreFourNumbers();
    void AlignsInsideTheMargins_data();
    void AlignsInsideTheMargins();
    void PartsAreEquallyWide_data();
    void PartsAreEquallyWide();
};

void TestOverlayArea::MarginsAreFourNumbers_data()
{
    QTest::addColumn<QRect>("margins");
    QTest::addColumn<QRect>("area"); // of a picture of 100 x 80
    QTest::newRow("none") << Margins(0, 0, 0, 0) << QRect(0, 0, 100, 80);
    QTest::newRow("each its own edge") << Margins(1, 2, 3, 4) << QRect(1, 2, 96, 74);
    QTest::newRow("left above right") << Margins(50, 40, 5, 6) << QRect(50, 40, 45, 34);
    QTest::newRow("one pixel left") << Margins(60, 40, 39, 39) << QRect(60, 40, 1, 1);
    QTest::newRow("no column left") << Margins(60, 0, 40, 0) << QRect();
    QTest::newRow("no row left") << Margins(0, 40, 0, 40) << QRect();
    QTest::newRow("negative ones are none") << Margins(-1, Lowest, -999, -7) << QRect(0, 0, 100, 80);
    QTest::newRow("highest") << Margins(Highest, Highest, Highest, Highest) << QRect();
    QTest::newRow("lowest and highest") << Margins(Lowest, Lowest, Highest, Highest) << QRect();
}

void TestOverlayArea::MarginsAreFourNumbers()
{
    QFETCH(QRect, margins);
    QFETCH(QRect, area);
    QCOMPARE(OverlayArea::Inside(margins, QSize(100, 80)), area);
}

void TestOverlayArea::AlignsInsideTheMargins_data()
{
    QTest::addColumn<int>("alignment");
    QTest::addColumn<QPoint>("corner"); // of 20 x 11 in the 88 x 66 pixels from (5, 6)
    QTest::newRow("left, top") << int(Qt::AlignLeft | Qt::AlignTop) << QPoint(5, 6);
    QTest::newRow("centre, top") << int(Qt::AlignHCenter | Qt::AlignTop) << QPoint(39, 6);
    QTest::newRow("right, top") << int(Qt::AlignRight | Qt::AlignTop) << QPoint(73, 6);
    QTest::newRow("left, centre") << int(Qt::AlignLeft | Qt::AlignVCenter) << QPoint(5, 33);
    QTest::newRow("centre") << int(Qt::AlignCenter) << QPoint(39, 33);
    QTest::newRow("right, bottom") << int(Qt::AlignRight | Qt::AlignBottom) << QPoint(73, 61);
    QTest::newRow("left, bottom") << int(Qt::AlignLeft | Qt::AlignBottom) << QPoint(5, 61);
    QTest::newRow("none") << 0 << QPoint(5, 6);
    QTest::newRow("left before centre before right") << (1 | 4 | 2 | 32 | 128 | 64) << QPoint(5, 6);
    QTest::newRow("centre before right") << (4 | 2 | 128 | 64) << QPoint(39, 33);
    QTest::newRow("all bits") << -1 << QPoint(5, 6);
    QTest::newRow("bits without a meaning") << Lowest << QPoint(5, 6);
}

void TestOverlayArea::AlignsInsideTheMargins()
{
    QFETCH(int, alignment);
    QFETCH(QPoint, corner);
    QCOMPARE(OverlayArea::Aligned(alignment, QSize(20, 11), QRect(5, 6, 88, 66)), corner);
}

void TestOverlayArea::PartsAreEquallyWide_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("middle"); // of the 90 pixels from 5
    QTest::newRow("one") << 0 << 1 << 50;
    QTest::newRow("first of three") << 0 << 3 << 20;
    QTest::newRow("second of three") << 1 << 3 << 50;
    QTest::newRow("third of three") << 2 << 3 << 80;
    QTest::newRow("22.5: up") << 0 << 2 << 28;
    QTest::newRow("11.25: down") << 0 << 4 << 16;
}

void TestOverlayArea::PartsAreEquallyWide()
{
    QFETCH(int, index);
    QFETCH(int, count);
    QFETCH(int, middle);
    QCOMPARE(OverlayArea::MiddleOfPart(index, count, 5, 90), middle);
}

QTEST_APPLESS_MAIN(TestOverlayArea)
#include "tst_OverlayArea.moc"
