#include "TestPictures.h"
#include "YDHistogramFeed.h"
#include "gui/HistogramWidget.h"

#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>

#include <limits>

namespace {

void WaitForCounts(HistogramWidget& histogram)
{
    QSignalSpy complete(&histogram, &HistogramWidget::HistogrammComplete);
    QVERIFY(complete.wait());
}

} // namespace

class TestYDHistogramFeed : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QThreadPool::globalInstance()->waitForDone(); }

    void ShowsTheSource();
    void CountsTheSameSourceAgain();
    void ShowsWhatIsAttachedUntilTheSourceChanges();
    void CountsAgainWhenTold();
    void KnowsTheMaskOfEachChannel_data();
    void KnowsTheMaskOfEachChannel();
};

void TestYDHistogramFeed::ShowsTheSource()
{
    HistogramWidget histogram;
    YDHistogramFeed feed(&histogram);
    feed.OnSourceChanged(TestPictures::Grey(4, 3, 100)); // the feed's own value keeps the pixels alive
    WaitForCounts(histogram);
    QCOMPARE(histogram.GetCount(0, 100), qint64(12));
    feed.OnSourceChanged(TestPictures::Grey(4, 3, 200));
    WaitForCounts(histogram);
    QCOMPARE(histogram.GetCount(0, 200), qint64(12));
    feed.OnSourceChanged(RGBA32iImage());
    QCOMPARE(histogram.GetPixelsCount(), qint64(0));
}

void TestYDHistogramFeed::CountsTheSameSourceAgain()
{
    HistogramWidget histogram;
    YDHistogramFeed feed(&histogram);
    const RGBA32iImage picture = TestPictures::Grey(4, 3, 100);
    feed.OnSourceChanged(picture);
    WaitForCounts(histogram);
    std::fill_n(picture.Row(0), 4, YDRGBA32i(200, 200, 200, 255));
    feed.OnSourceChanged(picture);
    WaitForCounts(histogram);
    QCOMPARE(histogram.GetCount(0, 200), qint64(4));
}

void TestYDHistogramFeed::ShowsWhatIsAttachedUntilTheSourceChanges()
{
    HistogramWidget histogram;
    YDHistogramFeed feed(&histogram);
    feed.OnSourceChanged(TestPictures::Grey(4, 3, 100));
    const YDSharedImage<QImage> image(ImageToQImage(TestPictures::Grey(4, 3, 50)));
    feed.AttachQImage(&image);
    WaitForCounts(histogram);
    QCOMPARE(histogram.GetCount(0, 50), qint64(12));
    const YDSharedImage<RGBA32iImage> picture(TestPictures::Grey(4, 3, 60));
    feed.AttachRGB32iImage(&picture);
    WaitForCounts(histogram);
    QCOMPARE(histogram.GetCount(0, 60), qint64(12));
    feed.OnSourceChanged(TestPictures::Grey(4, 3, 70));
    WaitForCounts(histogram);
    QCOMPARE(histogram.GetCount(0, 70), qint64(12));
    feed.AttachRGB32iImage(nullptr);
    QCOMPARE(histogram.GetPixelsCount(), qint64(0));
    feed.AttachQImage(nullptr);
    QCOMPARE(histogram.GetPixelsCount(), qint64(0));
}

void TestYDHistogramFeed::CountsAgainWhenTold()
{
    HistogramWidget histogram;
    YDHistogramFeed feed(&histogram);
    YDSharedImage<RGBA32iImage> picture(TestPictures::Grey(4, 3, 60));
    feed.AttachRGB32iImage(&picture);
    WaitForCounts(histogram);
    picture.SetImage(TestPictures::Grey(4, 3, 61));
    feed.UpdateHistogramm();
    WaitForCounts(histogram);
    QCOMPARE(histogram.GetCount(0, 61), qint64(12));
}

void TestYDHistogramFeed::KnowsTheMaskOfEachChannel_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("mask");
    QTest::newRow("all three") << 0 << 7;
    QTest::newRow("red") << 1 << 1;
    QTest::newRow("green") << 2 << 2;
    QTest::newRow("blue") << 3 << 4;
    QTest::newRow("one too many") << 4 << 7;
    QTest::newRow("negative") << -1 << 7;
    QTest::newRow("largest") << std::numeric_limits<int>::max() << 7;
    QTest::newRow("least") << std::numeric_limits<int>::min() << 7;
}

void TestYDHistogramFeed::KnowsTheMaskOfEachChannel()
{
    QFETCH(int, index);
    QFETCH(int, mask);
    QCOMPARE(YDHistogramFeed::IndexToHistogrammChannel(index), mask);
}

QTEST_MAIN(TestYDHistogramFeed)
#include "tst_YDHistogramFeed.moc"
