#pragma once

#include "threads/PoolTasks.h"

#include <QFutureWatcher>
#include <QObject>

#include <atomic>
#include <functional>
#include <memory>
#include <utility>

/// What a LatestJob does whatever its results are.
class LatestJobBase : public QObject
{
    Q_OBJECT

public:
    /// Tells the running job to stop and does not wait for it; nothing arrives any more.
    ~LatestJobBase() override;

    /// Begins a job, or has one follow the running one, however often it is asked for meanwhile. Returns
    /// whether one runs: there may be nothing to do.
    bool Request();

    /// Tells the running job to stop, of which no result arrives from now on, and has none follow it. Returns
    /// whether there was a job that had not been told so before.
    bool Abort();

    /// Tells the running job to stop and waits for it; nothing of it arrives. For an owner that goes away and
    /// whose members the job uses.
    void AbortAndWait();

    /// Whether a job runs, told to stop or not.
    bool IsRunning() const { return m_watcher != nullptr; }

    /// The abort flag of all jobs; Abort() sets it, and the next job that begins clears it. Set by others it
    /// stops the job, whose result still arrives.
    std::atomic<bool>& AbortFlag() { return *m_abort; }

signals:
    /// A result of the running job, which reports one at a time. Who hears it may destroy this object.
    void ResultReadyAt(int index);

    /// A job has ended and none follows. Who hears it may request one, and may destroy this object.
    void Ended();

protected:
    explicit LatestJobBase(QObject* parent);

    QFutureWatcherBase* m_watcher = nullptr; ///< of the running job; null when none runs
    const std::shared_ptr<std::atomic<bool>> m_abort = std::make_shared<std::atomic<bool>>(false);

private:
    virtual QFutureWatcherBase* NewWatcher() const = 0;
    /// Gives the new watcher its future, or none where there is nothing to do.
    virtual void Start() = 0;

    bool Begin();
    void OnResultReadyAt(int index);
    void OnFinished();

    bool m_isNextWanted = false;
};

/// A background job of which only the newest counts.
///
/// One runs at a time, on what there is when it begins: of all that is asked for while one runs, a single job
/// follows it. Whoever has no use for what is being computed any more aborts it before asking anew.
///
/// It belongs to one thread, which has an event loop. Results arrive there, in the order of the jobs. A job
/// on the pool owns all that it touches, so that this object may be destroyed while it runs.
template <class Result>
class LatestJob : public LatestJobBase
{
public:
    using Watcher = QFutureWatcher<Result>;
    /// Runs on the global thread pool, and had better return soon after `abort` is set: whatever it returns
    /// then is dropped, and the next job waits for that.
    using Work = std::function<Result(const std::atomic<bool>& abort)>;

    /// `makeWork` returns a job's work as it begins; none where there is nothing to do.
    LatestJob(QObject* parent, std::function<Work()> makeWork)
        : LatestJob(parent, [this, makeWork = std::move(makeWork)](Watcher* watcher) {
              if (const Work work = makeWork())
                  watcher->setFuture(OnPool(work));
          })
    {}

    /// For jobs of any kind: `start` gives a job's future to the watcher, whose parent is this object's, or
    /// none where there is nothing to do. A job's thread gives AbortFlag() away (HandOver) before its result.
    LatestJob(QObject* parent, std::function<void(Watcher*)> start)
        : LatestJobBase(parent), m_start(std::move(start))
    {}

    /// Of the running job; null when none runs.
    Watcher* RunningWatcher() const { return static_cast<Watcher*>(m_watcher); }

    /// For who hears ResultReadyAt().
    Result ResultAt(int index) const { return RunningWatcher()->resultAt(index); }

private:
    QFutureWatcherBase* NewWatcher() const override { return new Watcher(parent()); }
    void Start() override { m_start(RunningWatcher()); }

    QFuture<Result> OnPool(const Work& work) const
    {
        return PoolTask<Result>::Start([work, abort = m_abort] {
            const Result result = *abort ? Result() : work(*abort);
            HandOver::Give(abort.get());
            return result;
        });
    }

    const std::function<void(Watcher*)> m_start;
};
