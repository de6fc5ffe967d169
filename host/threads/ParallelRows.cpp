#include "threads/ParallelRows.h"

#include "threads/PoolTasks.h"

#include <QThread>

#include <algorithm>

bool ForEachRowBand(int top, int bottom, int rowsPerBand, const std::atomic<bool>* abort,
                    const std::function<void(int first, int last)>& work)
{
    if (top >= bottom)
        return true;
    const qint64 rows = qint64(bottom) - top;
    const qint64 bands = (rows + rowsPerBand - 1) / rowsPerBand;
    std::atomic<qint64> nextBand{0};
    std::atomic<bool> aborted{false};
    const std::function<void()> takeBands = [&] {
        for (;;) {
            const qint64 band = nextBand.fetch_add(1, std::memory_order_relaxed);
            if (band >= bands)
                return;
            if (abort && abort->load(std::memory_order_relaxed)) {
                aborted.store(true, std::memory_order_relaxed);
                return;
            }
            const qint64 first = top + band * rowsPerBand;
            work(static_cast<int>(first), static_cast<int>(std::min<qint64>(first + rowsPerBand, bottom)));
        }
    };
    const qint64 helpers = std::min<qint64>(std::max(QThread::idealThreadCount(), 1), bands) - 1;
    RunPoolTasks(static_cast<int>(helpers), takeBands, takeBands);
    return !aborted.load(std::memory_order_relaxed);
}

void ForEachRow(int top, int bottom, const std::atomic<bool>* abort, const std::function<void(int row)>& work)
{
    constexpr int RowsPerBand = 4; // few, so that the threads end together
    ForEachRowBand(top, bottom, RowsPerBand, abort, [&](int first, int last) {
        for (int row = first; row < last && !(abort && abort->load(std::memory_order_relaxed)); ++row)
            work(row);
    });
}
