#include "threads/LatestJob.h"

LatestJobBase::LatestJobBase(QObject* parent) : QObject(parent) {}

LatestJobBase::~LatestJobBase()
{
    m_abort->store(true);
    [[maybe_unused]] const HandOver::GuardedByQt result;
    delete m_watcher;
}

bool LatestJobBase::Request()
{
    m_isNextWanted = IsRunning();
    return m_isNextWanted || Begin();
}

bool LatestJobBase::Abort()
{
    m_isNextWanted = false;
    if (!IsRunning() || m_abort->exchange(true))
        return false;
    disconnect(m_watcher, &QFutureWatcherBase::resultReadyAt, this, &LatestJobBase::OnResultReadyAt);
    return true;
}

void LatestJobBase::AbortAndWait()
{
    m_isNextWanted = false;
    m_abort->store(true);
    if (!IsRunning())
        return;
    m_watcher->waitForFinished();
    HandOver::Take(m_abort.get());
    delete std::exchange(m_watcher, nullptr);
}

/// Returns whether there was something to do.
bool LatestJobBase::Begin()
{
    m_abort->store(false);
    m_watcher = NewWatcher();
    connect(m_watcher, &QFutureWatcherBase::resultReadyAt, this, &LatestJobBase::OnResultReadyAt);
    connect(m_watcher, &QFutureWatcherBase::finished, this, &LatestJobBase::OnFinished);
    Start();
    if (!m_watcher->isCanceled()) // as is one without a future
        return true;
    delete std::exchange(m_watcher, nullptr);
    return false;
}

void LatestJobBase::OnResultReadyAt(int index)
{
    HandOver::Take(m_abort.get());
    emit ResultReadyAt(index);
}

void LatestJobBase::OnFinished()
{
    HandOver::Take(m_abort.get());
    std::exchange(m_watcher, nullptr)->deleteLater(); // it is just handling an event
    if (!std::exchange(m_isNextWanted, false) || !Begin())
        emit Ended();
}
