#pragma once

#include <QThread>
#include <QThreadPool>

/// Returns once every thread of the global pool has come back from its task: a task has ended for who waits
/// for it a moment before its thread can take another.
inline void AwaitIdlePool()
{
    while (QThreadPool::globalInstance()->activeThreadCount() > 0)
        QThread::yieldCurrentThread();
}
