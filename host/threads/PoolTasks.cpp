#include "threads/PoolTasks.h"

#include <QVarLengthArray>

void RunPoolTasks(int tasks, const std::function<void()>& worker, const std::function<void()>& meanwhile)
{
    constexpr int UsualCores = 64;
    QVarLengthArray<QFuture<void>, UsualCores> futures;
    for (int i = 0; i < tasks; ++i)
        futures.append(PoolTask<void>::Start([&worker] {
            worker();
            HandOver::Give(&worker);
        }));
    if (meanwhile)
        meanwhile();
    for (QFuture<void>& future : futures)
        future.waitForFinished();
    HandOver::Take(&worker);
}
