#include "threads/LatestJob.h"

#include "IdlePool.h"

#include <QFutureInterface>
#include <QSignalSpy>
#include <QTest>
#include <QVector>

#include <algorithm>

namespace {

/// Jobs that return the number of their request, and go on until the test lets them.
struct Jobs
{
    /// What the jobs share with the test, and what outlives it.
    struct Shared
    {
        std::atomic<bool> mayEnd{true};
        std::atomic<bool> areStubborn{false}; ///< they do not look at the abort flag
        std::atomic<int> begun{0};
        std::atomic<int> running{0};
        std::atomic<int> mostRunning{0};
        std::atomic<int> ended{0};

        int Run(int number, const std::atomic<bool>& abort)
        {
            ++begun;
            mostRunning = std::max(mostRunning.load(), ++running);
            while (!mayEnd && (areStubborn || !abort))
                QThread::yieldCurrentThread();
            --running;
            ++ended;
            return number;
        }
    };

    Jobs()
    {
        QObject::connect(latest.get(), &LatestJobBase::ResultReadyAt, latest.get(), [this](int index) {
            results.append(latest->ResultAt(index));
            threads.append(QThread::currentThread());
        });
        QObject::connect(latest.get(), &LatestJobBase::Ended, latest.get(), [this] { ++ends; });
    }

    ~Jobs() { shared->mayEnd = true; } // a failed test leaves no job behind
    Q_DISABLE_COPY(Jobs)

    bool Request(int newNumber)
    {
        number = newNumber;
        return latest->Request();
    }

    LatestJob<int>::Work MakeWork() const
    {
        if (number < 0)
            return {};
        return [shared = shared, number = number](const std::atomic<bool>& abort) {
            return shared->Run(number, abort);
        };
    }

    int number = -1; ///< below 0 there is nothing to do
    const std::shared_ptr<Shared> shared = std::make_shared<Shared>();
    QVector<int> results;
    QVector<QThread*> threads; ///< on which they arrived
    int ends = 0;
    std::unique_ptr<LatestJob<int>> latest =
        std::make_unique<LatestJob<int>>(nullptr, [this] { return MakeWork(); });
};

/// One thread in the global pool, which is busy while the object lives.
class BusyPool
{
public:
    BusyPool()
    {
        QThreadPool::globalInstance()->setMaxThreadCount(1);
        m_task = PoolTask<void>::Start([mayEnd = m_mayEnd] {
            while (!*mayEnd)
                QThread::yieldCurrentThread();
        });
    }
    ~BusyPool()
    {
        *m_mayEnd = true;
        QThreadPool::globalInstance()->waitForDone();
        QThreadPool::globalInstance()->setMaxThreadCount(QThread::idealThreadCount());
    }
    Q_DISABLE_COPY(BusyPool)

private:
    const std::shared_ptr<std::atomic<bool>> m_mayEnd = std::make_shared<std::atomic<bool>>(false);
    QFuture<void> m_task;
};

} // namespace

class TestLatestJob : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { AwaitIdlePool(); }

    void AResultArrivesBeforeTheEndOnTheOwnersThread();
    void OfABurstOneJobFollows();
    void OfAnAbortedBurstTheNewestAloneArrives();
    void AnAbortedJobStopsAndOnlyItsEndArrives();
    void AJobAbortedBeforeItBeginsDoesNothing();
    void AbortingForgetsTheNextJob();
    void AResultThatIsOnItsWayIsHeldBackByAborting();
    void WithNothingToDoNothingRuns();
    void NothingToDoAnyMoreEndsTheSeries();
    void AListenerMayAskForTheNext_data();
    void AListenerMayAskForTheNext();
    void IsDestroyedWhileAJobRuns();
    void IsDestroyedWhileAResultIsOnItsWay();
    void AListenerMayDestroyIt_data();
    void AListenerMayDestroyIt();
    void WaitingForTheEndOutlivesTheJob();
    void JobsOfAnotherKindDeliverAllTheirResults();
    void AfterManyBurstsTheNewestIsThere();
};

