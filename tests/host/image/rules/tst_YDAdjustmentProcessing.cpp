#include "image/YDAdjustmentProcessing.h"

#include <QSignalSpy>
#include <QTest>

#include <thread>
#include <vector>

class TestYDAdjustmentProcessing : public QObject
{
    Q_OBJECT

private slots:
    void TheRangeIsAnnounced_data();
    void TheRangeIsAnnounced();
    void ShortRunsAnnounceEveryRow();
    void LongRunsAreThrottledAndEndOnTheLastRow_data();
    void LongRunsAreThrottledAndEndOnTheLastRow();
    void ManyThreadsAnnounceRisingRows();
    void ASecondRangeStartsAfresh();
};

void TestYDAdjustmentProcessing::TheRangeIsAnnounced_data()
{
    QTest::addColumn<unsigned>("rows");
    QTest::addColumn<int>("maximum");
    QTest::newRow("none") << 0u << 0;
    QTest::newRow("some") << 4000u << 4000;
    QTest::newRow("more than an int holds") << 4000000000u << std::numeric_limits<int>::max();
}

void TestYDAdjustmentProcessing::TheRangeIsAnnounced()
{
    QFETCH(unsigned, rows);
    QFETCH(int, maximum);
    YDAdjustmentProcessing processing;
    QSignalSpy range(&processing, &YDAdjustmentProcessing::RangeChanged);
    processing.SetRange(rows);
    QCOMPARE(range.count(), 1);
    QCOMPARE(range.first(), QVariantList({0, maximum}));
}

void TestYDAdjustmentProcessing::ShortRunsAnnounceEveryRow()
{
    YDAdjustmentProcessing processing;
    QSignalSpy progress(&processing, &YDAdjustmentProcessing::ProgressChanged);
    processing.SetRange(3);
    for (int row = 0; row < 3; ++row)
        processing.IncrementProgress();
    QCOMPARE(progress, QList<QVariantList>({{1}, {2}, {3}}));
}

void TestYDAdjustmentProcessing::LongRunsAreThrottledAndEndOnTheLastRow_data()
{
    QTest::addColumn<int>("rows");
    for (const int rows : {100, 101, 199, 4000, 4001, 12345})
        QTest::addRow("%d rows", rows) << rows;
}

void TestYDAdjustmentProcessing::LongRunsAreThrottledAndEndOnTheLastRow()
{
    QFETCH(int, rows);
    YDAdjustmentProcessing processing;
    QSignalSpy progress(&processing, &YDAdjustmentProcessing::ProgressChanged);
    processing.SetRange(unsigned(rows));
    for (int row = 0; row < rows; ++row)
        processing.IncrementProgress();
    QVERIFY(progress.count() >= 100);
    QVERIFY(progress.count() <= 200);
    QCOMPARE(progress.last().first().toInt(), rows);
}

void TestYDAdjustmentProcessing::ManyThreadsAnnounceRisingRows()
{
    constexpr int Threads = 8;
    constexpr int RowsPerThread = 20000;
    YDAdjustmentProcessing processing;
    std::vector<int> announced;
    connect(
        &processing, &YDAdjustmentProcessing::ProgressChanged, this,
        [&announced](int rows) { announced.push_back(rows); }, Qt::DirectConnection);
    processing.SetRange(Threads * RowsPerThread);
    std::vector<std::thread> threads;
    for (int i = 0; i < Threads; ++i)
        threads.emplace_back([&processing] {
            for (int row = 0; row < RowsPerThread; ++row)
                processing.IncrementProgress();
        });
    for (std::thread& thread : threads)
        thread.join();
    QVERIFY(std::is_sorted(announced.begin(), announced.end()));
    QVERIFY(announced.size() <= 200);
    QCOMPARE(announced.back(), Threads * RowsPerThread);
}

void TestYDAdjustmentProcessing::ASecondRangeStartsAfresh()
{
    YDAdjustmentProcessing processing;
    QSignalSpy progress(&processing, &YDAdjustmentProcessing::ProgressChanged);
    processing.SetRange(2);
    processing.IncrementProgress();
    processing.IncrementProgress();
    processing.SetRange(2);
    processing.IncrementProgress();
    QCOMPARE(progress.last().first().toInt(), 1);
}

QTEST_APPLESS_MAIN(TestYDAdjustmentProcessing)
#include "tst_YDAdjustmentProcessing.moc"
