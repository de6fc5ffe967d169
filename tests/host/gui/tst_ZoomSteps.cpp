#include "gui/ZoomSteps.h"

#include <QTest>

#include <limits>

class TestZoomSteps : public QObject
{
    Q_OBJECT

private slots:
    void StepsUpAndDown_data();
    void StepsUpAndDown();
    void ReachesBothEnds();
    void BoundsEveryNumber();
};

void TestZoomSteps::StepsUpAndDown_data()
{
    QTest::addColumn<double>("zoom");
    QTest::addColumn<double>("above");
    QTest::addColumn<double>("below");
    QTest::newRow("on a step") << 1.0 << 1.5 << 2.0 / 3;
    QTest::newRow("between") << 0.7 << 1.0 << 2.0 / 3;
    QTest::newRow("a hair beside a step") << 0.5 + 1e-9 << 2.0 / 3 << 1.0 / 3;
    QTest::newRow("largest") << 64.0 << 64.0 << 48.0;
    QTest::newRow("smallest") << 0.01 << 0.015 << 0.01;
    QTest::newRow("beyond") << 1000.0 << 64.0 << 48.0;
}

void TestZoomSteps::StepsUpAndDown()
{
    QFETCH(double, zoom);
    QFETCH(double, above);
    QFETCH(double, below);
    QCOMPARE(ZoomSteps::Above(zoom), above);
    QCOMPARE(ZoomSteps::Below(zoom), below);
}

void TestZoomSteps::ReachesBothEnds()
{
    double zoom = ZoomSteps::Smallest;
    int steps = 0;
    for (; zoom < ZoomSteps::Largest && steps < 100; ++steps) {
        const double next = ZoomSteps::Above(zoom);
        QVERIFY(next > zoom && next <= zoom * 2); // no step more than doubles
        QCOMPARE(ZoomSteps::Below(next), zoom);
        zoom = next;
    }
    QCOMPARE(zoom, 64.0);
}

void TestZoomSteps::BoundsEveryNumber()
{
    QCOMPARE(ZoomSteps::Bounded(0), 0.01);
    QCOMPARE(ZoomSteps::Bounded(-3), 0.01);
    QCOMPARE(ZoomSteps::Bounded(std::numeric_limits<double>::infinity()), 64.0);
    QCOMPARE(ZoomSteps::Bounded(std::numeric_limits<double>::quiet_NaN()), 1.0);
    QCOMPARE(ZoomSteps::Bounded(2.7), 2.7);
}

QTEST_APPLESS_MAIN(TestZoomSteps)
#include "tst_ZoomSteps.moc"
