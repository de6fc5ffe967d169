#pragma once

#include "threads/HandOver.h"

#include <QFuture>
#include <QFutureInterface>
#include <QRunnable>
#include <QThreadPool>

#include <functional>
#include <type_traits>
#include <utility>

/// One call on a thread pool, the global one unless told otherwise. It does what QtConcurrent::run() does,
/// and tells the thread sanitizer before it reads anything that it was handed; code inside of Qt's own task
/// cannot.
///
/// Only a task that the pool has no thread for may be run by who waits for its future. QtConcurrent::run()
/// has a wait run whatever no thread has begun yet, and waking one takes longer than to come to the wait.
template <class Result>
class PoolTask : public QRunnable
{
public:
    /// Hands `work` to `pool` and returns its future.
    static QFuture<Result> Start(std::function<Result()> work,
                                 QThreadPool* pool = QThreadPool::globalInstance())
    {
        auto* const task =
            new PoolTask(std::move(work)); // deleted by the pool, or by whoever runs it instead
        QFutureInterface<Result> promise = task->m_promise;
        promise.setThreadPool(pool);
        promise.reportStarted();
        HandOver::Give(&HandOver::ToThePool);
        if (!pool->tryStart(task)) {
            promise.setRunnable(task); // for a wait, which may come before the pool has a thread to spare
            pool->start(task);
        }
        return promise.future();
    }

    void run() override
    {
        HandOver::Take(&HandOver::ToThePool);
        if (!m_promise.isCanceled())
            Work();
        m_promise.reportFinished();
    }

private:
    explicit PoolTask(std::function<Result()> work) : m_work(std::move(work)) {}

    void Work()
    {
        if constexpr (std::is_void_v<Result>) {
            m_work();
        } else {
            const Result result = m_work();
            [[maybe_unused]] const HandOver::GuardedByQt copy;
            m_promise.reportResult(result);
        }
    }

    std::function<Result()> m_work;
    QFutureInterface<Result> m_promise;
};

/// Runs `worker` as `tasks` tasks of the global thread pool at once, `meanwhile` (if any) on the calling
/// thread beside them, and returns when all of them have ended.
///
/// May be called from a task of that pool: a task that the pool had no thread for and has not begun when the
/// caller comes to wait for it is run by the caller itself, so a full pool cannot hang it.
void RunPoolTasks(int tasks, const std::function<void()>& worker,
                  const std::function<void()>& meanwhile = std::function<void()>());
