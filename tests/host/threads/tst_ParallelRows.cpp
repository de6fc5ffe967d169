#include "threads/ParallelRows.h"

#include <QTest>
#include <QThreadPool>

#include <algorithm>
#include <atomic>
#include <limits>
#include <vector>

class TestParallelRows : public QObject
{
    Q_OBJECT

private slots:
    void EveryRowIsWorkedOnOnce_data();
    void EveryRowIsWorkedOnOnce();
    void BandsHoldAsManyRowsAsAsked();
    void AnEmptyRangeDoesNothing();
    void RowsNearTheEndOfTheNumbersDoNotOverflow();
    void AnAbortedRangeIsNotFinished();
    void WorksFromWithinAFullPool();
    void EachRowComesByItselfUntilAborted();
};

void TestParallelRows::EveryRowIsWorkedOnOnce_data()
{
    QTest::addColumn<int>("top");
    QTest::addColumn<int>("bottom");
    QTest::addColumn<int>("rowsPerBand");
    QTest::newRow("one row") << 0 << 1 << 1;
    QTest::newRow("one band") << 0 << 5 << 100;
    QTest::newRow("whole bands") << 0 << 100 << 10;
    QTest::newRow("a last band that is shorter") << 3 << 105 << 10;
    QTest::newRow("from below zero") << -50 << 51 << 7;
    QTest::newRow("many") << 0 << 20000 << 1;
}

void TestParallelRows::EveryRowIsWorkedOnOnce()
{
    QFETCH(int, top);
    QFETCH(int, bottom);
    QFETCH(int, rowsPerBand);
    std::vector<int> visits(std::size_t(bottom - top), 0); // bands are disjoint, so no two threads share one
    const bool finished = ForEachRowBand(top, bottom, rowsPerBand, nullptr, [&](int first, int last) {
        for (int row = first; row < last; ++row)
            ++visits[std::size_t(row - top)];
    });
    QVERIFY(finished);
    QCOMPARE(std::count(visits.begin(), visits.end(), 1), std::ptrdiff_t(visits.size()));
}

void TestParallelRows::BandsHoldAsManyRowsAsAsked()
{
    std::atomic<int> whole{0};
    std::atomic<int> shorter{0};
    ForEachRowBand(0, 25, 10, nullptr, [&](int first, int last) {
        if (last - first == 10)
            ++whole;
        else if (last - first == 5 && last == 25)
            ++shorter;
    });
    QCOMPARE(whole.load(), 2);
    QCOMPARE(shorter.load(), 1);
}

void TestParallelRows::AnEmptyRangeDoesNothing()
{
    bool called = false;
    const auto note = [&called](int, int) { called = true; };
    QVERIFY(ForEachRowBand(5, 5, 1, nullptr, note));
    QVERIFY(ForEachRowBand(5, 4, 1, nullptr, note));
    QVERIFY(!called);
}

void TestParallelRows::RowsNearTheEndOfTheNumbersDoNotOverflow()
{
    constexpr int Highest = std::numeric_limits<int>::max();
    std::atomic<qint64> rows{0};
    QVERIFY(ForEachRowBand(Highest - 5, Highest, 4, nullptr,
                           [&rows](int first, int last) { rows += last - first; }));
    QCOMPARE(rows.load(), qint64(5));
}

void TestParallelRows::AnAbortedRangeIsNotFinished()
{
    std::atomic<bool> abort{false};
    std::atomic<int> bands{0};
    const bool finished = ForEachRowBand(0, 100000, 1, &abort, [&](int, int) {
        if (++bands == 10)
            abort = true;
    });
    QVERIFY(!finished);
    QVERIFY(bands.load() < 10 + QThreadPool::globalInstance()->maxThreadCount() + 1);
    bands = 0;
    QVERIFY(!ForEachRowBand(0, 10, 1, &abort, [&](int, int) { ++bands; }));
    QCOMPARE(bands.load(), 0);
}

void TestParallelRows::WorksFromWithinAFullPool()
{
    // Bands that hand out bands, more at once than the pool has threads.
    std::atomic<int> rows{0};
    ForEachRowBand(0, 32, 1, nullptr,
                   [&rows](int, int) { ForEachRowBand(0, 64, 1, nullptr, [&rows](int, int) { ++rows; }); });
    QCOMPARE(rows.load(), 32 * 64);
}

void TestParallelRows::EachRowComesByItselfUntilAborted()
{
    constexpr int Top = -3;
    constexpr int Rows = 1001;
    std::vector<std::atomic<int>> calls(Rows);
    ForEachRow(Top, Top + Rows, nullptr, [&](int row) { ++calls[std::size_t(row - Top)]; });
    QVERIFY(
        std::all_of(calls.begin(), calls.end(), [](const std::atomic<int>& count) { return count == 1; }));

    std::atomic<bool> abort{false};
    std::atomic<int> rows{0};
    ForEachRow(0, 100000, &abort, [&](int) {
        if (++rows == 10)
            abort = true;
    });
    // Each thread may have begun a row; nobody goes on to the next of its band.
    QVERIFY(rows.load() < 10 + QThreadPool::globalInstance()->maxThreadCount() + 1);
}

QTEST_APPLESS_MAIN(TestParallelRows)
#include "tst_ParallelRows.moc"
