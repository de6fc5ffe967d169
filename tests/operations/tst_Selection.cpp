#include "TestPictures.h"
#include "operations/Selection.h"

#include <QTest>

class TestSelection : public QObject
{
    Q_OBJECT

private slots:
    void NoMaskSelectsAll();
    void AMaskIsItsCoverageAtItsPlace();
    void WithoutCoverageNothingIsSelected();
};

void TestSelection::NoMaskSelectsAll()
{
    const operations::Selection mask;
    QVERIFY(mask.SelectsAll());
    QVERIFY(mask.mask.IsEmpty());
    QVERIFY(mask.bounds.isEmpty());
}

void TestSelection::AMaskIsItsCoverageAtItsPlace()
{
    const RGBA32iImage coverage = TestPictures::Grey(3, 2, 77);
    const auto mask = operations::Selection::Of(coverage, QPoint(-5, 8));
    QVERIFY(!mask.SelectsAll());
    QVERIFY(mask.mask.SharesPixelsWith(coverage));
    QCOMPARE(mask.offset, QPoint(-5, 8));
    QCOMPARE(mask.bounds, QRect(0, 0, 3, 2));
}

/// An empty rectangle would mean the whole picture.
void TestSelection::WithoutCoverageNothingIsSelected()
{
    const auto mask = operations::Selection::Of(RGBA32iImage(), QPoint(4, 5));
    QVERIFY(!mask.SelectsAll());
    QCOMPARE(mask.bounds, QRect(0, 0, 1, 1));
    QVERIFY(mask.mask.Row(0)[0] == YDRGBA32i(0, 0, 0, 0));
}

QTEST_APPLESS_MAIN(TestSelection)
#include "tst_Selection.moc"
