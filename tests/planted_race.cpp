// A race that the thread sanitizer must report: were it silent here, its silence elsewhere would mean
// nothing.

#include "threads/PoolTasks.h"

#include <QCoreApplication>
#include <QThread>

#include <atomic>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    int counter = 0;
    std::atomic<bool> begun{false}; // relaxed: it orders nothing
    RunPoolTasks(
        1,
        [&] {
            begun.store(true, std::memory_order_relaxed);
            ++counter;
        },
        [&] {
            while (!begun.load(std::memory_order_relaxed))
                QThread::yieldCurrentThread();
            ++counter;
        });
    return counter == 0 ? 1 : 0;
}