void TestLatestJob::AResultArrivesBeforeTheEndOnTheOwnersThread()
{
    Jobs jobs;
    connect(jobs.latest.get(), &LatestJobBase::ResultReadyAt, this, [&] {
        QVERIFY(jobs.latest->IsRunning());
        QCOMPARE(jobs.ends, 0);
    });
    QVERIFY(jobs.Request(7));
    QVERIFY(jobs.latest->IsRunning());
    QTRY_COMPARE(jobs.ends, 1);
    QVERIFY(!jobs.latest->IsRunning());
    QCOMPARE(jobs.results, QVector<int>{7});
    QCOMPARE(jobs.threads, QVector<QThread*>{QThread::currentThread()});
}

void TestLatestJob::OfABurstOneJobFollows()
{
    Jobs jobs;
    jobs.shared->mayEnd = false;
    for (int number = 0; number <= 100; ++number)
        QVERIFY(jobs.Request(number));
    QTRY_COMPARE(jobs.shared->begun.load(), 1);
    jobs.shared->mayEnd = true;
    QTRY_COMPARE(jobs.ends, 1);
    QCOMPARE(jobs.results, (QVector<int>{0, 100}));
    QCOMPARE(jobs.shared->begun.load(), 2);
    QCOMPARE(jobs.shared->mostRunning.load(), 1);
}

void TestLatestJob::OfAnAbortedBurstTheNewestAloneArrives()
{
    Jobs jobs;
    jobs.shared->mayEnd = false;
    jobs.shared->areStubborn = true;
    for (int number = 0; number <= 100; ++number) {
        QCOMPARE(jobs.latest->Abort(), number == 1); // the one that runs, once
        QVERIFY(jobs.Request(number));
        if (number == 0)
            QTRY_COMPARE(jobs.shared->begun.load(), 1);
    }
    QVERIFY(jobs.latest->AbortFlag());
    jobs.shared->mayEnd = true;
    QTRY_COMPARE(jobs.ends, 1);
    QVERIFY(!jobs.latest->AbortFlag());
    QCOMPARE(jobs.results, QVector<int>{100});
    QCOMPARE(jobs.shared->begun.load(), 2);
    QCOMPARE(jobs.shared->mostRunning.load(), 1);
}

void TestLatestJob::AnAbortedJobStopsAndOnlyItsEndArrives()
{
    Jobs jobs;
    jobs.shared->mayEnd = false;
    QVERIFY(!jobs.latest->Abort());
    QVERIFY(!jobs.latest->AbortFlag());
    jobs.Request(1);
    QTRY_COMPARE(jobs.shared->begun.load(), 1);
    QVERIFY(jobs.latest->Abort());
    QVERIFY(!jobs.latest->Abort());
    QVERIFY(jobs.latest->IsRunning());
    QTRY_COMPARE(jobs.ends, 1);
    QCOMPARE(jobs.shared->ended.load(), 1);
    QVERIFY(jobs.results.isEmpty());
    QVERIFY(!jobs.latest->IsRunning());
}

void TestLatestJob::AJobAbortedBeforeItBeginsDoesNothing()
{
    Jobs jobs;
    {
        const BusyPool pool;
        jobs.Request(1);
        QVERIFY(jobs.latest->Abort());
    }
    QTRY_COMPARE(jobs.ends, 1);
    QCOMPARE(jobs.shared->begun.load(), 0);
    QVERIFY(jobs.results.isEmpty());
}

void TestLatestJob::AbortingForgetsTheNextJob()
{
    Jobs jobs;
    jobs.shared->mayEnd = false;
    jobs.Request(1);
    QTRY_COMPARE(jobs.shared->begun.load(), 1);
    jobs.Request(2);
    QVERIFY(jobs.latest->Abort());
    jobs.Request(3);
    QVERIFY(!jobs.latest->Abort());
    QTRY_COMPARE(jobs.ends, 1);
    QVERIFY(!jobs.latest->IsRunning());
    QCOMPARE(jobs.shared->begun.load(), 1);
    QVERIFY(jobs.results.isEmpty());
}

