#include "IdlePool.h"
#include "threads/PoolTasks.h"

#include <QFutureWatcher>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

#include <atomic>

class TestPoolTasks : public QObject
{
    Q_OBJECT

private slots:
    void AResultArrivesThroughItsFuture();
    void AWatcherHearsOfTheResultAndTheEnd();
    void ACancelledTaskThatHasNotBegunDoesNotRun();
    void ManyTasksRunAndAreWaitedFor();
    void ATaskThatThePoolCanBeginIsNotRunByTheWait();
    void ATaskThatThePoolCannotBeginIsRunByTheWait();
};

void TestPoolTasks::AResultArrivesThroughItsFuture()
{
    std::atomic<QThread*> ran{nullptr};
    QFuture<int> future = PoolTask<int>::Start([&ran] {
        ran = QThread::currentThread();
        return 42;
    });
    QTRY_VERIFY(future.isFinished()); // without a wait, which might run the task here
    QCOMPARE(future.result(), 42);
    QVERIFY(ran.load() != QThread::currentThread());
}

void TestPoolTasks::AWatcherHearsOfTheResultAndTheEnd()
{
    QFutureWatcher<QString> watcher;
    QSignalSpy result(&watcher, &QFutureWatcher<QString>::resultReadyAt);
    QSignalSpy finished(&watcher, &QFutureWatcher<QString>::finished);
    watcher.setFuture(PoolTask<QString>::Start([] { return QStringLiteral("done"); }));
    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(result.count(), 1);
    QCOMPARE(watcher.result(), QStringLiteral("done"));
}

void TestPoolTasks::ACancelledTaskThatHasNotBegunDoesNotRun()
{
    QThreadPool pool;
    pool.setMaxThreadCount(1);
    std::atomic<bool> open{false};
    QFuture<void> first = PoolTask<void>::Start(
        [&open] {
            while (!open)
                QThread::yieldCurrentThread();
        },
        &pool);
    bool ran = false;
    QFuture<void> second = PoolTask<void>::Start([&ran] { ran = true; }, &pool);
    second.cancel();
    open = true;
    pool.waitForDone();
    QVERIFY(first.isFinished());
    QVERIFY(!ran);
}

void TestPoolTasks::ManyTasksRunAndAreWaitedFor()
{
    std::atomic<int> workers{0};
    std::atomic<int> meanwhile{0};
    RunPoolTasks(
        100, [&workers] { ++workers; }, [&meanwhile] { ++meanwhile; });
    QCOMPARE(workers.load(), 100);
    QCOMPARE(meanwhile.load(), 1);
    RunPoolTasks(0, [&workers] { ++workers; });
    QCOMPARE(workers.load(), 100);
}

void TestPoolTasks::ATaskThatThePoolCanBeginIsNotRunByTheWait()
{
    constexpr int Runs = 2000;
    QThreadPool::globalInstance()->waitForDone();
    for (int run = 0; run < Runs; ++run) {
        QThread* ran = nullptr;
        AwaitIdlePool();
        RunPoolTasks(1, [&ran] { ran = QThread::currentThread(); });
        QVERIFY(ran);
        QVERIFY2(ran != QThread::currentThread(), qPrintable(QString::number(run)));
    }
}

void TestPoolTasks::ATaskThatThePoolCannotBeginIsRunByTheWait()
{
    QThreadPool* const pool = QThreadPool::globalInstance();
    const int threads = pool->maxThreadCount();
    pool->setMaxThreadCount(1);
    std::atomic<int> inner{0};
    RunPoolTasks(1, [&inner] { RunPoolTasks(3, [&inner] { ++inner; }); });
    pool->setMaxThreadCount(threads);
    QCOMPARE(inner.load(), 3);
}

QTEST_MAIN(TestPoolTasks)
#include "tst_PoolTasks.moc"
