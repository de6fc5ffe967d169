#include "TestPictures.h"
#include "catalog/SelectionMask.h"

#include <QTest>

class TestSelectionMask : public QObject
{
    Q_OBJECT

private slots:
    void NoMaskSelectsAll();
    void AMaskIsItsCoverageAtItsPlace();
    void WithoutCoverageNothingIsSelected();
};

void TestSelectionMask::NoMaskSelectsAll()
{
    const SelectionMask mask;
    QVERIFY(mask.SelectsAll());
    QVERIFY(mask.Coverage().IsEmpty());
    QVERIFY(mask.BoundingRect().isEmpty());
}

void TestSelectionMask::AMaskIsItsCoverageAtItsPlace()
{
    const RGBA32iImage coverage = TestPictures::Grey(3, 2, 77);
    const SelectionMask mask(coverage, QPoint(-5, 8));
    QVERIFY(!mask.SelectsAll());
    QVERIFY(mask.Coverage().SharesPixelsWith(coverage));
    QCOMPARE(mask.Offset(), QPoint(-5, 8));
    QCOMPARE(mask.BoundingRect(), QRect(0, 0, 3, 2));
}

/// An empty rectangle would mean the whole picture.
void TestSelectionMask::WithoutCoverageNothingIsSelected()
{
    const SelectionMask mask(RGBA32iImage(), QPoint(4, 5));
    QVERIFY(!mask.SelectsAll());
    QCOMPARE(mask.BoundingRect(), QRect(0, 0, 1, 1));
    QVERIFY(mask.Coverage().Row(0)[0] == YDRGBA32i(0, 0, 0, 0));
}

QTEST_APPLESS_MAIN(TestSelectionMask)
#include "tst_SelectionMask.moc"
