#include "gui/SelectionDrag.h"

#include <QTest>

class TestSelectionDrag : public QObject
{
    Q_OBJECT

private slots:
    void CoversThePixelsItTouches_data();
    void CoversThePixelsItTouches();
};

void TestSelectionDrag::CoversThePixelsItTouches_data()
{
    QTest::addColumn<QPointF>("start");
    QTest::addColumn<QPointF>("end");
    QTest::addColumn<bool>("square");
    QTest::addColumn<QRectF>("expected"); // in a picture of 100 x 50
    QTest::newRow("down right") << QPointF(10.2, 5.7) << QPointF(20.3, 8.1) << false << QRectF(10, 5, 11, 4);
    QTest::newRow("up left") << QPointF(20.3, 8.1) << QPointF(10.2, 5.7) << false << QRectF(10, 5, 11, 4);
    QTest::newRow("edge to edge") << QPointF(10, 5) << QPointF(20, 8) << false << QRectF(10, 5, 10, 3);
    QTest::newRow("along an edge") << QPointF(10, 5) << QPointF(20, 5) << false << QRectF(10, 5, 10, 1);
    QTest::newRow("in one pixel") << QPointF(10.2, 5.2) << QPointF(10.8, 5.9) << false << QRectF(10, 5, 1, 1);
    QTest::newRow("over the border") << QPointF(90, 40) << QPointF(300, 300) << false
                                     << QRectF(90, 40, 10, 10);
    QTest::newRow("from outside") << QPointF(-30, -5) << QPointF(7, 3) << false << QRectF(0, 0, 7, 3);
    QTest::newRow("around the picture")
        << QPointF(-9, -9) << QPointF(200, 99) << false << QRectF(0, 0, 100, 50);
    QTest::newRow("beside the picture") << QPointF(-30, 5) << QPointF(-3, 9) << false << QRectF();
    QTest::newRow("beyond the picture") << QPointF(130, 5) << QPointF(101, 9) << false << QRectF();
    QTest::newRow("at its right end") << QPointF(100, 5) << QPointF(120, 9) << false << QRectF();
    QTest::newRow("square") << QPointF(10, 5) << QPointF(20, 8) << true << QRectF(10, 5, 10, 10);
    QTest::newRow("square, up left") << QPointF(30, 40) << QPointF(20, 35) << true << QRectF(20, 30, 10, 10);
    QTest::newRow("square without room")
        << QPointF(10, 45) << QPointF(40, 47) << true << QRectF(10, 45, 5, 5);
}

void TestSelectionDrag::CoversThePixelsItTouches()
{
    QFETCH(QPointF, start);
    QFETCH(QPointF, end);
    QFETCH(bool, square);
    QFETCH(QRectF, expected);
    QCOMPARE((SelectionDrag{start, end, square}.Area({100, 50})), expected);
}

QTEST_APPLESS_MAIN(TestSelectionDrag)
#include "tst_SelectionDrag.moc"
