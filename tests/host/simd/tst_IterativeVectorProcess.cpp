#include "image/BaseTransformation.h"
#include "image/KVImage.h"
#include "image/VectorKernels.h"
#include "threads/PoolTasks.h"
#include "utilities/AVX2LIB.h"

#include <QRect>
#include <QTest>
#include <QThread>
#include <QThreadPool>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <set>
#include <thread>

namespace {

constexpr int Width = 150; // not a whole number of tiles
constexpr int Height = 131;

/// Counts in each pixel's blue how often the pixel was handed out.
class VisitCounter : public BaseTransformation
{
public:
    void ProcessRow(YDRGBA32i* row, int count) const override
    {
        for (int x = 0; x < count; ++x)
            ++row[x].b;
    }
};

/// Holds every thread in its first row until all have come.
class ThreadGathering : public BaseTransformation
{
public:
    explicit ThreadGathering(std::size_t threads) : m_expected(threads) {}

    void ProcessRow(YDRGBA32i*, int) const override
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_threads.insert(std::this_thread::get_id());
        m_arrival.notify_all();
        m_arrival.wait_for(lock, std::chrono::seconds(20), [this] { return m_threads.size() >= m_expected; });
    }

    std::set<std::thread::id> Threads() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_threads;
    }

private:
    const std::size_t m_expected;
    mutable std::mutex m_mutex;
    mutable std::condition_variable m_arrival;
    mutable std::set<std::thread::id> m_threads;
};

decltype(VectorKernels::IterativeVectorProcess)::Function* Process()
{
    static const auto process = AVX2LIB::Find(VectorKernels::IterativeVectorProcess);
    return process;
}

/// Pixels of `image`, its padding among them, whose count is not 1 inside `area` and 0 outside.
int WrongVisits(const RGBA32iImage& image, const QRect& area)
{
    int wrong = 0;
    for (int y = 0; y < image.Height(); ++y)
        for (int x = 0; x < image.RowLength(); ++x)
            wrong += image.Row(y)[x].b != (area.contains(x, y) ? 1 : 0);
    return wrong;
}

int VisitedRows(const RGBA32iImage& image)
{
    int rows = 0;
    for (int y = 0; y < image.Height(); ++y)
        rows += image.Row(y)[0].b;
    return rows;
}

} // namespace

class TestIterativeVectorProcess : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void VisitsThePixelsOfTheAreaOnce_data();
    void VisitsThePixelsOfTheAreaOnce();
    void WorksOnAllCoresTheCallingThreadAmongThem();
    void WorksInsideAFullThreadPool();
    void DoesNothingOnceAborted();
    void StopsAtTheNextRowWhenAborted();
};

void TestIterativeVectorProcess::initTestCase()
{
    if (!__builtin_cpu_supports("avx2")) {
        QVERIFY(!AVX2LIB::Instance());
        QSKIP("The module is for processors with AVX2.");
    }
    QVERIFY(AVX2LIB::Instance());
    QVERIFY(Process());
}

void TestIterativeVectorProcess::VisitsThePixelsOfTheAreaOnce_data()
{
    QTest::addColumn<QRect>("area");
    QTest::newRow("the whole picture") << QRect(0, 0, Width, Height);
    QTest::newRow("inside") << QRect(13, 7, 70, 50);
    QTest::newRow("at the right and bottom edge") << QRect(Width - 37, Height - 19, 37, 19);
    QTest::newRow("one row") << QRect(5, Height - 1, 100, 1);
    QTest::newRow("one column") << QRect(Width - 1, 0, 1, Height);
    QTest::newRow("one pixel") << QRect(0, 0, 1, 1);
    QTest::newRow("null") << QRect();
    QTest::newRow("no width") << QRect(3, 3, 0, 5);
    QTest::newRow("no height") << QRect(3, 3, 5, 0);
}

void TestIterativeVectorProcess::VisitsThePixelsOfTheAreaOnce()
{
    QFETCH(QRect, area);
    const RGBA32iImage image(Width, Height);
    VisitCounter counter;
    const std::atomic<bool> abort{false};
    std::atomic<int> rows{0};
    Process()(image.Pixels(), image.RowLength(), area, &counter, abort, [&rows] { ++rows; });
    QCOMPARE(WrongVisits(image, area), 0);
    QCOMPARE(rows.load(), area.isEmpty() ? 0 : area.height());
}

void TestIterativeVectorProcess::WorksOnAllCoresTheCallingThreadAmongThem()
{
    const auto cores = std::size_t(QThread::idealThreadCount());
    const RGBA32iImage image(1, 16 * int(cores));
    ThreadGathering gathering(cores);
    const std::atomic<bool> abort{false};
    Process()(image.Pixels(), image.RowLength(), QRect(0, 0, 1, image.Height()), &gathering, abort, [] {});
    const std::set<std::thread::id> threads = gathering.Threads();
    QCOMPARE(threads.size(), cores);
    QCOMPARE(threads.count(std::this_thread::get_id()), std::size_t(1));
}

void TestIterativeVectorProcess::WorksInsideAFullThreadPool()
{
    QThreadPool* const pool = QThreadPool::globalInstance();
    const int threads = pool->maxThreadCount();
    pool->setMaxThreadCount(1);
    const RGBA32iImage image(Width, Height);
    const QRect area(0, 0, Width, Height);
    RunPoolTasks(1, [&image, &area] {
        VisitCounter counter;
        const std::atomic<bool> abort{false};
        Process()(image.Pixels(), image.RowLength(), area, &counter, abort, [] {});
    });
    pool->setMaxThreadCount(threads);
    QCOMPARE(WrongVisits(image, area), 0);
}

void TestIterativeVectorProcess::DoesNothingOnceAborted()
{
    const RGBA32iImage image(Width, Height);
    VisitCounter counter;
    const std::atomic<bool> abort{true};
    std::atomic<int> rows{0};
    Process()(image.Pixels(), image.RowLength(), QRect(0, 0, Width, Height), &counter, abort,
              [&rows] { ++rows; });
    QCOMPARE(VisitedRows(image), 0);
    QCOMPARE(rows.load(), 0);
}

void TestIterativeVectorProcess::StopsAtTheNextRowWhenAborted()
{
    constexpr int RowsBefore = 10;
    const RGBA32iImage image(Width, 5000);
    VisitCounter counter;
    std::atomic<bool> abort{false};
    std::atomic<int> rows{0};
    std::atomic<int> rowsBegunAfter{0};
    thread_local bool sawAbort = false;
    sawAbort = false;
    Process()(image.Pixels(), image.RowLength(), QRect(0, 0, Width, image.Height()), &counter, abort,
              [&abort, &rows, &rowsBegunAfter] {
                  // A row that was under way when the flag was set may still end; the next one must not
                  // begin.
                  if (sawAbort)
                      ++rowsBegunAfter;
                  if (++rows >= RowsBefore)
                      abort = true;
                  sawAbort = abort;
              });
    QVERIFY(rows.load() >= RowsBefore);
    QCOMPARE(rowsBegunAfter.load(), 0);
    QCOMPARE(VisitedRows(image), rows.load());
}

QTEST_GUILESS_MAIN(TestIterativeVectorProcess)

#include "tst_IterativeVectorProcess.moc"