void TestLatestJob::AResultThatIsOnItsWayIsHeldBackByAborting()
{
    Jobs jobs;
    jobs.Request(1);
    AwaitIdlePool(); // its events wait in the queue now
    QCOMPARE(jobs.shared->ended.load(), 1);
    QVERIFY(jobs.latest->Abort());
    jobs.Request(2);
    QTRY_COMPARE(jobs.ends, 1);
    QCOMPARE(jobs.results, QVector<int>{2});
}

void TestLatestJob::WithNothingToDoNothingRuns()
{
    Jobs jobs;
    QVERIFY(!jobs.Request(-1));
    QVERIFY(!jobs.latest->IsRunning());
    QVERIFY(!jobs.latest->RunningWatcher());
    QCoreApplication::processEvents();
    QCOMPARE(jobs.ends, 0);
    QVERIFY(jobs.Request(1));
    QTRY_COMPARE(jobs.results, QVector<int>{1});
}

void TestLatestJob::NothingToDoAnyMoreEndsTheSeries()
{
    Jobs jobs;
    jobs.shared->mayEnd = false;
    jobs.Request(1);
    QVERIFY(jobs.Request(-1)); // one runs
    jobs.shared->mayEnd = true;
    QTRY_COMPARE(jobs.ends, 1);
    QCOMPARE(jobs.results, QVector<int>{1});
    QVERIFY(!jobs.latest->IsRunning());
}

void TestLatestJob::AListenerMayAskForTheNext_data()
{
    QTest::addColumn<bool>("isAtTheEnd");
    QTest::newRow("of a result") << false;
    QTest::newRow("of the end") << true;
}

void TestLatestJob::AListenerMayAskForTheNext()
{
    QFETCH(bool, isAtTheEnd);
    Jobs jobs;
    const auto askForTwo = [&] {
        if (jobs.number == 1)
            QVERIFY(jobs.Request(2));
    };
    if (isAtTheEnd)
        connect(jobs.latest.get(), &LatestJobBase::Ended, this, askForTwo);
    else
        connect(jobs.latest.get(), &LatestJobBase::ResultReadyAt, this, askForTwo);
    jobs.Request(1);
    QTRY_COMPARE(jobs.results, (QVector<int>{1, 2}));
    QTRY_COMPARE(jobs.ends, isAtTheEnd ? 2 : 1);
}

void TestLatestJob::IsDestroyedWhileAJobRuns()
{
    Jobs jobs;
    jobs.shared->mayEnd = false;
    jobs.shared->areStubborn = true;
    jobs.Request(1);
    QTRY_COMPARE(jobs.shared->begun.load(), 1);
    jobs.Request(2);
    jobs.latest.reset();
    QCOMPARE(jobs.shared->ended.load(), 0); // it was not waited for
    jobs.shared->areStubborn = false;       // it was told to stop
    QTRY_COMPARE(jobs.shared->ended.load(), 1);
    AwaitIdlePool();
    QCoreApplication::processEvents();
    QCOMPARE(jobs.shared->begun.load(), 1);
    QVERIFY(jobs.results.isEmpty());
    QCOMPARE(jobs.ends, 0);
}

void TestLatestJob::IsDestroyedWhileAResultIsOnItsWay()
{
    Jobs jobs;
    jobs.Request(1);
    AwaitIdlePool(); // its events wait in the queue now
    jobs.latest.reset();
    QCoreApplication::processEvents();
    QVERIFY(jobs.results.isEmpty());
    QCOMPARE(jobs.ends, 0);
}

void TestLatestJob::AListenerMayDestroyIt_data() { AListenerMayAskForTheNext_data(); }

void TestLatestJob::AListenerMayDestroyIt()
{
    QFETCH(bool, isAtTheEnd);
    Jobs jobs;
    const auto destroy = [&] { jobs.latest.reset(); };
    if (isAtTheEnd)
        connect(jobs.latest.get(), &LatestJobBase::Ended, this, destroy);
    else
        connect(jobs.latest.get(), &LatestJobBase::ResultReadyAt, this, destroy);
    jobs.Request(1);
    QTRY_VERIFY(!jobs.latest);
    AwaitIdlePool();
    QCoreApplication::processEvents();
    QCOMPARE(jobs.results, QVector<int>{1});
    QCOMPARE(jobs.ends, isAtTheEnd ? 1 : 0);
}

void TestLatestJob::WaitingForTheEndOutlivesTheJob()
{
    Jobs jobs;
    jobs.latest->AbortAndWait(); // for nothing
    jobs.shared->mayEnd = false;
    std::vector<int> notShared(1000); // a race that the thread sanitizer would report
    LatestJob<int> latest(nullptr, [&] {
        return [&](const std::atomic<bool>& abort) {
            jobs.shared->Run(0, abort);
            std::fill(notShared.begin(), notShared.end(), 1);
            return 0;
        };
    });
    const QSignalSpy results(&latest, &LatestJobBase::ResultReadyAt);
    const QSignalSpy ends(&latest, &LatestJobBase::Ended);
    QVERIFY(latest.Request());
    QTRY_COMPARE(jobs.shared->begun.load(), 1);
    latest.Request();
    latest.AbortAndWait();
    QVERIFY(!latest.IsRunning());
    QCOMPARE(std::count(notShared.cbegin(), notShared.cend(), 1), std::ptrdiff_t(1000));
    QCoreApplication::processEvents();
    QCOMPARE(jobs.shared->begun.load(), 1);
    QCOMPARE(results.count(), 0);
    QCOMPARE(ends.count(), 0);
}

void TestLatestJob::JobsOfAnotherKindDeliverAllTheirResults()
{
    QFutureInterface<int> promise;
    QObject parent;
    LatestJob<int> latest(&parent, [&](LatestJob<int>::Watcher* watcher) {
        QCOMPARE(watcher->parent(), &parent);
        promise = QFutureInterface<int>();
        promise.reportStarted();
        watcher->setFuture(promise.future());
    });
    QVector<int> results;
    connect(&latest, &LatestJobBase::ResultReadyAt, this,
            [&](int index) { results.append(latest.ResultAt(index)); });
    const QSignalSpy ends(&latest, &LatestJobBase::Ended);
    QVERIFY(latest.Request());
    promise.reportResult(1);
    QTRY_COMPARE(results, QVector<int>{1});
    promise.reportResult(2);
    promise.reportFinished();
    QTRY_COMPARE(ends.count(), 1);
    QCOMPARE(results, (QVector<int>{1, 2}));
    QVERIFY(latest.Request());
    promise.reportResult(3);
    promise.cancel(); // as who aborts such a job may do
    promise.reportFinished();
    QTRY_COMPARE(ends.count(), 2);
    QCOMPARE(results, (QVector<int>{1, 2}));
}

void TestLatestJob::AfterManyBurstsTheNewestIsThere()
{
    constexpr int Bursts = 300;
    constexpr int RequestsPerBurst = 5;
    Jobs jobs;
    int number = 0;
    for (int burst = 0; burst < Bursts; ++burst) {
        for (int i = 0; i < RequestsPerBurst; ++i) {
            if (burst % 3 == 0)
                jobs.latest->Abort();
            QVERIFY(jobs.Request(++number));
        }
        if (burst % 7 == 0)
            AwaitIdlePool();
        QCoreApplication::processEvents();
    }
    QTRY_VERIFY(!jobs.latest->IsRunning());
    QCOMPARE(jobs.results.last(), Bursts * RequestsPerBurst);
    QVERIFY(std::is_sorted(jobs.results.cbegin(), jobs.results.cend()));
    QVERIFY(std::adjacent_find(jobs.results.cbegin(), jobs.results.cend()) == jobs.results.cend());
    QCOMPARE(jobs.shared->mostRunning.load(), 1);
}

QTEST_GUILESS_MAIN(TestLatestJob)
#include "tst_LatestJob.moc"
